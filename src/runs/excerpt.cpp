#include "runs/excerpt.h"

#include "base/utf.h"

#include <string_view>

namespace pluvo::runs {
namespace {

// In UTF-16 units. A piece up to the limit is shown whole, a longer one by its two ends.
constexpr std::int32_t kWholePiece = 160;
constexpr std::int32_t kFront = 100;
constexpr std::int32_t kBack = 50;
constexpr std::int32_t kContext = 60;

constexpr std::u16string_view kGap = u" … ";

/// A story of a document.
struct In {
  word::Document& document;
  std::int32_t story;
};

bool endsParagraph(char16_t unit) { return unit == u'\r' || unit == u'\a' || unit == u'\f'; }

std::u16string readable(const std::u16string& text) {
  std::u16string line;
  line.reserve(text.size());
  for (const char16_t unit : text) {
    if ((unit >= u' ' && unit < 0x7F) || unit > 0x9F) {
      line += unit;
    } else if (unit == u'\r') {
      line += u'¶';
    } else if (unit == u'\v' || unit == u'\n') {
      line += u'↵';
    } else if (unit == u'\a') {
      line += u'¤';
    } else if (unit == 30) {
      line += u'-';
    } else if (unit == u'\t' || unit == u'\f' || unit == 14) {
      line += u' ';
    }
  }
  return line;
}

/// Without the halves of surrogate pairs that the ends cut off.
std::u16string textAt(const In& in, std::int32_t start, std::int32_t end) {
  std::u16string text = in.document.rangeIn(in.story, start, end)->Text();
  if (!text.empty() && base::isHighSurrogate(text.back())) text.pop_back();
  if (!text.empty() && base::isLowSurrogate(text.front())) text.erase(0, 1);
  return text;
}

std::u16string shortened(const In& in, std::int32_t start, std::int32_t end) {
  if (end - start <= kWholePiece) return readable(textAt(in, start, end));
  return readable(textAt(in, start, start + kFront)) + std::u16string(kGap) +
         readable(textAt(in, end - kBack, end));
}

std::u16string leadOf(const In& in, std::int32_t position) {
  const std::int32_t from = position > kContext ? position - kContext : 0;
  std::u16string text = textAt(in, from, position);
  std::size_t begin = text.size();
  while (begin > 0 && !endsParagraph(text[begin - 1])) --begin;
  const bool cut = begin == 0 && from > 0;
  return (cut ? u"…" : u"") + readable(text.substr(begin));
}

std::u16string trailOf(const In& in, std::int32_t position) {
  const auto range = in.document.rangeIn(in.story, position, position);
  range->MoveEnd(word::wdCharacter, kContext);
  const std::u16string text = range->Text();
  std::size_t end = 0;
  while (end < text.size() && !endsParagraph(text[end])) ++end;
  const bool cut = end == text.size() && end >= static_cast<std::size_t>(kContext);
  return readable(text.substr(0, end)) + (cut ? u"…" : u"");
}

bool endsWithParagraph(const In& in, std::int32_t start, std::int32_t end) {
  if (end == start) return false;
  const std::u16string last = textAt(in, end - 1, end);
  return !last.empty() && endsParagraph(last.back());
}

}  // namespace

Excerpt excerptOf(word::Document& document, std::int32_t story, std::int32_t start, std::int32_t end) {
  const In in{document, story};
  Excerpt excerpt;
  excerpt.lead = base::utf8(leadOf(in, start));
  excerpt.piece = base::utf8(shortened(in, start, end));
  if (!endsWithParagraph(in, start, end)) excerpt.trail = base::utf8(trailOf(in, end));
  return excerpt;
}

}  // namespace pluvo::runs
