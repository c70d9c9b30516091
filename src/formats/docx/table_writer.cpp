#include "table_writer.h"

#include <algorithm>

namespace pluvo::docx {

bool TableWriter::goes(const Tag& table) const {
  const auto known =
      std::lower_bound(part_.map.tables.begin(), part_.map.tables.end(), table.extent.begin,
                       [](const BodyMap::Table& t, Offset offset) { return t.offset < offset; });
  return known != part_.map.tables.end() && known->end > walker_.position() &&
         part_.script.dropsAllTo(known->end);
}

void TableWriter::begin(const Tag& tag) {
  if (!goes(tag)) {
    underWay_.placeBefore(tag);
    OpenElement open(tag);
    open.kept = true;
    return opens_.push(std::move(open));
  }
  opens_.copyTo(tag.extent.begin);
  depth_ = 1;
  runProperties_.clear();
  underWay_.place();
  walker_.tell(*this);
}

void TableWriter::markOfRow() {
  part_.script.take(walker_.position() + 1, [&](const Step& step) {
    if (step.kind == Step::Kind::put) underWay_.wait(step);
  });
}

void TableWriter::markWithoutParagraph(Extent endTag) {
  std::vector<Step> after;
  part_.script.take(walker_.position() + 1, [&](const Step& step) {
    if (step.kind != Step::Kind::put) return;
    if (step.after) {
      after.push_back(step);
    } else {
      underWay_.wait(step);
    }
  });
  underWay_.writeLastParagraph(endTag);
  for (const Step& step : after) underWay_.wait(step);
}

/// Goes on past so many characters; their new text has to stand outside.
void TableWriter::collect(Position count) {
  part_.script.take(walker_.position() + count, [&](const Step& step) {
    if (step.kind != Step::Kind::put) return;
    underWay_.wait(step, runProperties_, startOfSplitOff(part_, opens_.markup(), paragraph_, properties_));
    underWay_.place();
  });
}

void TableWriter::open(const Tag& tag) {
  if (isTrackedDeletion(tag.name)) part_.deletion = part_.output.source(tag.extent);
  if (tag.name == Name::tbl) ++depth_;
  if (tag.name == Name::r) runProperties_.clear();
  if (tag.name != Name::p) return;
  paragraph_ = tag;
  properties_ = {};
}

void TableWriter::close(const Tag& tag, Extent endTag) {
  if (tag.name != Name::tbl || --depth_ > 0) return;
  part_.output.leaveOutTo(endTag.end);
  opens_.loseText();
  walker_.tell(outside_);
}

void TableWriter::properties(Name kind, const Properties& properties) {
  if (kind == Name::pPr) {
    properties_ = properties;
  } else {
    runProperties_ = part_.output.source(properties.whole);
  }
}

void TableWriter::marker(const Marker& marker) {
  if (!departed_.goes(marker)) underWay_.content() += part_.output.source(marker.extent);
}

void TableWriter::text(const TextElement& element) { collect(static_cast<Position>(element.length())); }

void TableWriter::character(char16_t unit, Extent, Name name, std::string_view) {
  collect(1);
  if (name == Name::fldChar) part_.fields.pass(unit, false);
}

void TableWriter::formula(const Formula&) { collect(1); }

void TableWriter::simpleField(const Tag&, std::u16string_view instruction) {
  collect(static_cast<Position>(instruction.size()) + 2);
  part_.fields.begin(false, true);
}

void TableWriter::endSimpleField(Extent) {
  collect(1);
  part_.fields.end();
}

void TableWriter::paragraphMark(Extent) {
  runProperties_ = runPropertiesOfMark(part_.output.source(properties_.whole));
  noteDeletion(part_, properties_);
  collect(1);
}

void TableWriter::missingParagraph(Name, Extent) { collect(1); }

void TableWriter::rowMark(Extent) { collect(1); }

}  // namespace pluvo::docx
