#include "formats/media/media.h"
#include "formats/rtf/rtf_builder.h"
#include "rtf/rtf_format.h"

namespace pluvo::formats {

namespace {

/// Two tables with nothing between them are one in such a file.
std::optional<base::Bytes> asRtf(std::string_view notation, notation::Ranges& ranges) {
  const base::Bytes file = rtf::fileOf(notation, ranges);
  const document::Story read(rtf::RtfFormat().read(file).stories.front());
  const document::Story meant(notation::parse(notation).content);
  if (notation::print(read) != notation::print(meant)) return std::nullopt;
  return file;
}

}  // namespace

Medium rtfMedium() { return {"rtf", std::make_shared<rtf::RtfFormat>(), asRtf, nullptr, true}; }

}  // namespace pluvo::formats
