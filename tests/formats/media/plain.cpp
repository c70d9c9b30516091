#include "base/utf.h"
#include "formats/media/media.h"
#include "plain/plain_format.h"

#include <algorithm>

namespace pluvo::formats {

namespace {

/// The text of a notation, which ends with a mark that no file has; nothing where it has more than text.
std::optional<std::u16string> plainText(std::string_view notation, notation::Ranges& ranges) {
  notation::Parsed parsed = notation::parse(notation);
  ranges = parsed.ranges;
  const document::Story model(std::move(parsed.content));
  std::u16string text = model.text().substring(0, model.length());
  const document::Story plain(document::plainContent(text::OriginalText(text)));
  const bool keepsLines = text.find_first_of(u"\n\f") == text.npos;
  if (!keepsLines || notation::print(model) != notation::print(plain)) return std::nullopt;
  text.pop_back();
  return text;
}

std::optional<base::Bytes> asUtf8(std::string_view notation, notation::Ranges& ranges) {
  std::optional<std::u16string> text = plainText(notation, ranges);
  if (!text) return std::nullopt;
  std::replace(text->begin(), text->end(), u'\r', u'\n');
  const std::string bytes = base::utf8(*text);
  return base::Bytes::of({bytes.begin(), bytes.end()});
}

std::optional<base::Bytes> asUtf16(std::string_view notation, notation::Ranges& ranges) {
  const std::optional<std::u16string> text = plainText(notation, ranges);
  if (!text) return std::nullopt;
  std::vector<std::uint8_t> bytes = {0xFF, 0xFE};
  for (const char16_t unit : *text) {
    bytes.insert(bytes.end(), {static_cast<std::uint8_t>(unit), static_cast<std::uint8_t>(unit >> 8)});
    if (unit == u'\r') bytes.insert(bytes.end(), {'\n', 0});
  }
  return base::Bytes::of(std::move(bytes));
}

}  // namespace

Medium utf8Medium() { return {"UTF-8", std::make_shared<plain::PlainFormat>(), asUtf8}; }
Medium utf16Medium() { return {"UTF-16", std::make_shared<plain::PlainFormat>(), asUtf16, nullptr, true}; }

}  // namespace pluvo::formats
