#include "doc/doc_format.h"

#include "cfb/compound_file.h"
#include "doc_source.h"
#include "document_writer.h"
#include "old_kinds.h"
#include "protection.h"
#include "reader.h"
#include "stories.h"

#include <array>
#include <memory>

namespace pluvo::doc {

namespace {

using namespace std::string_view_literals;

constexpr std::array kExtensions = {"doc"sv, "dot"sv};

/// Why nothing in the document can be changed; nothing where it can.
std::optional<document::Restriction> restrictionOf(const Opened& document) {
  constexpr auto kChange = document::Restriction::Of::change;
  const cfb::CompoundFile& file = document.streams.file;
  if (file.find("_signatures") || file.find("_xmlsignatures")) {
    return document::Restriction{kChange,
                                 "The document is digitally signed, and a change would make the signature "
                                 "invalid; remove the signature in a word processor first.",
                                 errors::Problem::signature};
  }
  try {
    const std::optional<Text> glossary = glossaryOf(document.streams, document.text);
    requireChangeable(document.text, glossary ? &*glossary : nullptr);
  } catch (const errors::DocumentError& reason) {
    return document::Restriction{kChange, reason.what(), reason.problem()};
  }
  return std::nullopt;
}

}  // namespace

bool DocFormat::recognises(base::ByteSpan bytes, std::string_view extension) const {
  return cfb::isCompoundFile(bytes) || otherKindOf(bytes, extension);
}

std::span<const std::string_view> DocFormat::extensions() const { return kExtensions; }

formats::Opened DocFormat::read(base::Bytes bytes, const formats::Hint& hint) const {
  if (!cfb::isCompoundFile(bytes.view)) {
    const auto kind = otherKindOf(bytes.view, "doc");
    throw unsupportedKind(kind ? *kind : "no document of Word's");
  }
  const auto document = std::make_shared<const Opened>(std::move(bytes), hint);
  Walker walker(document->text);
  const std::vector<StoryPlace> stories = storiesOf(document->text);
  const std::optional<document::Restriction> restriction = restrictionOf(*document);
  std::vector<OldStory> old;
  formats::Opened opened;
  for (const StoryPlace& place : stories) {
    if (!hint.allStories && !opened.stories.empty()) break;
    document::Content content = TextReader(walker, restriction ? &*restriction : nullptr).read(place);
    content.kind = place.kind;
    content.anchors = place.anchors;
    old.push_back({place, content.highlight});
    opened.stories.push_back(std::move(content));
  }
  opened.again.allStories = hint.allStories;
  if (document->streams.encrypted) opened.again.key = document->streams.encrypted->key();
  opened.source = std::make_unique<DocSource>(document, std::move(old));
  opened.protection = protectionOf(document->text);
  opened.reservation = reservationOf(document->text);
  opened.isTemplate = document->text.fib.has(Fib::kTemplate);
  return opened;
}

}  // namespace pluvo::doc
