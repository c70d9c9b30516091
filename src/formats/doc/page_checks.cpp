#include "page_checks.h"

#include "plc.h"
#include "properties.h"

#include <algorithm>

namespace pluvo::doc {

using base::ByteSpan;
using base::get32;

namespace {

constexpr std::size_t kPage = FormattedPages::kPage;

/// The differences between the pages of characters and those of paragraphs.
struct Kind {
  bool isOfParagraphs;
  std::size_t element;
  std::size_t mostRuns;
};
constexpr Kind kCharacters = {false, 1, 0x65};
constexpr Kind kParagraphs = {true, 13, 0x1D};

/// The properties of a run: whether they lie on the page, after its places.
bool propertiesOf(const Kind& kind, ByteSpan page, std::size_t head, std::size_t at, ByteSpan& found) {
  constexpr std::size_t kRoom = kPage - 1;
  if (at == 0) return true;
  if (at < head || at + 2 > kRoom) return false;
  std::size_t from = at + 1;
  std::size_t size = page[at];
  if (kind.isOfParagraphs) {
    // Half of the size; where that is 0, in the next byte.
    size = size > 0 ? size * 2 - 1 : std::size_t{page[from++]} * 2;
    if (size < 2) return false;
  }
  if (size > kRoom - from) return false;
  found = page.subspan(from, size).subspan(kind.isOfParagraphs ? 2 : 0);
  return areWhole(found);
}

/// Calls visit(from, to, properties) with every run.
template <class Visit>
void checkPagesOf(const Kind& kind, ByteSpan document, ByteSpan table, Defects& defects, Visit visit) {
  const Plc pages(table, 4);
  for (std::size_t i = 0; i < pages.count(); ++i) {
    const std::size_t number = get32(pages.element(i), 0) & 0x3FFFFFU;
    const ByteSpan page = document.subspan(number * kPage, kPage);
    const std::size_t count = page[kPage - 1];
    const std::size_t head = (count + 1) * 4 + count * kind.element;
    if (count == 0 || count > kind.mostRuns || head > kPage - 1) {
      defects.note("page of formatting has more runs than fit, or none", number);
      continue;
    }
    if (get32(page, 0) != static_cast<std::uint32_t>(pages.place(i)) ||
        get32(page, count * 4) != static_cast<std::uint32_t>(pages.place(i + 1)))
      defects.note("page of formatting is for other bytes than its table says", number);
    for (std::size_t run = 0; run < count; ++run) {
      const std::uint32_t from = get32(page, run * 4);
      const std::uint32_t to = get32(page, run * 4 + 4);
      if (to <= from) defects.note("page of formatting has places out of order", number);
      ByteSpan properties;
      const std::size_t at = page[(count + 1) * 4 + run * kind.element] * std::size_t{2};
      if (!propertiesOf(kind, page, head, at, properties))
        defects.note("page of formatting has properties that are cut off", number);
      visit(from, to, properties);
    }
  }
}

void add(std::vector<PageFacts::Stretch>& stretches, std::uint32_t from, std::uint32_t to) {
  if (!stretches.empty() && stretches.back().to == from) {
    stretches.back().to = to;
  } else {
    stretches.push_back({from, to});
  }
}

}  // namespace

bool areWhole(ByteSpan properties) {
  const std::uint8_t* end = properties.data();
  forEachProperty(properties,
                  [&](std::uint16_t, ByteSpan operand) { end = operand.data() + operand.size(); });
  return properties.data() + properties.size() - end <= 1;
}

bool PageFacts::isSpecial(std::uint32_t byte) const {
  const auto after = std::ranges::upper_bound(special, byte, {}, &Stretch::from);
  return after != special.begin() && byte < (after - 1)->to;
}

PageFacts checkPages(const Text& text, Defects& defects) {
  PageFacts facts;
  const ByteSpan characters = text.in(Table::characterPages);
  checkPagesOf(kCharacters, text.document, characters, defects,
               [&](std::uint32_t from, std::uint32_t to, ByteSpan properties) {
                 bool isSpecial = false;
                 bool isPicture = false;
                 forEachProperty(properties, [&](std::uint16_t property, ByteSpan operand) {
                   if (property == code::kSpecial) isSpecial = !operand.empty() && operand[0] != 0;
                   if (property == code::kPicture) isPicture = true;
                 });
                 if (isSpecial) add(facts.special, from, to);
                 if (isPicture) add(facts.pictures, from, to);
               });
  const Plc pages(characters, 4);
  if (pages.count() > 0) facts.charactersTo = static_cast<std::uint32_t>(pages.place(pages.count()));
  checkPagesOf(kParagraphs, text.document, text.in(Table::paragraphPages), defects,
               [&](std::uint32_t, std::uint32_t to, ByteSpan) { facts.boundaries.push_back(to); });
  std::ranges::sort(facts.boundaries);
  return facts;
}

}  // namespace pluvo::doc
