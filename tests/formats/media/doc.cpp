#include "doc/doc_format.h"
#include "formats/doc/doc_builder.h"
#include "formats/media/media.h"
#include "storage/files/as_text.h"

namespace pluvo::formats {

namespace {

/// Two tables with nothing between them are one in such a file.
std::optional<base::Bytes> asDoc(std::string_view notation, notation::Ranges& ranges) {
  doc::DocBuilder builder;
  ranges = builder.notation(notation);
  const base::Bytes file = files::bytesOf(builder.build());
  const document::Story read(doc::DocFormat().read(file).stories.front());
  const document::Story meant(notation::parse(notation).content);
  if (notation::print(read) != notation::print(meant)) return std::nullopt;
  return file;
}

}  // namespace

Medium docMedium() { return {"doc", std::make_shared<doc::DocFormat>(), asDoc, nullptr, true}; }

}  // namespace pluvo::formats
