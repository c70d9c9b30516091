// Runs: what of them stays, what new text joins them, and where their highlight divides them.
#include "base/utf.h"
#include "rewriter.h"
#include "run_content.h"

#include <algorithm>

namespace pluvo::docx {

namespace {

bool isReference(Name name) {
  return name == Name::footnoteReference || name == Name::endnoteReference || name == Name::commentReference;
}

}  // namespace

/// Visits the stretches of one colour: visit(from, count, colour). A character of two units is not divided.
template <class Visit>
void Rewriter::forEachColour(Position at, std::u16string_view units, Visit visit) const {
  const auto past = [&](Position position) {
    const auto i = static_cast<std::size_t>(position - at);
    const bool inPair =
        i > 0 && i < units.size() && base::isLowSurrogate(units[i]) && base::isHighSurrogate(units[i - 1]);
    return inPair ? i + 1 : i;
  };
  for (const auto& run : model_.highlight().runs(at, at + static_cast<Position>(units.size()))) {
    const std::size_t from = past(run.from);
    const std::size_t to = past(run.to);
    if (from < to) visit(from, to - from, run.value);
  }
}

/// Visits the stretches that are deleted and those that are not: visit(from, count, deleted).
template <class Visit>
void Rewriter::forEachFate(Position at, std::u16string_view units, Visit visit) const {
  const Position end = at + static_cast<Position>(units.size());
  for (Position from = at; from < end;) {
    const auto first = model_.structure().runAt(from);
    Position to = std::min(first.to, end);
    while (to < end && model_.structure().valueAt(to).deleted == first.value.deleted)
      to = std::min(model_.structure().runEnd(to), end);
    visit(static_cast<std::size_t>(from - at), static_cast<std::size_t>(to - from), first.value.deleted);
    from = to;
  }
}

void Rewriter::beginRun(const Tag& tag) {
  run_ = {};
  run_.active = true;
  run_.tag = tag;
  run_.headerEnd = tag.extent.end;
}

void Rewriter::endRun(Extent endTag) {
  run_.active = false;
  if (!run_.touched) return;
  if (run_.openColour) {
    copyTo(endTag.end);
  } else {
    output_.leaveOutTo(endTag.end);
    opens_.back().lost = true;
  }
}

void Rewriter::beginNewRun(const std::string& runProperties) {
  opens_.back().touched = true;
  run_ = {};
  run_.active = true;
  run_.isNew = true;
  run_.touched = true;
  run_.ownProperties = runProperties;
  run_.properties = run_.ownProperties;
}

void Rewriter::endNewRun() {
  interruptRun();
  run_.active = false;
}

void Rewriter::text(const TextElement& element) {
  const Position from = walker_.position();
  const auto length = static_cast<Position>(element.length());
  if (removedTables_ > 0) return collectInRemovedTable(from + length);

  textProperties_ = run_.properties;
  // Steps are carried out as they come: one long element may have millions. The first waits until it is known
  // whether it is the only one, which may leave the element as it is.
  std::optional<Step> first;
  bool begun = false;
  script_.take(from + length, [&](const Step& step) {
    if (!first) {
      first = step;
      return;
    }
    if (!begun) {
      beginChangedText(element);
      carryText(element, *first);
    }
    begun = true;
    carryText(element, step);
  });
  if (!begun) {
    const bool whole = first->kind == Step::Kind::keep;
    if (whole && model_.highlight().runEnd(first->at) >= first->at + length) {
      return keepElement(element.extent, model_.highlight().valueAt(first->at));
    }
    beginChangedText(element);
    carryText(element, *first);
  }
  const bool hasTail = !element.trailing.empty() && run_.openColour && pendingText_.empty();
  trailingBlanks_ = element.trailing;
  if (hasTail) appendBlankElement(output_.text(), element.tag, element.trailing);
  flushText();
  leadingBlanks_ = trailingBlanks_ = {};
}

void Rewriter::beginChangedText(const TextElement& element) {
  touchRun();
  passBytesBefore(element.extent);
  output_.leaveOutTo(element.extent.end);
  leadingBlanks_ = element.leading;
  textTag_ = element.tag.empty() ? markup().element + "t" : std::string(element.tag);
}

void Rewriter::carryText(const TextElement& element, const Step& step) {
  if (step.kind == Step::Kind::put) return put(step);
  if (step.kind == Step::Kind::drop) return loseText();
  const auto place = static_cast<std::size_t>(step.original - walker_.position());
  const auto count = static_cast<std::size_t>(step.length);
  if (!element.bytes.empty()) return writeBytes(element.bytes.substr(place, count), step.at, textTag_);
  const std::u16string_view kept = element.units.substr(place, count);
  forEachColour(step.at, kept, [&](std::size_t at, std::size_t size, std::uint8_t colour) {
    write(kept.substr(at, size), colour, textTag_);
  });
}

void Rewriter::character(char16_t unit, Extent extent, Name name, std::string_view) {
  const Position position = walker_.position();
  if (removedTables_ > 0) {
    collectInRemovedTable(position + 1);
    if (name == Name::fldChar) trackField(unit, false);
    return;
  }
  script_.take(position + 1, [&](const Step& step) {
    switch (step.kind) {
      case Step::Kind::put:
        touchRun();
        if (isReference(name)) {
          putBesideReference(step);
        } else {
          put(step);
        }
        break;
      case Step::Kind::keep:
        paragraph().breaksLines = paragraph().breaksLines || unit == text::kLineBreak;
        keepElement(extent, model_.highlight().valueAt(step.at));
        break;
      case Step::Kind::drop:
        dropElement(extent);
        break;
    }
    if (step.kind != Step::Kind::put && name == Name::fldChar)
      trackField(unit, step.kind == Step::Kind::keep);
  });
  flushText();
}

/// A reference is set in its own way, small or raised; text beside it looks like the text before it.
void Rewriter::putBesideReference(const Step& step) {
  interruptRun();
  const Run reference = run_;
  beginNewRun(std::string(textProperties_));
  put(step);
  endNewRun();
  run_ = reference;
}

void Rewriter::formula(const Formula& formula) {
  const Extent extent = formula.extent;
  if (removedTables_ > 0) return collectInRemovedTable(walker_.position() + 1);
  enterParagraphContent();
  script_.take(walker_.position() + 1, [&](const Step& step) {
    switch (step.kind) {
      case Step::Kind::put:
        copyTo(step.behind ? extent.end : extent.begin);
        beginNewRun({});
        put(step);
        endNewRun();
        break;
      case Step::Kind::keep:
        opens_.back().kept = true;
        highlightFormula(formula, model_.highlight().valueAt(step.at));
        break;
      case Step::Kind::drop:
        copyTo(extent.begin);
        output_.leaveOutTo(extent.end);
        loseText();
        break;
    }
  });
}

void Rewriter::highlightFormula(const Formula& formula, std::uint8_t colour) {
  const Markup& written = markup();
  const bool mathPrefixed = qualifiedName({Name::oMath, formula.extent}).find(':') != std::string_view::npos;
  // Without prefixes the names of the two vocabularies could not be told apart.
  if (colour == formula.look.highlight || (written.element.empty() && !mathPrefixed)) return;
  opens_.back().touched = true;
  for (const Extent& place : formula.runProperties) {
    copyTo(place.begin);
    output_.text() += highlighted_.of(output_.source(place), written, colour);
    output_.leaveOutTo(place.end);
  }
}

/// From here on the run is written anew. What was left as it is so far stays so.
void Rewriter::touchRun() {
  if (run_.touched) return;
  run_.touched = true;
  opens_.back().touched = true;
  if (run_.openColour) {
    copyTo(run_.rawEnd);
  } else {
    copyTo(run_.tag.extent.begin);
    output_.leaveOutTo(run_.headerEnd);
  }
}

void Rewriter::ensureRun(std::uint8_t colour) {
  if (run_.openColour == colour) return;
  interruptRun();
  std::string& out = output_.text();
  const Markup& written = markup();
  if (wrapsDeleted_) out += deletionTag();
  if (run_.isNew) {
    out.append("<").append(written.element).append("r>");
  } else {
    out += output_.source(run_.tag.extent);
  }
  const bool asItWas = colour == run_.colour && !run_.isNew;
  const std::string_view properties =
      asItWas ? run_.properties : highlighted_.of(run_.properties, written, colour);
  if (run_.isNew || (run_.headerWritten && run_.numbered)) {
    out += identifiers_.withFreshIds(properties);
  } else {
    out += properties;
  }
  run_.headerWritten = true;
  out += run_.gap;
  run_.gap.clear();
  run_.openColour = colour;
  opens_.back().kept = true;
}

void Rewriter::interruptRun() {
  flushText();
  if (!run_.openColour) return;
  output_.text().append("</").append(markup().element).append("r>");
  if (wrapsDeleted_) output_.text() += markup().endTag("del");
  run_.openColour.reset();
}

void Rewriter::keepElement(Extent extent, std::uint8_t colour) {
  if (!run_.touched && colour == run_.colour) {
    run_.openColour = colour;
    run_.headerWritten = true;
    run_.rawEnd = extent.end;
    opens_.back().kept = true;
    return;
  }
  touchRun();
  flushText();
  passBytesBefore(extent);
  ensureRun(colour);
  copyTo(extent.end);
}

void Rewriter::dropElement(Extent extent) {
  touchRun();
  flushText();
  passBytesBefore(extent);
  output_.leaveOutTo(extent.end);
  loseText();
}

/// What stands between two elements of a run, a rendered page break for example, stays with what stays of it.
void Rewriter::passBytesBefore(Extent extent) {
  if (run_.openColour) {
    flushText();
    copyTo(extent.begin);
  } else if (output_.copied() < extent.begin) {
    run_.gap += output_.source(output_.copied(), extent.begin);
    output_.leaveOutTo(extent.begin);
  }
}

/// Writes new text into the run at hand, or beside it where it may not stand there.
void Rewriter::put(const Step& step) {
  opens_.back().touched = opens_.back().textChanged = true;
  holdLineBreaks(step.units);
  if (!map_.hasDeletions) return putPart(step, false);
  forEachFate(step.at, step.units, [&](std::size_t at, std::size_t count, bool deleted) {
    Step part = step;
    part.at += static_cast<Position>(at);
    part.units = step.units.substr(at, count);
    putPart(part, deleted);
  });
}

/// Living text leaves a tracked deletion, and deleted text that stands in none brings one along.
void Rewriter::putPart(const Step& step, bool deleted) {
  const std::size_t deletion = trackedDeletion();
  std::size_t outside = guideToLeave(step);
  if (!deleted) outside = std::min(outside, deletion);
  const bool stays = deletion < outside;
  const bool moves = stays && opens_[deletion].tag.name == Name::moveFrom;
  std::string tag = markup().element;
  tag += textName(deleted && !moves);
  const bool alone = deleted && !stays;
  if (alone) interruptRun();
  putsDeleted_ = deleted;
  wrapsDeleted_ = alone;
  const auto writeAll = [&] {
    forEachColour(step.at, step.units, [&](std::size_t at, std::size_t count, std::uint8_t colour) {
      write(step.units.substr(at, count), colour, tag);
    });
    if (alone) interruptRun();
    putsDeleted_ = wrapsDeleted_ = false;
  };
  if (outside == opens_.size()) return writeAll();

  interruptRun();
  closeInlines(outside);
  std::vector<bool> bare;
  for (std::size_t i = outside; i < opens_.size(); ++i) {
    bare.push_back(opens_[i].bare);
    opens_[i].bare = true;
  }
  writeAll();
  interruptRun();
  for (std::size_t i = outside; i < opens_.size(); ++i) {
    opens_[outside - 1].kept = opens_[outside - 1].kept || opens_[i].kept;
    opens_[i].bare = bare[i - outside];
  }
  openInlines(outside);
}

std::string_view Rewriter::textName(bool deleted) const {
  if (inCode()) return deleted ? "delInstrText" : "instrText";
  return deleted ? "delText" : "t";
}

/// The start tag of a tracked deletion like the one met last.
std::string Rewriter::deletionTag() {
  std::string attributes = attributesOf(deletion_);
  if (attributes.empty()) {
    const std::string& prefix = markup().attribute;
    attributes = markup().declaration + " " + prefix + "id=\"0\" " + prefix + "author=\"\"";
  }
  return identifiers_.withFreshIds(markup().tag("del") + attributes + ">");
}

void Rewriter::write(std::u16string_view units, std::uint8_t colour, std::string_view tag) {
  while (!units.empty()) {
    const auto plain =
        static_cast<std::size_t>(std::find_if(units.begin(), units.end(), standsAlone) - units.begin());
    if (plain > 0) {
      beginText(colour, tag);
      appendText(pendingText_, units.substr(0, plain));
    }
    if (plain < units.size()) writeAlone(units[plain], colour);
    units.remove_prefix(std::min(plain + 1, units.size()));
  }
}

void Rewriter::writeAlone(char16_t unit, std::uint8_t colour) {
  if (unit == text::kParagraphMark) {
    interruptRun();
    divideParagraph(colour, putsDeleted_);
    return;
  }
  ensureRun(colour);
  flushText();
  output_.text() += elementOf(unit, markup());
}

/// Text of the document as it stands there, a byte a unit.
void Rewriter::writeBytes(std::string_view bytes, Position at, std::string_view tag) {
  for (const auto& run : model_.highlight().runs(at, at + static_cast<Position>(bytes.size()))) {
    beginText(run.value, tag);
    pendingText_ +=
        bytes.substr(static_cast<std::size_t>(run.from - at), static_cast<std::size_t>(run.to - run.from));
  }
}

void Rewriter::beginText(std::uint8_t colour, std::string_view tag) {
  ensureRun(colour);
  if (pendingTag_ == tag) return;
  flushText();
  pendingTag_ = tag;
}

void Rewriter::flushText() {
  if (pendingText_.empty()) return;
  appendTextElement(output_.text(), pendingTag_, pendingText_, leadingBlanks_, trailingBlanks_);
  pendingText_.clear();
  leadingBlanks_ = trailingBlanks_ = {};
}

/// New text without paragraph marks as runs of its own.
std::string Rewriter::runs(std::u16string_view units, Position at, const std::string& runProperties) {
  std::string result;
  const Markup written = markup();
  forEachFate(at, units, [&](std::size_t begin, std::size_t size, bool deleted) {
    const std::u16string_view part = units.substr(begin, size);
    const std::string tag = written.element + std::string(textName(deleted));
    if (deleted) result += deletionTag();
    forEachColour(at + static_cast<Position>(begin), part,
                  [&](std::size_t from, std::size_t count, std::uint8_t c) {
                    result += written.tag("r") + ">" + withHighlight(runProperties, written, c);
                    appendContent(result, part.substr(from, count), tag, written);
                    result += written.endTag("r");
                  });
    if (deleted) result += written.endTag("del");
  });
  return result;
}

}  // namespace pluvo::docx
