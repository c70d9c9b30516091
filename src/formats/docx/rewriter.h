#pragma once

#include "field_writer.h"
#include "inline_writer.h"
#include "table_writer.h"

#include <functional>
#include <limits>
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

  using Place = formats::PlaceMap<Offset>::Place;
  /// The stretches of text that are touched, as a walk visits them.
  struct Visits {
    std::vector<text::Span> spans = {};
    std::size_t touches = 0;  ///< how many stretches there are; of near ones a visit is made together
    bool areApart = true;     ///< each can be made without those in front
  };
  Visits visits() const;

  /// To be called first, where another rewrites what is in front. Tells whether what is in front matters here
  /// no more than that content of a paragraph may be under way from there.
  bool startAt(const Place& place);
  /// The rest, from there on, is another's; all is its own where this is not called.
  void endAt(Offset end) { end_ = end; }
  void visit(text::Span touched);
  /// Whether what it made from its start on can be joined to what is in front.
  bool canBeJoined() const { return walker_.betweenBlocks() && underWay_.canBeJoined(); }
  /// Whether it has come to where that one started, and leaves what that one expects.
  bool leadsTo(const Rewriter& next) const;
  /// Lets that one go on. This one must outlive it.
  void handOverTo(Rewriter& next);
  /// No more visits follow: copies the rest up to there.
  void finish(Offset end);

  Place placeBefore(text::Position position) const { return part_.map.places.before(position); }
  std::size_t size() const { return part_.size; }  ///< in bytes, as it was
  PartOutput& output() { return part_.output; }

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
  Place start_;
  const std::string* before_ = nullptr;  ///< content under way that the one in front left to this one
  Offset end_ = std::numeric_limits<Offset>::max();
};

}  // namespace pluvo::docx
