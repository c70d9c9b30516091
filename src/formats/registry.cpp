#include "formats/registry.h"

#include "base/ascii.h"
#include "base/document_types.h"
#include "formats/signature.h"

#include <algorithm>

namespace pluvo::formats {

namespace {

using errors::DocumentError;
using errors::Problem;

/// Whether a name with the extension promises more than a text.
bool promisesDocument(std::string_view extension) {
  return extension != "txt" &&
         std::ranges::find(base::kDocumentTypes, extension) != base::kDocumentTypes.end();
}

std::string quoted(std::string_view extension) { return "\"." + std::string(extension) + "\""; }

DocumentError notRecognised(base::ByteSpan bytes, std::string_view extension) {
  if (const auto signature = signatureOf(bytes))
    return {Problem::unsupported, "The file is " + std::string(describe(*signature)) +
                                      (goesWith(*signature, extension) ? "" : ", whatever its name says,") +
                                      " and cannot be worked on; open it in the program it "
                                      "is for and save it as .docx, .rtf or .txt."};
  if (bytes.empty() || promisesDocument(extension))
    return {Problem::damaged,
            "The name says " + quoted(extension) +
                ", but the file does not hold a document of that kind; restore it from a copy, or "
                "give it the name ending .txt if it is plain text."};
  return {Problem::unsupported,
          "Files named " + quoted(extension) +
              " are not worked on; give the file the name ending .txt if it is plain text."};
}

}  // namespace

std::string extensionOf(std::string_view path) {
  const std::string_view name = path.substr(path.rfind('/') + 1);
  const std::size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0) return {};
  return base::asciiLower(name.substr(dot + 1));
}

const Format* Registry::find(base::ByteSpan bytes, std::string_view extension) const {
  for (const auto& format : formats_)
    if (format->recognises(bytes, extension)) return format.get();
  return nullptr;
}

const Format& Registry::formatOf(base::ByteSpan bytes, std::string_view extension) const {
  if (const Format* format = find(bytes, extension)) return *format;
  throw notRecognised(bytes, extension);
}

std::vector<std::string_view> Registry::extensions() const {
  std::vector<std::string_view> all;
  for (const auto& format : formats_) {
    const auto some = format->extensions();
    all.insert(all.end(), some.begin(), some.end());
  }
  return all;
}

}  // namespace pluvo::formats
