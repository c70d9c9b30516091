#include "fonts.h"

#include "damage.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace pluvo::rtf {

namespace {

/// Stands for code pages in which a byte is a symbol of its font.
constexpr std::int32_t kSymbols = 42;
constexpr std::int32_t kUtf8 = 65001;
constexpr std::int32_t kSymbolCharset = 2;

/// 0 where the document's own counts.
std::int32_t codePageOfCharset(std::int32_t charset) {
  constexpr std::array<std::pair<std::int32_t, std::int32_t>, 31> kPages = {
      {{0, 1252},   {2, kSymbols}, {77, 10000}, {78, 10001}, {79, 10003}, {80, 10008}, {81, 10002},
       {83, 10005}, {84, 10004},   {85, 10006}, {86, 10081}, {87, 10021}, {88, 10029}, {89, 10007},
       {128, 932},  {129, 949},    {130, 1361}, {134, 936},  {136, 950},  {161, 1253}, {162, 1254},
       {163, 1258}, {177, 1255},   {178, 1256}, {186, 1257}, {204, 1251}, {222, 874},  {238, 1250},
       {254, 437},  {255, 850},    {1, 0}}};
  const auto* const found = std::ranges::find(kPages, charset, &std::pair<std::int32_t, std::int32_t>::first);
  return found == kPages.end() ? 0 : found->second;
}

/// By the name that iconv has for a code page. Those of the Macintosh are read as their likes where the
/// system does not know them.
std::string iconvName(std::int32_t codePage) {
  constexpr std::array<std::pair<std::int32_t, const char*>, 15> kNames = {{{10000, "MACINTOSH"},
                                                                            {10001, "CP932"},
                                                                            {10002, "CP950"},
                                                                            {10003, "CP949"},
                                                                            {10004, "MACARABIC"},
                                                                            {10005, "MACHEBREW"},
                                                                            {10006, "MACGREEK"},
                                                                            {10007, "MAC-CYRILLIC"},
                                                                            {10008, "CP936"},
                                                                            {10017, "MAC-UK"},
                                                                            {10021, "CP874"},
                                                                            {10029, "MAC-CENTRALEUROPE"},
                                                                            {10081, "MACTURKISH"},
                                                                            {20866, "KOI8-R"},
                                                                            {kUtf8, "UTF-8"}}};
  const auto* const found = std::ranges::find(kNames, codePage, &std::pair<std::int32_t, const char*>::first);
  return found == kNames.end() ? "CP" + std::to_string(codePage) : found->second;
}

constexpr char16_t kNoCharacter = 0xFFFD;

}  // namespace

void Fonts::read(std::string_view bytes, Extent table) {
  Tokens tokens(bytes.substr(0, table.end), table.begin);
  Font* font = nullptr;
  for (Token token = tokens.next(); token.kind != Token::Kind::end; token = tokens.next()) {
    if (token.kind != Token::Kind::word) continue;
    if (token.word == Word::f) {
      font = &fonts_[token.number];
      if (fonts_.size() > kMost) throw damaged("has more than 65,536 fonts");
    } else if (font != nullptr && token.word == Word::fcharset) {
      font->charset = token.number;
    } else if (font != nullptr && token.word == Word::cpg) {
      font->codePage = token.number;
    }
  }
  decoderOf_.clear();
}

std::int32_t Fonts::codePageOf(std::int32_t font) const {
  const auto found = fonts_.find(font);
  if (found == fonts_.end()) return codePage_;
  if (found->second.charset == kSymbolCharset) return kSymbols;
  if (found->second.codePage > 0) return found->second.codePage;
  const std::int32_t page = found->second.charset < 0 ? 0 : codePageOfCharset(found->second.charset);
  return page == 0 ? codePage_ : page;
}

std::uint16_t Fonts::decoderOf(std::int32_t font) {
  if (const auto found = decoderOf_.find(font); found != decoderOf_.end()) return found->second;
  const std::uint16_t decoder = decoderFor(codePageOf(font));
  // A hostile document may name any number of fonts that it does not have.
  if (decoderOf_.size() < kMost) decoderOf_[font] = decoder;
  return decoder;
}

std::uint16_t Fonts::decoderFor(std::int32_t codePage) {
  if (const auto found = ofCodePage_.find(codePage); found != ofCodePage_.end()) return found->second;
  Decoder decoder;
  decoder.upper.fill(kNoCharacter);
  if (codePage == kSymbols) {
    decoder.kind = Decoder::Kind::symbol;
  } else if (const auto [kind, page] = code_pages::CodePage::named(iconvName(codePage)); page != nullptr) {
    const bool isSingle = page->isSingleByte();
    decoder.kind = isSingle ? Decoder::Kind::single : Decoder::Kind::several;
    decoder.page = isSingle ? nullptr : page;
    for (unsigned byte = 0x80; isSingle && byte < 0x100; ++byte) {
      const std::array<std::uint8_t, 1> bytes = {static_cast<std::uint8_t>(byte)};
      const code_pages::Character character = page->first(bytes);
      // A byte without a meaning in a code page is the control character of that number, as in word
      // processors.
      decoder.upper[byte - 0x80] = static_cast<char16_t>(
          character.valid && character.codePoint < 0x10000 ? character.codePoint : byte);
    }
  }
  // As many as the system has code pages, and one for all others.
  if (decoder.kind == Decoder::Kind::single && decoder.upper[0] == kNoCharacter) codePage = 0;
  if (const auto found = ofCodePage_.find(codePage); found != ofCodePage_.end()) return found->second;
  decoders_.push_back(decoder);
  return ofCodePage_[codePage] = static_cast<std::uint16_t>(decoders_.size() - 1);
}

std::optional<std::int32_t> Fonts::forLetters() const {
  const auto isForLetters = [this](std::int32_t font) { return codePageOf(font) != kSymbols; };
  if (isForLetters(standard_)) return standard_;
  std::optional<std::int32_t> least;
  for (const auto& [number, font] : fonts_) {
    if (number >= 0 && isForLetters(number) && (!least || number < *least)) least = number;
  }
  return least;
}

}  // namespace pluvo::rtf
