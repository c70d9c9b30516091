#include "doc/doc_format.h"

#include "cfb/compound_file.h"
#include "doc_source.h"
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

std::optional<document::Restriction> signatureOf(const cfb::CompoundFile& file) {
  if (!file.find("_signatures") && !file.find("_xmlsignatures")) return std::nullopt;
  return document::Restriction{document::Restriction::Of::change,
                               "The document is digitally signed, and a change would make the signature "
                               "invalid; remove the signature in a word processor first.",
                               errors::Problem::signature};
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
  const std::optional<document::Restriction> signed_ = signatureOf(document->streams.file);
  std::vector<OldStory> old;
  formats::Opened opened;
  for (const StoryPlace& place : stories) {
    if (!hint.allStories && !opened.stories.empty()) break;
    document::Content content = TextReader(walker, signed_ ? &*signed_ : nullptr).read(place);
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
  return opened;
}

}  // namespace pluvo::doc
