#include "formats/media/media.h"
#include "formats/rtf/rtf_builder.h"
#include "rtf/rtf_format.h"

namespace pluvo::formats {

namespace {

/// Two tables with nothing between them are one in such a file.
std::optional<base::Bytes> asRtf(std::string_view notation, notation::Ranges& ranges) {
  const base::Bytes file = rtf::fileOf(notation, ranges);
  const document::Story read(rtf::RtfFormat().read(file).stories.front());
  if (notation::print(read) != notation::Sample(notation).print()) return std::nullopt;
  return file;
}

}  // namespace

Medium rtfMedium() { return {"rtf", std::make_shared<rtf::RtfFormat>(), asRtf}; }

}  // namespace pluvo::formats
