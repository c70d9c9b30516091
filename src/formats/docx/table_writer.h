#pragma once

#include "departed.h"
#include "under_way.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace pluvo::docx {

/// Writes tables, and the marks in them that are no paragraph's. Of a table that goes, only new text and
/// markers stay. While the walk is in such a table, the walk tells this of it.
class TableWriter : private BodyEvents {
 public:
  /// Outside tables that go, the walk tells `outside`.
  TableWriter(EditedPart& part, OpenElements& opens, UnderWay& underWay, const Departed& departed,
              BodyWalker& walker, BodyEvents& outside)
      : part_(part),
        opens_(opens),
        underWay_(underWay),
        departed_(departed),
        walker_(walker),
        outside_(outside) {}

  void begin(const Tag& tag);
  /// The mark of a row that stays, or of a cell or body that does not end with a paragraph.
  void markOfRow();
  void markWithoutParagraph(Extent endTag);

 private:
  void open(const Tag& tag) override;
  void close(const Tag& tag, Extent endTag) override;
  void properties(Name kind, const Properties& properties) override;
  void marker(const Marker& marker) override;
  void text(const TextElement& element) override;
  void character(char16_t unit, Extent extent, Name name, std::string_view reference) override;
  void formula(const Formula& formula) override;
  void simpleField(const Tag& tag, std::u16string_view instruction) override;
  void endSimpleField(Extent endTag) override;
  void paragraphMark(Extent endTag) override;
  void missingParagraph(Name container, Extent endTag) override;
  void rowMark(Extent endTag) override;

  bool goes(const Tag& table) const;
  void collect(Position count);

  EditedPart& part_;
  OpenElements& opens_;
  UnderWay& underWay_;
  const Departed& departed_;
  BodyWalker& walker_;
  BodyEvents& outside_;

  // Within a table that goes.
  std::size_t depth_ = 0;
  Tag paragraph_;
  Properties properties_;      ///< of that paragraph
  std::string runProperties_;  ///< of the run or mark at hand
};

}  // namespace pluvo::docx
