#include "docx_source.h"

#include "appearance_reader.h"
#include "base/utf.h"
#include "document_writer.h"
#include "other_texts.h"
#include "run_content.h"
#include "styles.h"
#include "xml/escape.h"

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

}  // namespace

DocxSource::DocxSource(Package package, Stories stories, Styles styles,
                       std::unique_ptr<const EncryptedPackage> around)
    : package_(std::move(package)),
      stories_(std::move(stories)),
      styles_(std::move(styles)),
      around_(std::move(around)) {}

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
  DocumentWriter writer(package_, stories_, document, [this] { return placeholderStyle(); });
  if (around_ == nullptr) return writer.write(out);
  base::MemoryOutput package;
  writer.write(package);
  around_->write(package.bytes(), out);
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
  std::uint64_t size = around_ == nullptr ? 0 : package_.archive.bytes().size();
  for (const zip::Member& member : package_.archive.members())
    size += std::min(member.size, std::numeric_limits<std::uint64_t>::max() - size);
  return size;
}

std::vector<text::RunMap<formats::Appearance>> DocxSource::appearance() const {
  const StyleLooks styles = readStyleLooks(package_);
  std::vector<text::RunMap<formats::Appearance>> looks;
  for (const StoryPart& part : stories_.parts) {
    for (const Site& site : part.sites) {
      if (site.story == Site::kNone) continue;
      if (site.story >= looks.size()) looks.resize(site.story + 1);
      if (looks[site.story].length() != 0) continue;
      looks[site.story] = readAppearance(part, site, styles);
    }
  }
  return looks;
}

void DocxSource::tellOtherTexts(const document::Story& story, formats::OtherTexts& texts) const {
  docx::tellOtherTexts({package_, mainPart(), stories_.parts.front().sites.front().map, styles_}, story,
                       texts);
}

}  // namespace pluvo::docx
