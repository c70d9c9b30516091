#include "doc_source.h"

#include "appearance_reader.h"
#include "blanked_properties.h"
#include "formats/refused_character.h"
#include "other_texts.h"
#include "reader.h"
#include "validator.h"

#include <algorithm>

namespace pluvo::doc {

namespace {

void requireSound(const EditedStreams& original, const EditedStreams& edited) {
  const std::string defect = firstNewDefect(original, edited);
  if (defect.empty()) return;
  throw errors::DocumentError(
      errors::Problem::unsupported,
      "The new version would be damaged: " + defect +
          "; nothing was changed. Make this change in a word processor, and please report what it was.");
}

}  // namespace

std::optional<std::string> DocSource::refusesText(std::u16string_view newText) const {
  return formats::firstRefused(newText, "A Word document", formats::hasPlaceInWordText);
}

void DocSource::write(const document::Document& document, base::Output& out) const {
  const Streams& streams = opened_->streams;
  bool isEdited = false;
  for (std::size_t i = 0; i < stories_.size() && !isEdited; ++i)
    isEdited = doc::isEdited(document.story(i), stories_[i]);
  if (!isEdited) return out.write(streams.file.bytes());
  const Text& text = opened_->text;
  const std::optional<Text> glossary = glossaryOf(streams, text);
  NewStreams written = edited(text, glossary ? &*glossary : nullptr, stories_, document);
  const base::ByteSpan data = written.data.empty() ? text.data : base::ByteSpan(written.data);
  const Text after(written.document, written.tables, data, 0);
  const BlankedProperties blanked = blankedProperties(streams.file, after, written.deleted);
  if (!blanked.titles.empty())
    std::ranges::copy(blanked.titles, written.tables.begin() +
                                          static_cast<std::ptrdiff_t>(after.fib.extent(Table::titles).at));
  requireSound({text.document, text.tables, text.data}, {written.document, written.tables, data});
  std::vector<cfb::Change> changes = {{streams.ids.document, {written.document}},
                                      {streams.ids.tables, {written.tables}}};
  if (!written.data.empty()) changes.push_back({*streams.ids.data, {written.data}});
  for (const BlankedProperties::Stream& stream : blanked.streams)
    changes.push_back({stream.id, {stream.bytes}});
  streams.rewrite(changes, out);
}

std::vector<text::RunMap<formats::Appearance>> DocSource::appearance() const {
  std::vector<text::RunMap<formats::Appearance>> looks;
  for (const OldStory& story : stories_)
    looks.push_back(
        readAppearance(opened_->text, story.place.from, story.place.to, story.highlight.length()));
  return looks;
}

void DocSource::tellOtherTexts(const document::Story& mainText, formats::OtherTexts& texts) const {
  doc::tellOtherTexts(*opened_, mainText, texts);
}

}  // namespace pluvo::doc
