#pragma once

#include "field_writer.h"
#include "inline_writer.h"
#include "table_writer.h"

#include <functional>
#include <string>
#include <vector>

namespace pluvo::docx {

/// Carries an edit of one story over to its bytes. It walks the touched paragraphs once more, each from the
/// nearest known place, and leaves all other bytes. Writers of runs, paragraphs, fields and tables do the
/// writing.
class Rewriter : private BodyEvents {
 public:
  /// The bytes hold the story and no other, but for those in its drawings; all must outlive this.
  Rewriter(base::ByteSpan bytes, const std::string& partName, Reach reach, const BodyMap& map,
           const document::Story& story, const text::RunMap<std::uint8_t>& originalHighlight,
           const Departed& departed, std::function<std::string()> placeholderStyle, EditScript script,
           Identifiers& identifiers);

  /// The new bytes; the spans hold as long as this.
  std::vector<base::ByteSpan> rewrite();

 private:
  void open(const Tag& tag) override;
  void close(const Tag& tag, Extent endTag) override;
  void properties(Name kind, const Properties& properties) override;
  void passedAlternative(Extent extent) override;
  void marker(const Marker& marker) override;
  void text(const TextElement& element) override;
  void character(char16_t unit, Extent extent, Name name, std::string_view reference) override;
  void ownMark(Extent extent) override;
  void formula(const Formula& formula) override;
  void simpleField(const Tag& tag, std::u16string_view instruction) override;
  void endSimpleField(Extent endTag) override;
  void paragraphMark(Extent endTag) override;
  void missingParagraph(Name container, Extent endTag) override;
  void rowMark(Extent endTag) override;

  struct Visits {
    std::vector<text::Span> spans;
    std::size_t touches = 0;  ///< stretches of text that are touched
  };
  Visits placesToVisit() const;
  void jumpTowards(Position position);
  bool idle() const;
  void enterParagraph();

  const text::RunMap<std::uint8_t>& originalHighlight_;
  const Departed& departed_;
  EditedPart part_;
  BodyWalker walker_;
  OpenElements opens_;
  RunWriter runs_;
  UnderWay underWay_;
  ParagraphWriter paragraphs_;
  NewTextWriter newText_;
  InlineWriter inlines_;
  FieldWriter fields_;
  TableWriter tables_;
};

}  // namespace pluvo::docx
