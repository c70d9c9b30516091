#include "docx_source.h"

#include "appearance_reader.h"
#include "base/utf.h"
#include "departed.h"
#include "notes.h"
#include "other_texts.h"
#include "rewriter.h"
#include "run_content.h"
#include "styles.h"
#include "xml/escape.h"
#include "zip/rewrite.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>

namespace pluvo::docx {

namespace {

std::string codeOf(char16_t unit) {
  std::array<char, 8> code{};
  std::snprintf(code.data(), code.size(), "U+%04X", static_cast<unsigned>(unit));
  return code.data();
}

/// The main part is gathered in memory, new text included.
void requireRoomInMemory(const text::PieceText& text) {
  constexpr std::int64_t kMost = std::int64_t{128} << 20U;
  std::int64_t added = 0;
  text.forEachPiece([&](const text::Piece& piece, std::u16string_view) {
    if (piece.isNew()) added += piece.length;
  });
  if (added <= kMost) return;
  throw errors::DocumentError(
      errors::Problem::tooLarge,
      "The changes would put " + std::to_string(added >> 20U) +
          " million characters into the document, which takes 128 million at most; put in "
          "a shorter text, or divide the document.");
}

std::vector<std::uint8_t> joined(const std::vector<base::ByteSpan>& pieces) {
  std::vector<std::uint8_t> bytes;
  for (const base::ByteSpan piece : pieces) bytes.insert(bytes.end(), piece.begin(), piece.end());
  return bytes;
}

}  // namespace

DocxSource::DocxSource(Package package, xml::Utf8Part part, BodyMap map, text::RunMap<std::uint8_t> highlight,
                       Styles styles)
    : package_(std::move(package)),
      part_(std::move(part)),
      map_(std::move(map)),
      highlight_(std::move(highlight)),
      styles_(std::move(styles)) {}

std::optional<std::string> DocxSource::refusesText(std::u16string_view newText) const {
  const auto isPlain = [](char16_t unit) { return unit >= u' ' && unit < 0x7F; };
  if (std::all_of(newText.begin(), newText.end(), isPlain)) return std::nullopt;
  for (std::size_t i = 0; i < newText.size();) {
    const base::Utf16Character next = base::firstOfUtf16(newText.substr(i));
    if (!standsAlone(newText[i]) && newText[i] != u'\n' && !xml::isCharacter(next.point))
      return "A Word document cannot hold the character " + codeOf(newText[i]) +
             "; leave it out of the text.";
    i += next.units;
  }
  return std::nullopt;
}

void DocxSource::write(const document::Document& document, base::Output& out) const {
  const document::Story& model = document.mainText();
  requireRoomInMemory(model.text());
  EditScript script(model);
  const Departed departed(map_, script, package_, part_.utf8.view);
  Rewriter rewriter(
      part_.utf8.view, package_.mainPart, map_, model, highlight_, departed,
      [this] { return placeholderStyle(); }, std::move(script));
  const std::vector<base::ByteSpan> pieces = rewriter.rewrite();
  const std::vector<ChangedPart> others = partsWithoutDeparted(package_, departed);

  std::vector<zip::Change> changes;
  std::vector<std::uint8_t> encoded;
  if (part_.encoding.isUtf8() && part_.encoding.mark.empty()) {
    changes.push_back({package_.mainPart, pieces});
  } else {
    encoded = xml::fromUtf8(joined(pieces), part_.encoding);
    changes.push_back({package_.mainPart, {base::ByteSpan(encoded)}});
  }
  for (const ChangedPart& part : others) changes.push_back({part.name, {base::ByteSpan(part.bytes)}});
  zip::rewrite(package_.archive, changes, out);
}

std::string DocxSource::placeholderStyle() const {
  std::string id;
  if (const zip::Member* const member = package_.member(Role::styles)) {
    const std::string name(member->name);
    id = styleNamed(xml::toUtf8(package_.archive.read(*member), name).utf8.view, name, "Placeholder Text");
  }
  return id.empty() ? "PlaceholderText" : id;
}

std::uint64_t DocxSource::unpackedSize() const {
  std::uint64_t size = 0;
  for (const zip::Member& member : package_.archive.members())
    size += std::min(member.size, std::numeric_limits<std::uint64_t>::max() - size);
  return size;
}

text::RunMap<formats::Appearance> DocxSource::appearance() const {
  return readAppearance(part_.utf8.view, package_.mainPart, readStyleLooks(package_));
}

void DocxSource::tellOtherTexts(const document::Story& model, formats::OtherTexts& texts) const {
  docx::tellOtherTexts({package_, part_.utf8.view, map_, styles_}, model, texts);
}

}  // namespace pluvo::docx
