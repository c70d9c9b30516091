#include "rtf/rtf_format.h"

#include "document_reader.h"
#include "rtf_source.h"

#include <array>
#include <memory>

namespace pluvo::rtf {

namespace {

using namespace std::string_view_literals;

constexpr std::array kExtensions = {"rtf"sv};

std::string_view viewOf(base::ByteSpan bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace

bool RtfFormat::recognises(base::ByteSpan bytes, std::string_view /*extension*/) const {
  return documentBeginning(viewOf(bytes)).has_value();
}

std::span<const std::string_view> RtfFormat::extensions() const { return kExtensions; }

formats::Opened RtfFormat::read(base::Bytes bytes, const formats::Hint& hint) const {
  ReadDocument document = readDocument(viewOf(bytes.view), hint.allStories);
  formats::Opened opened;
  opened.stories = std::move(document.stories);
  opened.source = std::make_unique<RtfSource>(std::move(bytes), std::move(document.old));
  opened.protection = std::move(document.protection);
  opened.reservation = std::move(document.reservation);
  opened.again.allStories = hint.allStories;
  return opened;
}

}  // namespace pluvo::rtf
