#include "rewriter.h"

#include <algorithm>

namespace pluvo::docx {

using text::Span;

namespace {

/// Jumping has a price; nearer places are walked to.
constexpr Offset kWorthJumping = 512;

/// Blocks stay whatever becomes of their contents.
bool isBlock(Name name) {
  switch (name) {
    case Name::body:
    case Name::tbl:
    case Name::tr:
    case Name::tc:
      return true;
    default:
      return false;
  }
}

}  // namespace

Rewriter::Rewriter(base::ByteSpan bytes, const std::string& partName, Reach reach, const BodyMap& map,
                   const document::Story& story, const text::RunMap<std::uint8_t>& originalHighlight,
                   const Departed& departed, std::function<std::string()> placeholderStyle, EditScript script,
                   Identifiers& identifiers)
    : originalHighlight_(originalHighlight),
      departed_(departed),
      part_(bytes, map, story, script, identifiers),
      walker_(bytes, partName, *this, reach, xml::Swept::yes, Told::bytes),
      opens_(part_, walker_.scanner(), std::move(placeholderStyle)),
      runs_(part_, opens_),
      underWay_(part_, opens_),
      paragraphs_(part_, opens_, runs_, underWay_),
      newText_(part_, opens_, runs_, paragraphs_),
      inlines_(part_, opens_, runs_, newText_),
      fields_(part_, opens_, runs_, newText_),
      tables_(part_, opens_, underWay_, departed, walker_, *this) {}

bool Rewriter::startAt(const Place& place) {
  while (!walker_.betweenBlocks() && walker_.step()) {
  }
  Step::Kind before = Step::Kind::keep;
  part_.script.take(place.position, [&](const Step& step) { before = step.kind; });
  part_.output.leaveOutTo(place.offset);
  walker_.resumeAt(place.offset, place.position);
  start_ = place;
  if (before == Step::Kind::drop) underWay_.followOther();  // of a mark: its paragraph goes on here
  return before != Step::Kind::put;
}

void Rewriter::visit(Span touched) {
  jumpTowards(touched.from);
  while ((walker_.position() < touched.to || !idle()) && walker_.offset() < end_ && walker_.step()) {
  }
}

bool Rewriter::leadsTo(const Rewriter& next) const {
  if (!next.underWay_.followsOther())
    return idle() && underWay_.isForgotten() && walker_.offset() <= next.start_.offset;
  return walker_.betweenBlocks() && walker_.offset() == next.start_.offset && underWay_.isText();
}

void Rewriter::handOverTo(Rewriter& next) {
  finish(next.start_.offset);
  next.opens_.passOn(opens_.back());  // of the body
  if (next.underWay_.awaitsOther()) {
    next.underWay_.content().insert(0, underWay_.content());
  } else if (next.underWay_.followsOther()) {
    next.before_ = &underWay_.content();
  }
}

void Rewriter::finish(Offset end) {
  part_.output.commitTo(end);
  if (before_ != nullptr) part_.output.insert(underWay_.joint(), *before_);
}

/// Touched stretches between which no jump would be made are visited as one.
Rewriter::Visits Rewriter::visits() const {
  Visits visits;
  Offset first = 0;  // of the last visit: where a walk to it starts
  forEachTouchedSpan(part_.script, part_.story, originalHighlight_, [&](Span span) {
    ++visits.touches;
    const Offset start = part_.map.places.before(span.from).offset;
    if (!visits.spans.empty() && start < first + kWorthJumping) {
      visits.spans.back().to = span.to;
    } else {
      visits.spans.push_back(span);
      first = start;
    }
  });
  // Where text is put into a tracked deletion, it goes by the one met last.
  visits.areApart = !part_.map.hasDeletions;
  if (departed_.places().empty()) return visits;
  // A marker may stand between two paragraphs, so that the way to it begins in the one before.
  for (const Position place : departed_.places()) visits.spans.push_back({std::max(place - 1, 0), place + 1});
  std::sort(visits.spans.begin(), visits.spans.end(),
            [](const Span& a, const Span& b) { return a.from < b.from; });
  visits.areApart = false;
  return visits;
}

/// Between two blocks of the body with nothing under way.
bool Rewriter::idle() const { return walker_.betweenBlocks() && underWay_.empty(); }

void Rewriter::jumpTowards(Position position) {
  if (walker_.position() > position) return;
  const auto place = part_.map.places.before(position);
  if (place.offset < walker_.offset() + kWorthJumping) return;
  while (!walker_.betweenBlocks() && walker_.step()) {
  }
  if (place.offset <= walker_.offset()) return;
  part_.script.take(place.position, [](const Step&) {});
  part_.output.commitTo(place.offset);
  walker_.resumeAt(place.offset, place.position);
}

void Rewriter::enterParagraph() {
  if (opens_.inParagraph()) paragraphs_.enter();
}

void Rewriter::open(const Tag& tag) {
  if (isTrackedDeletion(tag.name)) part_.deletion = part_.output.source(tag.extent);
  enterParagraph();
  switch (tag.name) {
    case Name::tbl:
      return tables_.begin(tag);
    case Name::p:
      inlines_.beginParagraph();
      return paragraphs_.open(tag);
    case Name::r:
      return runs_.begin(tag);
    case Name::ruby:
      return newText_.openGuide(tag);
    case Name::fldSimple:
      return fields_.open(tag);
    case Name::sdt:
      if (!opens_.inParagraph()) underWay_.placeBefore(tag);
      break;
    case Name::sdtContent:
      opens_.back().content = tag.extent.begin;
      break;
    default:
      break;
  }
  OpenElement open(tag);
  open.kept = isBlock(tag.name);
  opens_.push(std::move(open));
}

void Rewriter::close(const Tag& tag, Extent endTag) {
  if (tag.name == Name::p) return paragraphs_.close(endTag);
  if (tag.name == Name::r) {
    if (!newText_.closesGuide()) return runs_.end(endTag);
    newText_.closeGuide();
  }
  opens_.close(endTag);
}

void Rewriter::properties(Name kind, const Properties& properties) {
  if (kind == Name::pPr) {
    paragraphs_.properties(properties);
  } else {
    runs_.properties(properties);
  }
}

void Rewriter::passedAlternative(Extent extent) {
  enterParagraph();
  opens_.copyTo(extent.begin);
  const std::size_t begin = part_.output.text().size();
  opens_.copyTo(extent.end);
  opens_.back().passed.emplace_back(begin, part_.output.text().size());
}

void Rewriter::marker(const Marker& marker) {
  enterParagraph();
  const bool goes = departed_.goes(marker);
  // Where text is on its way into the next paragraph, the content after it has to stay after it.
  const bool comesAlong = !opens_.inParagraph() && underWay_.hasContent();
  if (!goes && !comesAlong) {
    opens_.back().markers += part_.output.source(marker.extent);
    return;
  }
  opens_.copyTo(marker.extent.begin);
  part_.output.leaveOutTo(marker.extent.end);
  if (!goes) underWay_.content() += part_.output.source(marker.extent);
}

void Rewriter::text(const TextElement& element) { inlines_.text(walker_.position(), element); }

void Rewriter::character(char16_t unit, Extent extent, Name name, std::string_view) {
  inlines_.character(walker_.position(), unit, extent, name);
}

void Rewriter::ownMark(Extent extent) { runs_.keepAsItIs(extent); }

void Rewriter::formula(const Formula& formula) {
  paragraphs_.enter();
  inlines_.formula(walker_.position(), formula);
}

void Rewriter::simpleField(const Tag& tag, std::u16string_view instruction) {
  paragraphs_.enter();
  fields_.begin(walker_.position(), tag, instruction);
}

void Rewriter::endSimpleField(Extent endTag) { fields_.end(walker_.position(), endTag); }

void Rewriter::paragraphMark(Extent endTag) {
  paragraphs_.mark(walker_.position(), endTag, [this](const Step& step, std::string_view runProperties) {
    newText_.putInNewRun(step, runProperties);
  });
}

void Rewriter::missingParagraph(Name, Extent endTag) { tables_.markWithoutParagraph(endTag); }

void Rewriter::rowMark(Extent) { tables_.markOfRow(); }

}  // namespace pluvo::docx
