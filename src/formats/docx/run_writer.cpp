#include "run_writer.h"

#include "new_markup.h"
#include "run_content.h"

#include <algorithm>

namespace pluvo::docx {

namespace {

/// A text put in at many places is kept as it is written, up to this length.
constexpr std::size_t kLongestKnown = 1024;

}  // namespace

void RunWriter::begin(const Tag& tag) {
  run_ = {};
  run_.tag = tag;
  run_.headerEnd = tag.extent.end;
  opens_.enterRun(tag);
}

void RunWriter::properties(const Properties& properties) {
  run_.properties = part_.output.source(properties.whole);
  run_.headerEnd = properties.whole.end;
  run_.colour = properties.look.highlight;
  run_.numbered = properties.look.numbered;
}

void RunWriter::end(Extent endTag) {
  opens_.leaveRun();
  if (!run_.touched) return;
  if (run_.openColour) {
    opens_.copyTo(endTag.end);
  } else {
    part_.output.leaveOutTo(endTag.end);
    opens_.back().lost = true;
  }
}

Tag RunWriter::becomesContainer() {
  const Tag tag = run_.tag;
  forget();
  return tag;
}

void RunWriter::forget() {
  run_ = {};
  opens_.leaveRun();
}

void RunWriter::beginNew(std::string_view runProperties) {
  opens_.back().touched = true;
  std::string own(runProperties);
  forget();
  run_.isNew = true;
  run_.touched = true;
  run_.ownProperties = std::move(own);
  run_.properties = run_.ownProperties;
}

void RunWriter::endNew() { interrupt(); }

void RunWriter::touch() {
  if (run_.touched) return;
  run_.touched = true;
  opens_.back().touched = true;
  // The part left as it is so far stays so.
  if (run_.openColour) {
    opens_.copyTo(run_.rawEnd);
  } else {
    opens_.copyTo(run_.tag.extent.begin);
    part_.output.leaveOutTo(run_.headerEnd);
  }
}

void RunWriter::keep(Extent extent, std::uint8_t colour) {
  if (!run_.touched && colour == run_.colour) {
    run_.openColour = colour;
    run_.headerWritten = true;
    run_.rawEnd = extent.end;
    opens_.back().kept = true;
    return;
  }
  touch();
  flush();
  passBytesBefore(extent);
  open(colour);
  opens_.copyTo(extent.end);
}

void RunWriter::drop(Extent extent) {
  touch();
  flush();
  passBytesBefore(extent);
  part_.output.leaveOutTo(extent.end);
  opens_.loseText();
}

/// Bytes between two elements of a run, a rendered page break for example, stay with the rest of it.
void RunWriter::passBytesBefore(Extent extent) {
  if (run_.openColour) {
    flush();
    opens_.copyTo(extent.begin);
  } else if (part_.output.copied() < extent.begin) {
    run_.gap += part_.output.source(part_.output.copied(), extent.begin);
    part_.output.leaveOutTo(extent.begin);
  }
}

void RunWriter::beginText(const TextElement& element) {
  touch();
  passBytesBefore(element.extent);
  part_.output.leaveOutTo(element.extent.end);
  leadingBlanks_ = element.leading;
  textTag_ = element.tag.empty() ? opens_.markup().element + "t" : std::string(element.tag);
}

void RunWriter::endText(const TextElement& element) {
  const bool hasTail = !element.trailing.empty() && run_.openColour && pendingText_.empty();
  trailingBlanks_ = element.trailing;
  if (hasTail) appendBlankElement(part_.output.text(), element.tag, element.trailing);
  flush();
  leadingBlanks_ = trailingBlanks_ = {};
}

void RunWriter::write(std::u16string_view units, std::uint8_t colour, std::string_view tag) {
  if (!units.empty() && units == known_) {
    append(colour, tag);
    pendingText_ += knownBytes_;
    return;
  }
  while (!units.empty()) {
    const auto plain =
        static_cast<std::size_t>(std::find_if(units.begin(), units.end(), standsAlone) - units.begin());
    if (plain > 0) {
      append(colour, tag);
      const std::size_t before = pendingText_.size();
      appendText(pendingText_, units.substr(0, plain));
      if (plain <= kLongestKnown) {
        known_ = units.substr(0, plain);
        knownBytes_ = pendingText_.substr(before);
      }
    }
    if (plain < units.size()) {
      open(colour);
      flush();
      part_.output.text() += elementOf(units[plain], opens_.markup());
    }
    units.remove_prefix(std::min(plain + 1, units.size()));
  }
}

void RunWriter::writeBytes(std::string_view bytes, std::uint8_t colour, std::string_view tag) {
  constexpr std::string_view kCloses = "]]>";  // which text must not hold, and two texts may make
  append(colour, tag);
  const std::size_t joint = pendingText_.size() - std::min(pendingText_.size(), kCloses.size() - 1);
  pendingText_ += bytes;
  const std::size_t closes = std::string_view(pendingText_).substr(joint, 4).find(kCloses);
  if (closes != std::string_view::npos) pendingText_.replace(joint + closes + 2, 1, "&gt;");
}

void RunWriter::append(std::uint8_t colour, std::string_view tag) {
  open(colour);
  if (pendingTag_ == tag) return;
  flush();
  pendingTag_ = tag;
}

void RunWriter::flush() {
  if (pendingText_.empty()) return;
  appendTextElement(part_.output.text(), pendingTag_, pendingText_, leadingBlanks_, trailingBlanks_);
  pendingText_.clear();
  leadingBlanks_ = trailingBlanks_ = {};
}

void RunWriter::open(std::uint8_t colour) {
  if (run_.openColour == colour) return;
  interrupt();
  std::string& out = part_.output.text();
  const Markup& markup = opens_.markup();
  if (deletesEach_) out += deletionTag(part_, markup);
  if (run_.isNew) {
    out.append("<").append(markup.element).append("r>");
  } else {
    out += part_.output.source(run_.tag.extent);
  }
  const bool asItWas = colour == run_.colour && !run_.isNew;
  const std::string_view properties =
      asItWas ? run_.properties : highlighted_.of(run_.properties, markup, colour);
  if (run_.isNew || (run_.headerWritten && run_.numbered)) {
    out += part_.identifiers.withFreshIds(properties);
  } else {
    out += properties;
  }
  run_.headerWritten = true;
  out += run_.gap;
  run_.gap.clear();
  run_.openColour = colour;
  opens_.back().kept = true;
}

void RunWriter::interrupt() {
  flush();
  if (!run_.openColour) return;
  part_.output.text().append("</").append(opens_.markup().element).append("r>");
  if (deletesEach_) part_.output.text() += opens_.markup().endTag("del");
  run_.openColour.reset();
}

}  // namespace pluvo::docx
