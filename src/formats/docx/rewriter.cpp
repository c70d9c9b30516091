#include "rewriter.h"

#include "control_properties.h"

#include <algorithm>

namespace pluvo::docx {

using text::Span;

namespace {

/// Jumping has a price; nearer places are walked to.
constexpr Offset kWorthJumping = 512;

bool isTrackedDeletion(Name name) { return name == Name::del || name == Name::moveFrom; }

bool isInline(Name name) {
  switch (name) {
    case Name::body:
    case Name::p:
    case Name::tbl:
    case Name::tr:
    case Name::tc:
      return false;
    default:
      return true;
  }
}

}  // namespace

Rewriter::Rewriter(base::ByteSpan part, const std::string& partName, const BodyMap& map,
                   const document::Story& model, const text::RunMap<std::uint8_t>& originalHighlight,
                   const Casualties& casualties, std::function<std::string()> placeholderStyle,
                   EditScript script)
    : part_(part),
      map_(map),
      model_(model),
      originalHighlight_(originalHighlight),
      casualties_(casualties),
      placeholderStyle_(std::move(placeholderStyle)),
      script_(std::move(script)),
      output_(part),
      walker_(part, partName, *this, Reach::mainText, xml::Swept::yes),
      identifiers_(part, partName) {}

std::vector<base::ByteSpan> Rewriter::rewrite() {
  const Visits visits = placesToVisit();
  // What is written anew is gathered in one buffer; growing it little by little would copy it again and
  // again.
  constexpr std::size_t kPerTouch = 512;
  const std::size_t expected = visits.touches * kPerTouch;
  if (expected > part_.size() / 2) {
    output_.gatherAll(part_.size() + part_.size() / 2);
  } else {
    output_.text().reserve(expected);
  }
  for (const Span& touched : visits.spans) {
    jumpTowards(touched.from);
    while ((walker_.position() < touched.to || !idle()) && walker_.step()) {
    }
  }
  return output_.finish();
}

/// Touched stretches between which no jump would be made are visited as one.
Rewriter::Visits Rewriter::placesToVisit() const {
  Visits visits;
  Offset first = 0;  // of the last visit: where a walk to it starts
  forEachTouchedSpan(script_, model_, originalHighlight_, [&](Span span) {
    ++visits.touches;
    const Offset start = map_.places.before(span.from).offset;
    if (!visits.spans.empty() && start < first + kWorthJumping) {
      visits.spans.back().to = span.to;
    } else {
      visits.spans.push_back(span);
      first = start;
    }
  });
  if (casualties_.places().empty()) return visits;
  // A marker may stand between two paragraphs, so that the way to it begins in the one before.
  for (const Position place : casualties_.places())
    visits.spans.push_back({std::max(place - 1, 0), place + 1});
  std::sort(visits.spans.begin(), visits.spans.end(),
            [](const Span& a, const Span& b) { return a.from < b.from; });
  return visits;
}

/// Between two blocks of the body with nothing under way.
bool Rewriter::idle() const {
  return walker_.betweenBlocks() && carried_.empty() && carriedBlocks_.empty() && waiting_.empty();
}

void Rewriter::jumpTowards(Position position) {
  if (walker_.position() > position) return;
  const auto place = map_.places.before(position);
  if (place.offset < walker_.offset() + kWorthJumping) return;
  while (!walker_.betweenBlocks() && walker_.step()) {
  }
  if (place.offset <= walker_.offset()) return;
  script_.take(place.position, [](const Step&) {});
  output_.settle(place.offset);
  walker_.resumeAt(place.offset, place.position);
}

/// Copies old bytes, and notes where the open elements come to stand.
void Rewriter::copyTo(Offset to) {
  const Offset from = output_.copied();
  const std::size_t size = output_.text().size();
  for (auto open = opens_.rbegin(); open != opens_.rend(); ++open) {
    const auto note = [&](std::size_t& out, Offset offset) {
      if (out == kNowhere && from <= offset && offset <= to) out = size + (offset - from);
    };
    note(open->outInner, open->inner);
    note(open->outBegin, open->tag.extent.begin);
    if (open->tag.extent.begin < from) break;
  }
  output_.copyTo(to);
}

void Rewriter::open(const Tag& tag) {
  if (isTrackedDeletion(tag.name)) deletion_ = output_.source(tag.extent);
  if (removedTables_ > 0) {
    if (tag.name == Name::tbl) ++removedTables_;
    if (tag.name == Name::p) {
      removedParagraph_ = {};
      removedParagraph_.tag = tag;
    }
    if (tag.name == Name::r) run_ = {};
    return;
  }
  if (tag.name == Name::tbl) return openTable(tag);
  if (paragraph_ != 0) enterParagraphContent();
  if (tag.name == Name::r) return beginRun(tag);
  if (tag.name == Name::ruby) return openRuby(tag);
  if (tag.name == Name::sdt && paragraph_ == 0) {
    placeWholeParagraphs();
    placeBlocksBefore(tag);
  }
  if (tag.name == Name::sdtContent) opens_.back().content = tag.extent.begin;
  Open open;
  open.tag = tag;
  open.inner = tag.extent.end;
  open.kept = !isInline(tag.name) && tag.name != Name::p;
  if (tag.name == Name::fldSimple) {
    open = std::move(fieldOpen_);
    open.tag = tag;
    open.inner = tag.extent.end;
    open.lost = !open.kept;
    if (open.bare || open.toComplex) open.outBegin = open.outInner = output_.text().size();
  }
  opens_.push_back(std::move(open));
  if (tag.name != Name::p) return;
  paragraph_ = opens_.size() - 1;
  textProperties_ = {};
}

void Rewriter::openTable(const Tag& tag) {
  const auto table =
      std::lower_bound(map_.tables.begin(), map_.tables.end(), tag.extent.begin,
                       [](const BodyMap::Table& t, Offset offset) { return t.offset < offset; });
  if (table != map_.tables.end() && table->end > walker_.position() && script_.dropsAllTo(table->end)) {
    copyTo(tag.extent.begin);
    removedTables_ = 1;
    run_ = {};
    placeWaiting(plainHeader());
    return;
  }
  placeWholeParagraphs();
  placeBlocksBefore(tag);
  Open open;
  open.tag = tag;
  open.inner = tag.extent.end;
  open.kept = true;
  opens_.push_back(std::move(open));
}

/// A run with a guide is no run any more but what holds the runs that are guided.
void Rewriter::openRuby(const Tag& tag) {
  Open run;
  run.tag = run_.tag;
  run.inner = tag.extent.begin;
  run_ = {};
  guide_ = opens_.size();
  const auto guide =
      std::lower_bound(map_.guides.begin(), map_.guides.end(), tag.extent.begin,
                       [](const BodyMap::Guide& g, Offset offset) { return g.offset < offset; });
  keptGuided_ = script_.keptOf({guide->from, guide->to});
  opens_.push_back(std::move(run));
  Open ruby;
  ruby.tag = tag;
  ruby.inner = tag.extent.end;
  opens_.push_back(std::move(ruby));
}

void Rewriter::close(const Tag& tag, Extent endTag) {
  if (removedTables_ > 0) {
    if (tag.name == Name::tbl && --removedTables_ == 0) {
      output_.leaveOutTo(endTag.end);
      loseText();
    }
    return;
  }
  if (tag.name == Name::r && (guide_ == 0 || opens_.size() != guide_ + 1)) return endRun(endTag);
  if (tag.name == Name::r) guide_ = 0;
  if (tag.name == Name::p) {
    enterParagraphContent();
    if (markDropped_) return mergeParagraph(endTag);
    return keepParagraph(endTag);
  }
  closeContainer(endTag);
}

void Rewriter::closeContainer(Extent endTag) {
  Open& closing = opens_.back();
  std::string& out = output_.text();
  if (!closing.kept && (closing.lost || closing.reopened) && !closing.toComplex) {
    copyTo(endTag.begin);
    out.resize(closing.outBegin);
    out += closing.markers;
    output_.leaveOutTo(endTag.end);
    closing.lost = true;
    closing.touched = true;
  } else if (closing.toComplex || (closing.bare && closing.tag.name == Name::fldSimple)) {
    copyTo(endTag.begin);
    output_.leaveOutTo(endTag.end);
  } else if (closing.expanded) {
    out += "</" + std::string(qualifiedName(closing.tag)) + ">";
  } else if (closing.touched) {
    copyTo(endTag.begin);
    if (closing.textChanged) removePassed(closing);
    unbind(closing);
  }
  const Open closed = std::move(closing);
  opens_.pop_back();
  if (!opens_.empty()) passOn(closed);
}

/// What a closed element means for the one around it.
void Rewriter::passOn(const Open& closed) {
  Open& around = opens_.back();
  around.kept = around.kept || closed.kept;
  around.lost = around.lost || closed.lost;
  around.touched = around.touched || closed.touched;
  around.textChanged = around.textChanged || closed.textChanged;
  if (!closed.kept) around.markers += closed.markers;
}

void Rewriter::loseText() {
  Open& open = opens_.back();
  open.lost = open.touched = open.textChanged = true;
}

/// The alternatives that were not chosen say what the text was before.
void Rewriter::removePassed(Open& open) {
  for (auto passed = open.passed.rbegin(); passed != open.passed.rend(); ++passed) {
    output_.text().erase(passed->first, passed->second - passed->first);
  }
  open.passed.clear();
}

void Rewriter::unbind(Open& open) {
  if (open.tag.name != Name::sdt || !open.textChanged || open.content == 0 || open.reopened) return;
  const std::string_view properties = output_.source(open.inner, open.content);
  const std::string changed = forChangedText(properties, markup(), open.breaksLines);
  std::string& out = output_.text();
  if (showsPlaceholder(properties)) {
    if (!knownPlaceholderStyle_) knownPlaceholderStyle_ = placeholderStyle_();
    const std::size_t content = open.outInner + properties.size();
    const std::string plain =
        withoutPlaceholderLook(std::string_view(out).substr(content), *knownPlaceholderStyle_);
    out.replace(content, out.size() - content, plain);
  }
  out.replace(open.outInner, properties.size(), changed);
}

void Rewriter::properties(Name kind, const Properties& properties) {
  if (removedTables_ > 0) {
    if (kind == Name::pPr) {
      removedParagraph_.properties = properties;
    } else {
      run_.properties = output_.source(properties.whole);
    }
  } else if (kind == Name::pPr) {
    opens_.back().properties = properties;
    opens_.back().inner = properties.whole.end;
  } else {
    run_.properties = output_.source(properties.whole);
    run_.headerEnd = properties.whole.end;
    run_.colour = properties.look.highlight;
    run_.numbered = properties.look.numbered;
  }
}

void Rewriter::passedAlternative(Extent extent) {
  if (removedTables_ > 0) return;
  if (paragraph_ != 0) enterParagraphContent();
  copyTo(extent.begin);
  const std::size_t begin = output_.text().size();
  copyTo(extent.end);
  opens_.back().passed.emplace_back(begin, output_.text().size());
}

void Rewriter::marker(const Marker& marker) {
  if (removedTables_ > 0) {
    if (!casualties_.goes(marker)) carried_ += output_.source(marker.extent);
    return;
  }
  if (paragraph_ != 0) enterParagraphContent();
  if (casualties_.goes(marker)) {
    copyTo(marker.extent.begin);
    output_.leaveOutTo(marker.extent.end);
  } else if (paragraph_ == 0 && !carried_.empty()) {
    // Text is on its way into the next paragraph; what follows it has to stay behind it.
    copyTo(marker.extent.begin);
    output_.leaveOutTo(marker.extent.end);
    carried_ += output_.source(marker.extent);
  } else {
    opens_.back().markers += output_.source(marker.extent);
  }
}

void Rewriter::trackField(char16_t unit, bool kept) {
  if (unit == text::kFieldBegin) fields_.push_back({kept, false});
  if (fields_.empty()) return;
  if (unit == text::kFieldSeparator) fields_.back().inResult = true;
  if (unit == text::kFieldEnd) fields_.pop_back();
}

bool Rewriter::inCode() const {
  return std::any_of(fields_.rbegin(), fields_.rend(),
                     [](const FieldState& f) { return f.kept && !f.inResult; });
}

/// The outermost tracked deletion open in the paragraph, as an index; the number of open elements outside
/// all.
std::size_t Rewriter::trackedDeletion() const {
  for (std::size_t i = paragraph_ + 1; i < opens_.size(); ++i) {
    if (isTrackedDeletion(opens_[i].tag.name) && !opens_[i].bare) return i;
  }
  return opens_.size();
}

/// The guide that new text is not put into, as an index: one of which nothing stays before or behind it. The
/// number of open elements where there is none.
std::size_t Rewriter::guideToLeave(const Step& step) const {
  const Position place = step.original + (step.behind ? 1 : 0);
  if (guide_ == 0 || opens_.size() <= guide_ || opens_[guide_].bare) return opens_.size();
  return keptGuided_.from < place && place < keptGuided_.to ? opens_.size() : guide_;
}

/// New text with line breaks makes the controls around it ones that allow them.
void Rewriter::holdLineBreaks(std::u16string_view units) {
  if (model_.controls().empty() || units.find(text::kLineBreak) == units.npos) return;
  for (Open& open : opens_) open.breaksLines = true;
}

/// The prefix of the element at hand; a document in the default namespace declares one for its attributes.
const Markup& Rewriter::markup() const {
  const Tag& tag = run_.active && !run_.isNew ? run_.tag : opens_[paragraph_].tag;
  if (tag.extent.begin == markupTag_ && markupTag_ != 0) return markup_;
  markupTag_ = tag.extent.begin;
  const std::string_view name = qualifiedName(tag);
  const std::string_view prefix = name.substr(0, name.find(':') + 1);
  if (prefix == markupPrefix_) return markup_;
  markupPrefix_ = prefix;
  markup_ = {};
  markup_.element = prefix;
  if (!prefix.empty()) {
    markup_.attribute = prefix;
  } else if (walker_.scanner().namespaceOf("w") != kWord) {
    markup_.declaration = " xmlns:w=\"" + std::string(walker_.scanner().uriOf("")) + "\"";
  }
  return markup_;
}

std::string_view Rewriter::qualifiedName(const Tag& tag) const {
  const std::string_view bytes = output_.source(tag.extent);
  const auto ends = [](char c) {
    return c == '>' || c == ' ' || c == '/' || c == '\t' || c == '\r' || c == '\n';
  };
  std::size_t end = 1;
  while (end < bytes.size() && !ends(bytes[end])) ++end;
  return bytes.substr(1, end - 1);
}

}  // namespace pluvo::docx
