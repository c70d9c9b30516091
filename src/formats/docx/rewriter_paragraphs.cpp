// Paragraphs: divided by new marks, and merged where marks go.
#include "control_properties.h"
#include "fragment.h"
#include "rewriter.h"

#include <algorithm>
#include <utility>

namespace pluvo::docx {

/// Puts what was carried here at the paragraph's beginning.
void Rewriter::enterParagraphContent() {
  Open& open = paragraph();
  if (open.headed) return;
  open.headed = true;
  if (carried_.empty() && carriedBlocks_.empty() && waiting_.empty()) return;
  if (!waiting_.empty()) placeWaiting(headerOfSplitOff(open));
  copyTo(open.tag.extent.begin);
  if (!carriedBlocks_.empty()) opens_[paragraph_ - 1].kept = true;
  output_.text() += carriedBlocks_;
  carriedBlocks_.clear();
  open.header = headerOf(open, std::string(output_.source(open.properties.whole)));
  open.outBegin = open.outInner = 0;
  open.expanded = open.tag.empty;
  open.touched = open.textChanged = true;
  open.kept = open.kept || carriesText_;
  output_.leaveOutTo(open.inner);
  open.behindCarried = true;
  output_.divertTo(carried_);
}

/// The paragraph that what was carried belongs to stays, and so it can be written. Until then its content is
/// gathered there, lest a chain of merged paragraphs be copied again for each.
void Rewriter::writeCarried() {
  Open& open = paragraph();
  if (!open.behindCarried) return;
  open.behindCarried = false;
  output_.comeBack();
  open.outBegin = output_.text().size();
  output_.text() += open.header;
  open.outInner = output_.text().size();
  output_.text() += carried_;
  carried_.clear();
  carriesText_ = false;
  settleCarriedBreaks();
}

void Rewriter::settleCarriedBreaks() {
  if (!carriesBreak_) return;
  for (Open& around : opens_) around.breaksLines = true;
  carriesBreak_ = false;
}

/// Makes room for content in an element that has none.
void Rewriter::expand(Open& open) {
  if (!open.tag.empty || open.expanded) return;
  copyTo(open.tag.extent.begin);
  open.outBegin = output_.text().size();
  output_.text() += openedTag(output_.source(open.tag.extent));
  open.outInner = output_.text().size();
  open.expanded = true;
  output_.leaveOutTo(open.tag.extent.end);
}

/// A new mark: ends the paragraph here and begins the rest of it. No run is open.
void Rewriter::divideParagraph(std::uint8_t markColour, bool markDeleted) {
  closeInlines(paragraph_ + 1);
  writeCarried();
  Open& open = paragraph();
  std::string& out = output_.text();
  const std::string properties(output_.source(open.properties.whole));
  const std::string front =
      forNewMark(forSplitOffParagraph(properties), markColour, markDeleted, run_.properties);
  if (front != properties) replaceHeader(headerOf(open, front));
  out += "</" + std::string(qualifiedName(open.tag)) + ">";
  open.splitOff = true;
  open.outBegin = out.size();
  out += headerOf(open, properties);
  open.outInner = out.size();
  opens_[paragraph_ - 1].kept = true;
  openInlines(paragraph_ + 1);
}

/// The properties of a paragraph that a new mark ends.
std::string Rewriter::forNewMark(std::string properties, std::uint8_t colour, bool deleted,
                                 std::string_view runProperties) {
  properties = withMarkLike(properties, markup(), colour, runProperties);
  if (!deleted) return properties;
  std::string deletion = deletionTag();
  deletion.insert(deletion.size() - 1, 1, '/');
  return withMarkDeletion(properties, markup(), deletion);
}

void Rewriter::closeInlines(std::size_t from) {
  std::string& out = output_.text();
  for (std::size_t i = opens_.size(); i-- > from;) {
    Open& open = opens_[i];
    if (open.bare || open.toComplex) {
      // Without tags of its own, what it holds stands in the element around it.
      opens_[i - 1].kept = opens_[i - 1].kept || open.kept;
      if (open.toComplex || open.tag.name != Name::fldSimple) open.kept = false;
      continue;
    }
    opens_[i - 1].textChanged = opens_[i - 1].textChanged || open.textChanged;
    removePassed(open);
    if (open.tag.name == Name::fldSimple) {
      const std::string begin = beginningOfField(open);
      out.replace(open.outBegin, open.outInner - open.outBegin, begin);
      open.toComplex = opens_[i - 1].kept = true;
      open.kept = false;
    } else if (open.kept) {
      unbind(open);
      out += "</" + std::string(qualifiedName(open.tag)) + ">";
      opens_[i - 1].kept = true;
    } else {
      out.resize(open.outBegin);
      out += open.markers;
      opens_[i - 1].markers += open.markers;
    }
  }
}

void Rewriter::openInlines(std::size_t from) {
  std::string& out = output_.text();
  for (std::size_t i = from; i < opens_.size(); ++i) {
    Open& open = opens_[i];
    if (open.bare || open.toComplex) continue;
    open.outBegin = out.size();
    out += reopeningTag(i);
    open.outInner = out.size();
    open.kept = open.lost = false;
    open.reopened = true;
    open.markers.clear();
  }
}

std::string Rewriter::reopeningTag(std::size_t index) {
  const Open& open = opens_[index];
  if (open.tag.name == Name::r || open.tag.name == Name::ruby)
    return identifiers_.withFreshIds(
        output_.source(open.tag.extent.begin, opens_[index + 1].tag.extent.begin));
  const bool isControl = open.tag.name == Name::sdt && index + 1 < opens_.size();
  if (!isControl) return identifiers_.withFreshIds(output_.source(open.tag.extent));
  // A content control is known by its id; the copy must not share it.
  std::string tag(output_.source(open.tag.extent));
  tag +=
      withoutIdentity(forChangedText(output_.source(open.inner, open.content), markup(), open.breaksLines));
  return identifiers_.withFreshIds(tag);
}

std::string Rewriter::headerOf(const Open& open, const std::string& properties) const {
  if (open.tag.extent.empty()) return markup().tag("p") + ">";
  const std::string_view tag = output_.source(open.tag.extent);
  return openedTag(open.splitOff ? startTagWithout(tag, {"paraId", "textId"}) : std::string(tag)) +
         properties;
}

/// The start of a paragraph like this one, for text that is split off it.
Rewriter::Header Rewriter::headerOfSplitOff(const Open& open) const {
  Open copy;
  copy.tag = open.tag;
  copy.splitOff = true;
  return {headerOf(copy, {}), forSplitOffParagraph(output_.source(open.properties.whole))};
}

Rewriter::Header Rewriter::plainHeader() const { return {markup().tag("p") + ">", {}}; }

void Rewriter::replaceHeader(const std::string& header) {
  Open& open = paragraph();
  output_.text().replace(open.outBegin, open.outInner - open.outBegin, header);
  open.outInner = open.outBegin + header.size();
}

void Rewriter::paragraphMark(Extent endTag) {
  const Position position = walker_.position();
  if (removedTables_ > 0) {
    run_.ownProperties = runPropertiesOfMark(output_.source(removedParagraph_.properties.whole));
    run_.properties = run_.ownProperties;
    noteDeletion(removedParagraph_);
    return collectInRemovedTable(position + 1);
  }
  enterParagraphContent();
  noteDeletion(paragraph());
  markDropped_ = false;
  script_.take(position + 1, [&](const Step& step) {
    Open& open = paragraph();
    const std::string_view properties = output_.source(open.properties.whole);
    switch (step.kind) {
      case Step::Kind::keep:
        markColour_ = model_.highlight().valueAt(step.at);
        break;
      case Step::Kind::drop:
        markDropped_ = true;
        break;
      case Step::Kind::put:
        if (step.behind) {
          wait(step, runPropertiesOfMark(properties), headerOfSplitOff(open));
          break;
        }
        expand(open);
        copyTo(endTag.begin);
        beginNewRun(runPropertiesOfMark(properties));
        put(step);
        endNewRun();
        break;
    }
  });
}

/// Deleted text beside a deleted mark takes after that.
void Rewriter::noteDeletion(const Open& paragraph) {
  if (paragraph.properties.look.deleted)
    deletion_ = deletionOfMark(output_.source(paragraph.properties.whole));
}

void Rewriter::keepParagraph(Extent endTag) {
  if (markColour_ != paragraph().properties.look.highlight) {
    expand(paragraph());
    copyTo(endTag.begin);
    writeCarried();
    const std::string_view old = output_.source(paragraph().properties.whole);
    replaceHeader(headerOf(paragraph(), highlightedMarks_.of(old, markup(), markColour_)));
    paragraph().touched = true;
  }
  if (paragraph().behindCarried) copyTo(endTag.begin);
  writeCarried();
  if (paragraph().expanded) output_.text() += "</" + std::string(qualifiedName(paragraph().tag)) + ">";
  Open closed = std::move(paragraph());
  closed.kept = true;
  closed.lost = false;
  opens_.pop_back();
  paragraph_ = 0;
  passOn(closed);
}

void Rewriter::mergeParagraph(Extent endTag) {
  Open& open = paragraph();
  const bool hasContent = !open.tag.empty || open.expanded;
  copyTo(hasContent ? endTag.begin : open.tag.extent.begin);
  carriesText_ = carriesText_ || open.kept;
  carriesBreak_ = carriesBreak_ || open.breaksLines;
  if (open.behindCarried) {
    output_.comeBack();
  } else {
    std::string& out = output_.text();
    const std::string_view content = std::string_view(out).substr(hasContent ? open.outInner : out.size());
    if (nextElement(content, 0) != std::string_view::npos) carried_ += content;
    out.resize(open.outBegin);
  }
  output_.leaveOutTo(endTag.end);
  opens_.pop_back();
  paragraph_ = 0;
  loseText();
}

void Rewriter::missingParagraph(Name, Extent endTag) {
  const Position position = walker_.position();
  if (removedTables_ > 0) return collectInRemovedTable(position + 1);
  std::vector<Waiting> behind;
  script_.take(position + 1, [&](const Step& step) {
    if (step.kind == Step::Kind::put) (step.behind ? behind : waiting_).push_back({step, {}, {}, deletion_});
  });
  Open& container = opens_.back();
  if (container.lost || !waiting_.empty() || !carried_.empty() || !carriedBlocks_.empty()) {
    placeWaiting(plainHeader());
    expand(container);
    copyTo(endTag.begin);
    output_.text() += carriedBlocks_ + markup().tag("p") + ">" + carried_ + markup().endTag("p");
    carriedBlocks_.clear();
    carried_.clear();
    carriesText_ = false;
    settleCarriedBreaks();
  }
  waiting_ = std::move(behind);
}

void Rewriter::rowMark(Extent) {
  const Position position = walker_.position();
  if (removedTables_ > 0) return collectInRemovedTable(position + 1);
  script_.take(position + 1, [&](const Step& step) {
    if (step.kind == Step::Kind::put) wait(step);
  });
}

std::vector<Rewriter::Line> Rewriter::lines(const Step& put, const std::string& runProperties) {
  std::vector<Line> result;
  std::size_t from = 0;
  while (true) {
    const std::size_t mark = put.units.find(text::kParagraphMark, from);
    const std::size_t to = std::min(mark, put.units.size());
    const Position at = put.at + static_cast<Position>(from);
    result.push_back({runs(put.units.substr(from, to - from), at, runProperties)});
    if (mark == std::u16string_view::npos) return result;
    const Position markAt = put.at + static_cast<Position>(mark);
    result.back().markColour = model_.highlight().valueAt(markAt);
    result.back().markDeleted = model_.structure().valueAt(markAt).deleted;
    from = mark + 1;
  }
}

void Rewriter::wait(const Step& step, std::string runProperties, Header header) {
  waiting_.push_back({step, std::move(runProperties), std::move(header), deletion_});
}

/// Text waiting for the next paragraph joins what is carried there; its own paragraphs come before it.
void Rewriter::placeWaiting(const Header& header) {
  for (const Waiting& waiting : waiting_) {
    holdLineBreaks(waiting.put.units);
    const std::string_view deletion = std::exchange(deletion_, waiting.deletion);
    const std::vector<Line> all = lines(waiting.put, waiting.runProperties);
    const Header& own = waiting.header.tag.empty() ? header : waiting.header;
    for (std::size_t i = 0; i + 1 < all.size(); ++i) {
      carriedBlocks_ +=
          own.tag + forNewMark(own.properties, all[i].markColour, all[i].markDeleted, waiting.runProperties);
      carriedBlocks_ += carried_ + all[i].runs;
      carriedBlocks_ += markup().endTag("p");
      carried_.clear();
      carriesText_ = false;
    }
    carried_ += all.back().runs;
    carriesText_ = carriesText_ || !all.back().runs.empty();
    deletion_ = deletion;
  }
  waiting_.clear();
}

/// Text that ends with a mark of its own stays outside a table or control behind it; other text joins its
/// first paragraph.
void Rewriter::placeWholeParagraphs() {
  const auto last = std::find_if(waiting_.rbegin(), waiting_.rend(), [](const Waiting& waiting) {
    return waiting.put.units.back() == text::kParagraphMark;
  });
  std::vector<Waiting> others(last.base(), waiting_.end());
  waiting_.erase(last.base(), waiting_.end());
  if (!waiting_.empty()) placeWaiting(plainHeader());
  waiting_ = std::move(others);
}

void Rewriter::placeBlocksBefore(const Tag& tag) {
  if (carriesText_ || carriedBlocks_.empty()) return;
  copyTo(tag.extent.begin);
  output_.text() += carriedBlocks_;
  carriedBlocks_.clear();
  opens_.back().kept = true;
}

/// Of a table that goes only new text stays, and what markers there are.
void Rewriter::collectInRemovedTable(Position end) {
  script_.take(end, [&](const Step& step) {
    if (step.kind != Step::Kind::put) return;
    wait(step, std::string(run_.properties), headerOfSplitOff(removedParagraph_));
    placeWaiting(plainHeader());
  });
}

}  // namespace pluvo::docx
