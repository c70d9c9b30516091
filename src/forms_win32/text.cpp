#include "text.h"

namespace pluvo::forms_win32 {

std::u16string textOf(HWND window) {
  std::u16string text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, u'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, wide(text), static_cast<int>(text.size()))));
  return text;
}

std::u16string marked(const std::u16string& caption) {
  std::u16string text;
  for (std::size_t at = 0; at < caption.size(); ++at) {
    text += caption[at];
    if (caption[at] != u'&') continue;
    const char16_t next = at + 1 < caption.size() ? caption[at + 1] : u' ';
    if (next == u'&') ++at;
    if (next == u'&' || IsCharAlphaNumericW(static_cast<wchar_t>(next)) == 0) text += u'&';
  }
  return text;
}

std::u16string lines(const std::u16string& text) {
  std::u16string shown;
  shown.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool lineFeed = text[at] == u'\n' && (at == 0 || text[at - 1] != u'\r');
    if (text[at] == u'\r' || lineFeed) {
      shown += u"\r\n";
    } else if (text[at] != u'\n') {
      shown += text[at];
    }
  }
  return shown;
}

}  // namespace pluvo::forms_win32
