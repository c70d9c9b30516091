#include "docx_source.h"

#include "appearance_reader.h"
#include "document_writer.h"
#include "formats/refused_character.h"
#include "other_texts.h"
#include "run_content.h"
#include "styles.h"
#include "xml/escape.h"

namespace pluvo::docx {

DocxSource::DocxSource(Package package, Stories stories, Styles styles,
                       std::unique_ptr<const EncryptedPackage> around)
    : package_(std::move(package)),
      stories_(std::move(stories)),
      styles_(std::move(styles)),
      around_(std::move(around)) {}

std::optional<std::string> DocxSource::refusesText(std::u16string_view newText) const {
  const auto isPlain = [](char16_t unit) { return unit >= u' ' && unit < 0x7F; };
  if (std::all_of(newText.begin(), newText.end(), isPlain)) return std::nullopt;
  return formats::firstRefused(newText, "A Word document", [](char32_t point) {
    const bool isUnit = point <= 0xFFFF;
    return (isUnit && standsAlone(static_cast<char16_t>(point))) || point == U'\n' || xml::isCharacter(point);
  });
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
