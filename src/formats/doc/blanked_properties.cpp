#include "blanked_properties.h"

#include "base/little_endian.h"
#include "gone_texts.h"
#include "piece_text.h"
#include "property_sets.h"
#include "string_tables.h"

#include <algorithm>
#include <array>

namespace pluvo::doc {

using base::ByteSpan;

namespace {

/// A copy of a stream or table, and the texts in it.
struct Holder {
  struct Value {
    std::u16string text;
    std::vector<std::size_t> places;  ///< where each unit's bytes begin, and where those of the last end
    bool isWide = false;
  };

  explicit Holder(ByteSpan from) : bytes(from.begin(), from.end()) {}

  /// Whether anything became blank.
  bool blank(const GoneTexts& goneTexts) {
    bool any = false;
    for (const Value& value : values) {
      const std::vector<bool> gone = goneTexts.in(value.text);
      for (std::size_t i = 0; i < gone.size(); ++i) {
        any = any || gone[i];
        for (std::size_t at = value.places[i]; gone[i] && at < value.places[i + 1]; ++at)
          bytes[at] = value.isWide && (at - value.places[i]) % 2 != 0 ? 0 : ' ';
      }
    }
    return any;
  }

  std::vector<std::uint8_t> bytes;
  std::vector<Value> values;
};

/// Whether a property may hold a copy of the text.
bool mayHoldText(bool isSummary, const PropertyText& property) {
  constexpr std::array kOfSummary = {2U, 3U, 5U, 6U};  // title, subject, key words, comments
  constexpr std::array kOfDocument = {2U, 13U};        // category, titles of parts
  if (property.isName) return false;
  if (isSummary) return std::ranges::find(kOfSummary, property.id) != kOfSummary.end();
  return property.set > 0 || std::ranges::find(kOfDocument, property.id) != kOfDocument.end();
}

Holder readSet(ByteSpan stream, bool isSummary) {
  Holder holder(stream);
  tellPropertySet(stream, {[&](const PropertyText& property) {
                             if (mayHoldText(isSummary, property))
                               holder.values.push_back({std::u16string(property.text),
                                                        {property.places.begin(), property.places.end()},
                                                        property.isWide});
                           },
                           [] {}});
  return holder;
}

/// Title, subject, key words and comments a second time.
Holder readTitles(ByteSpan table) {
  constexpr std::size_t kFirst = 2, kAfterLast = 6;
  Holder holder(table);
  std::size_t i = 0;
  forEachString(table, [&](std::size_t at, ByteSpan units) {
    if (i >= kFirst && i < kAfterLast) {
      Holder::Value value{unitsOf(units), {}, true};
      for (std::size_t unit = 0; unit <= value.text.size(); ++unit) value.places.push_back(at + unit * 2);
      holder.values.push_back(std::move(value));
    }
    ++i;
  });
  return holder;
}

void addStanding(const Text& text, GoneTexts& gone) {
  std::u16string units;
  constexpr text::Position kAtOnce = 1 << 14;
  for (const Piece& piece : text.pieces.pieces()) {
    for (text::Position from = piece.from; from < piece.to; from += kAtOnce) {
      const text::Position to = std::min(piece.to, from + kAtOnce);
      units.resize(static_cast<std::size_t>(to - from));
      const std::uint8_t* const bytes = text.document.data() + piece.offsetOf(from);
      for (std::size_t i = 0; i < units.size(); ++i)
        units[i] = piece.narrow ? fromNarrow(bytes[i]) : wideAt(bytes + i * 2);
      gone.addStanding(units);
    }
  }
  gone.finishStanding();
}

}  // namespace

BlankedProperties blankedProperties(const cfb::CompoundFile& file, const Text& edited,
                                    std::span<const std::u16string> deleted) {
  struct Set {
    cfb::Id id;
    Holder holder;
  };
  std::vector<Set> sets;
  for (const char* const name : {kSummary, kDocumentSummary}) {
    const auto id = file.stream(name);
    if (!id) continue;
    try {
      sets.push_back({*id, readSet(file.read(*id).view, name == kSummary)});
    } catch (const errors::DocumentError&) {
      continue;  // it cannot be read, so it tells nothing
    }
  }
  Holder titles = readTitles(edited.in(Table::titles));

  GoneTexts gone;
  const auto add = [&](const Holder& holder) {
    for (const Holder::Value& value : holder.values) gone.addShort(value.text);
  };
  for (const Set& set : sets) add(set.holder);
  add(titles);
  for (const std::u16string& text : deleted) gone.addDeleted(text);
  if (gone.empty()) return {};
  addStanding(edited, gone);

  BlankedProperties blanked;
  for (Set& set : sets)
    if (set.holder.blank(gone)) blanked.streams.push_back({set.id, std::move(set.holder.bytes)});
  if (titles.blank(gone)) blanked.titles = std::move(titles.bytes);
  return blanked;
}

}  // namespace pluvo::doc
