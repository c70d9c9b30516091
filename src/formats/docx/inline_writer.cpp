#include "inline_writer.h"

#include "text_decoding.h"

#include <algorithm>
#include <cstdint>
#include <optional>

namespace pluvo::docx {

namespace {

bool isReference(Name name) {
  return name == Name::footnoteReference || name == Name::endnoteReference || name == Name::commentReference;
}

}  // namespace

void InlineWriter::text(Position from, const TextElement& element) {
  const auto length = static_cast<Position>(element.length());
  textProperties_ = runs_.properties();
  // Steps are carried out as they come: one long element may have millions. The first waits until it is known
  // whether it is the only one, which may leave the element as it is.
  std::optional<Step> first;
  bool begun = false;
  const auto begin = [&] {
    runs_.beginText(element);
    const std::string_view bytes = element.bytes;
    walk_ = text::Utf8Walk({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    units_.clear();
    carry(from, element, *first);
    begun = true;
  };
  part_.script.take(from + length, [&](const Step& step) {
    if (!first) {
      first = step;
      return;
    }
    if (!begun) begin();
    carry(from, element, step);
  });
  if (!begun) {
    const bool whole = first->kind == Step::Kind::keep;
    if (whole && part_.story.highlight().runEnd(first->at) >= first->at + length)
      return runs_.keep(element.extent, part_.colourAt(first->at));
    begin();
  }
  runs_.endText(element);
}

void InlineWriter::carry(Position from, const TextElement& element, const Step& step) {
  if (step.kind == Step::Kind::put) return newText_.put(step);
  if (step.kind == Step::Kind::drop) return opens_.loseText();
  const auto place = static_cast<std::size_t>(step.original - from);
  const auto count = static_cast<std::size_t>(step.length);
  const std::size_t carried = element.bytes.empty() ? 0 : carryBytes(element, place, step);
  if (carried == count) return;
  if (element.units.empty() && units_.empty()) appendUtf8(units_, element.bytes);
  const std::u16string_view all = element.units.empty() ? std::u16string_view(units_) : element.units;
  const std::u16string_view kept = all.substr(place + carried, count - carried);
  forEachColour(part_.story, step.at + static_cast<Position>(carried), kept,
                [&](std::size_t at, std::size_t size, std::uint8_t colour) {
                  runs_.write(kept.substr(at, size), colour, runs_.textTag());
                });
}

/// Text stays the bytes it is, up to a cut within a character. Returns how many units were carried so.
std::size_t InlineWriter::carryBytes(const TextElement& element, std::size_t place, const Step& step) {
  const bool isByteEach = element.bytes.size() == element.length();
  const auto placeOf = [&](std::size_t unit) -> text::Utf8Text::Place {
    return isByteEach ? text::Utf8Text::Place{unit} : walk_.to(static_cast<Position>(unit));
  };
  const auto count = static_cast<std::size_t>(step.length);
  text::Utf8Text::Place from = placeOf(place);
  std::size_t carried = 0;
  while (carried < count && !from.insidePair) {
    const auto coloured = part_.story.highlight().runAt(step.at + static_cast<Position>(carried));
    const std::size_t next = std::min(count, static_cast<std::size_t>(coloured.to - step.at));
    const text::Utf8Text::Place to = placeOf(place + next);
    if (to.insidePair) break;
    runs_.writeBytes(element.bytes.substr(from.offset, to.offset - from.offset), coloured.value,
                     runs_.textTag());
    from = to;
    carried = next;
  }
  return carried;
}

void InlineWriter::character(Position at, char16_t unit, Extent extent, Name name) {
  part_.script.take(at + 1, [&](const Step& step) {
    switch (step.kind) {
      case Step::Kind::put:
        runs_.touch();
        if (isReference(name)) {
          // A reference is set in its own way, small or raised; text beside it looks like the text before it.
          runs_.beside(textProperties_, [&] { newText_.put(step); });
        } else {
          newText_.put(step);
        }
        return;
      case Step::Kind::keep:
        opens_.paragraph().breaksLines = opens_.paragraph().breaksLines || unit == text::kLineBreak;
        runs_.keep(extent, part_.colourAt(step.at));
        break;
      case Step::Kind::drop:
        runs_.drop(extent);
        break;
    }
    if (name == Name::fldChar) part_.fields.pass(unit, step.kind == Step::Kind::keep);
  });
  runs_.flush();
}

void InlineWriter::formula(Position at, const Formula& formula) {
  const Extent extent = formula.extent;
  part_.script.take(at + 1, [&](const Step& step) {
    switch (step.kind) {
      case Step::Kind::put:
        opens_.copyTo(step.after ? extent.end : extent.begin);
        newText_.putInNewRun(step);
        break;
      case Step::Kind::keep:
        opens_.back().kept = true;
        highlight(formula, part_.colourAt(step.at));
        break;
      case Step::Kind::drop:
        opens_.copyTo(extent.begin);
        part_.output.leaveOutTo(extent.end);
        opens_.loseText();
        break;
    }
  });
}

void InlineWriter::highlight(const Formula& formula, std::uint8_t colour) {
  const Markup& markup = opens_.markup();
  const bool mathPrefixed =
      opens_.qualifiedName({Name::oMath, formula.extent}).find(':') != std::string_view::npos;
  // Without prefixes the names of the two vocabularies could not be told apart.
  if (colour == formula.look.highlight || (markup.element.empty() && !mathPrefixed)) return;
  opens_.back().touched = true;
  for (const Extent& place : formula.runProperties) {
    opens_.copyTo(place.begin);
    part_.output.text() += highlighted_.of(part_.output.source(place), markup, colour);
    part_.output.leaveOutTo(place.end);
  }
}

}  // namespace pluvo::docx
