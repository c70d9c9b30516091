#include "appearance_reader.h"

#include "body_walker.h"
#include "table_columns.h"

#include <string_view>
#include <unordered_map>
#include <vector>

namespace pluvo::docx {

namespace {

using formats::Appearance;

/// Characters take the look that is current when the walk has passed them.
class AppearanceReader : public BodyEvents {
 public:
  AppearanceReader(base::ByteSpan part, const std::string& partName, Reach reach, const StyleLooks& styles)
      : part_(reinterpret_cast<const char*>(part.data()), part.size()),
        styles_(styles),
        walker_(part, partName, *this, reach) {}

  text::RunMap<Appearance> read() {
    while (walker_.step()) {
    }
    change({});
    return std::move(map_);
  }

  void open(const Tag& tag) override {
    const std::string_view after = part_.substr(tag.empty ? part_.size() : tag.extent.end);
    if (tag.name == Name::tbl) tables_.push_back({TableColumns(after), 0});
    if (!tables_.empty() && tag.name == Name::tr) tables_.back().columns.beginRow(after);
    if (!tables_.empty() && tag.name == Name::tc) {
      tables_.back().cellWidth = tables_.back().columns.cellWidth(after);
      change({});
    }
    if (tag.name == Name::p) change(paragraph_ = paragraphLook({}));
    if (tag.name == Name::r) change(paragraph_);
    if (isInsertion(tag.name)) ++insertions_;
  }
  void close(const Tag& tag, Extent) override {
    if (tag.name == Name::r) change(paragraph_);
    if (tag.name == Name::p) change({});
    if (isInsertion(tag.name)) --insertions_;
    if (!tables_.empty() && tag.name == Name::tc) {
      tables_.back().cellWidth = 0;
      change({});
    }
    if (!tables_.empty() && tag.name == Name::tbl) tables_.pop_back();
  }
  void properties(Name kind, const Properties& properties) override {
    if (kind == Name::pPr) {
      change(paragraph_ = paragraphLook(properties));
    } else {
      change(runLook(properties));
    }
  }

 private:
  static bool isInsertion(Name name) { return name == Name::ins || name == Name::moveTo; }

  void change(const Appearance& look) {
    if (walker_.position() > filled_) map_.append(walker_.position() - filled_, current_);
    filled_ = walker_.position();
    current_ = look;
    current_.inserted = insertions_ > 0;
    current_.cellWidth = tables_.empty() ? std::uint16_t{0} : tables_.back().cellWidth;
  }

  std::string_view bytes(Extent extent) const {
    return part_.substr(extent.begin, extent.end - extent.begin);
  }

  const Appearance& ofStyle(const std::string& style) {
    const auto [known, isNew] = paragraphStyles_.try_emplace(style);
    if (isNew) known->second = styles_.ofParagraph(style);
    return known->second;
  }

  Appearance paragraphLook(const Properties& properties) {
    Appearance look = ofStyle(properties.style);
    const SaidOfParagraph said = saidOfParagraph(bytes(properties.whole));
    look.heading = said.heading.value_or(look.heading);
    look.alignment = said.alignment.value_or(look.alignment);
    look.rightToLeft = said.rightToLeft.value_or(look.rightToLeft);
    look.listLevel = said.listLevel.value_or(look.listLevel);
    return look;
  }

  Appearance runLook(const Properties& properties) {
    const std::string_view whole = bytes(properties.whole);
    if (whole == lastRun_ && paragraph_ == lastParagraph_) return lastLook_;
    Appearance look = properties.look.style.empty()
                          ? paragraph_
                          : styles_.withCharacterStyle(paragraph_, properties.look.style);
    const auto [known, isNew] = runs_.try_emplace(whole);
    if (isNew) known->second = saidOfRun(whole);
    const SaidOfRun& said = known->second;
    look.bold = said.bold.value_or(look.bold);
    look.italic = said.italic.value_or(look.italic);
    look.underlined = said.underlined.value_or(look.underlined);
    look.struck = said.struck.value_or(look.struck);
    lastRun_ = whole;
    lastParagraph_ = paragraph_;
    return lastLook_ = look;
  }

  struct Table {
    TableColumns columns;
    std::uint16_t cellWidth = 0;  ///< of the cell at hand
  };

  std::string_view part_;
  const StyleLooks& styles_;
  BodyWalker walker_;
  text::RunMap<Appearance> map_;
  Position filled_ = 0;
  std::vector<Table> tables_;
  int insertions_ = 0;  ///< open tracked ones
  Appearance paragraph_;
  Appearance current_;
  std::unordered_map<std::string, Appearance> paragraphStyles_;
  std::unordered_map<std::string_view, SaidOfRun> runs_;
  std::string_view lastRun_;
  Appearance lastParagraph_;
  Appearance lastLook_;
};

}  // namespace

text::RunMap<Appearance> readAppearance(const StoryPart& part, const Site& site, const StyleLooks& styles) {
  const base::ByteSpan bytes = part.part.utf8.view;
  if (site.scope == nullptr) return AppearanceReader(bytes, part.name, Reach::mainText, styles).read();
  const std::string alone = standingAlone(site, bytes);
  return AppearanceReader({reinterpret_cast<const std::uint8_t*>(alone.data()), alone.size()}, part.name,
                          Reach::oneStory, styles)
      .read();
}

}  // namespace pluvo::docx
