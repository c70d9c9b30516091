#include "support/invariants.h"

#include <set>
#include <vector>

namespace pluvo::notation {

using document::kNone;
using document::Story;
using text::Position;

namespace {

class Inspector {
 public:
  explicit Inspector(const Story& model) : model_(model) {}

  std::string run() {
    const Position length = model_.length();
    check(model_.visibility().length() == length && model_.highlight().length() == length &&
              model_.structure().length() == length,
          "a map is out of step with the text", 0);
    check(model_.text().check() && model_.visibility().check() && model_.highlight().check() &&
              model_.structure().check(),
          "a map is not in order", 0);
    for (Position position = 0; position < length && damage_.empty(); ++position) visit(position);
    check(length > 0 && model_.text().at(length - 1) == text::kParagraphMark && table_ == kNone &&
              fields_.empty(),
          "the document does not end with a paragraph mark outside everything", length - 1);
    return damage_;
  }

 private:
  struct OpenField {
    std::int32_t field;
    text::Visibility part;
  };

  void check(bool condition, const std::string& what, Position position) {
    if (!condition && damage_.empty()) damage_ = what + " (position " + std::to_string(position) + ")";
  }

  void visit(Position position) {
    const auto structure = model_.structure().valueAt(position);
    tables(position, structure);
    fields(position, structure);
  }

  void tables(Position position, const document::Structure& structure) {
    if (structure.table != table_) changeTable(position, structure.table);
    const bool isMark = model_.text().at(position) == text::kCellMark && table_ != kNone;
    check(isMark || !structure.rowMark, "a row mark that is no mark", position);
    if (isMark && structure.rowMark) {
      check(position > 0 && model_.isCellMark(position - 1) &&
                model_.structure().valueAt(position - 1).table == table_,
            "a row mark after something other than its last cell", position);
    }
  }

  /// A table begins after a paragraph's end, ends after a row mark, and is in one place only.
  void changeTable(Position position, std::int32_t table) {
    check(position == 0 || model_.endsParagraph(position - 1), "text runs over the edge of a table",
          position);
    for (; table_ != kNone && !isIn(table, table_); table_ = parentOf(table_)) {
      check(model_.isRowMark(position - 1) || left_, "a table that does not end with a row mark", position);
      left_ = true;
    }
    left_ = false;
    for (std::int32_t inner = table; inner != table_ && inner != kNone; inner = parentOf(inner)) {
      check(begun_.insert(inner).second, "a table in two places", position);
    }
    table_ = table;
  }

  void fields(Position position, const document::Structure& structure) {
    const auto shown = model_.visibility().valueAt(position);
    const char16_t unit = model_.text().at(position);
    if (!model_.isFieldMark(position)) {
      const auto expected = fields_.empty() ? text::kEverywhere : around();
      check(structure.field == (fields_.empty() ? kNone : fields_.back().field), "text in the wrong field",
            position);
      check(shown == text::kNowhere || shown == expected, "text shown in the wrong view", position);
    } else if (unit == text::kFieldBegin) {
      check(begunFields_.insert(structure.field).second, "a field that begins twice", position);
      fields_.push_back({structure.field, text::kInCodes});
    } else {
      check(!fields_.empty() && fields_.back().field == structure.field, "a field mark out of balance",
            position);
      if (!damage_.empty()) return;
      if (unit == text::kFieldEnd) {
        fields_.pop_back();
      } else {
        fields_.back().part = text::kInResults;
      }
    }
  }

  text::Visibility around() const {
    const auto outer = model_.fields()[static_cast<std::size_t>(fields_.back().field)].around;
    return static_cast<text::Visibility>(outer & fields_.back().part);
  }

  std::int32_t parentOf(std::int32_t table) const {
    return model_.tables()[static_cast<std::size_t>(table)].parent;
  }
  bool isIn(std::int32_t inner, std::int32_t outer) const {
    while (inner != kNone && inner != outer) inner = parentOf(inner);
    return inner == outer;
  }

  const Story& model_;
  std::string damage_;
  std::int32_t table_ = kNone;
  bool left_ = false;
  std::set<std::int32_t> begun_;
  std::set<std::int32_t> begunFields_;
  std::vector<OpenField> fields_;
};

}  // namespace

std::string damageOf(const Story& model) { return Inspector(model).run(); }

}  // namespace pluvo::notation
