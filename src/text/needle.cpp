#include "needle.h"

#include "characters.h"
#include "probing.h"

#include <algorithm>

namespace pluvo::text {
namespace {

char16_t canonical(char16_t unit, bool matchCase) { return asLineEnd(matchCase ? unit : foldCase(unit)); }

std::vector<std::uint32_t> bordersOf(std::u16string_view units) {
  std::vector<std::uint32_t> borders(units.size() + 1, 0);
  for (std::size_t i = 1; i < units.size(); ++i) {
    std::uint32_t border = borders[i];
    while (border > 0 && units[i] != units[border]) border = borders[border];
    borders[i + 1] = units[i] == units[border] ? border + 1 : 0;
  }
  return borders;
}

Needle::NarrowForms canonicalBytes(bool lineFeedIsMark, bool matchCase) {
  Needle::NarrowForms forms{};
  for (std::size_t byte = 0; byte < forms.size(); ++byte) {
    const bool isMark = lineFeedIsMark && byte == u'\n';
    forms[byte] = isMark ? kParagraphMark : canonical(static_cast<char16_t>(byte), matchCase);
  }
  return forms;
}

/// For each unit of a needle those that match it.
template <class Unit>
using Forms = std::vector<std::vector<Unit>>;

Forms<char16_t> wideFormsOf(std::u16string_view needle, bool matchCase) {
  Forms<char16_t> forms;
  forms.reserve(needle.size());
  for (const char16_t unit : needle) {
    if (unit == kParagraphMark) {
      forms.push_back({kLineBreak, kParagraphMark});
      continue;
    }
    const FoldVariants variants = matchCase ? FoldVariants{{unit}, 1} : foldVariants(unit);
    forms.emplace_back(variants.units.begin(), variants.units.begin() + variants.count);
  }
  return forms;
}

Forms<std::uint8_t> narrowFormsOf(const Forms<char16_t>& wide, bool lineFeedIsMark) {
  Forms<std::uint8_t> forms(wide.size());
  for (std::size_t i = 0; i < wide.size(); ++i) {
    for (const char16_t unit : wide[i]) {
      if (unit < 0x100 && !(lineFeedIsMark && unit == u'\n'))
        forms[i].push_back(static_cast<std::uint8_t>(unit));
      if (lineFeedIsMark && unit == kParagraphMark) forms[i].push_back('\n');
    }
  }
  return forms;
}

enum class Prefer { front, back };

/// Tests the rarest unit that can be tested, not the one at offset except.
template <class Unit>
std::optional<Probe<Unit>> rarestProbe(std::u16string_view units, const Forms<Unit>& forms, Prefer prefer,
                                       std::size_t except) {
  std::optional<Probe<Unit>> best;
  for (std::size_t i = 0; i < units.size(); ++i) {
    if (i == except) continue;
    if (best) {
      const std::size_t known = rarity(units[best->offset]);
      const std::size_t here = rarity(units[i]);
      if (here < known || (here == known && prefer == Prefer::front)) continue;
    }
    if (const auto probe = probeFor(forms[i], i)) best = probe;
  }
  return best;
}

/// Each unit in one form. Line ends have several.
bool isOneWay(std::u16string_view units, bool matchCase) {
  return matchCase && units.find_first_of(u"\n\r") == std::u16string_view::npos;
}

template <class Unit>
Shape<Unit> shapeOf(std::u16string_view units, const Forms<Unit>& forms) {
  Shape<Unit> shape;
  shape.impossible = std::any_of(forms.begin(), forms.end(), [](const auto& each) { return each.empty(); });
  if (shape.impossible) return shape;
  const auto first = rarestProbe(units, forms, Prefer::front, units.size());
  if (!first) return shape;
  const auto second = rarestProbe(units, forms, Prefer::back, first->offset);
  shape.probes = ProbePair<Unit>{*first, second.value_or(*first)};
  return shape;
}

}  // namespace

Needle::Needle(std::u16string_view text, bool matchCase) : matchCase_(matchCase), units_(text) {
  for (char16_t& unit : units_) unit = canonical(unit, matchCase);
  borders_ = bordersOf(units_);
  const std::u16string_view probed = std::u16string_view(units_).substr(0, kProbed);
  const Forms<char16_t> forms = wideFormsOf(probed, matchCase);
  for (const bool lineFeedIsMark : {false, true})
    narrow_[lineFeedIsMark ? 1 : 0] = shapeOf(probed, narrowFormsOf(forms, lineFeedIsMark));
  wide_ = shapeOf(probed, forms);
  if (!isOneWay(units_, matchCase)) return;
  wide_.exact.assign(units_.begin(), units_.end());
  if (std::any_of(units_.begin(), units_.end(), [](char16_t unit) { return unit > 0xFF; })) return;
  for (Shape<std::uint8_t>& shape : narrow_) shape.exact.assign(units_.begin(), units_.end());
}

const ByteNeedle& Needle::makeIn(const ByteCoding* coding) const {
  const std::lock_guard lock(mutex_);
  const auto made = inBytes_.try_emplace(coding, units_, matchCase_, narrowForms(true), coding).first;
  if (coding == nullptr) utf8Made_.store(&made->second, std::memory_order_release);
  return made->second;
}

const Needle::NarrowForms& Needle::narrowForms(bool lineFeedIsMark) const {
  // Made once: a folder of small documents has a needle made for each.
  static const std::array<NarrowForms, 4> kForms = {canonicalBytes(false, false), canonicalBytes(true, false),
                                                    canonicalBytes(false, true), canonicalBytes(true, true)};
  return kForms[(matchCase_ ? 2U : 0U) + (lineFeedIsMark ? 1U : 0U)];
}

}  // namespace pluvo::text
