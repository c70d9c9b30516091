#include "formats/registry.h"

#include "formats/signature.h"

#include <algorithm>
#include <array>

namespace pluvo::formats {

namespace {

using files::DocumentError;
using files::Problem;

constexpr std::array<std::string_view, 9> kDocumentExtensions = {"doc",  "docx", "docm", "dot", "dotx",
                                                                 "dotm", "rtf",  "htm",  "html"};

std::string quoted(std::string_view extension) { return "\"." + std::string(extension) + "\""; }

DocumentError notRecognised(files::ByteSpan bytes, std::string_view extension) {
  if (const auto signature = signatureOf(bytes))
    return {Problem::unsupported,
            "The file is " + std::string(describe(*signature)) +
                ", whatever its name says, and cannot be worked on; open it in the program it "
                "is for and save it as .docx or .txt."};
  if (!bytes.empty() && extension.starts_with("htm"))
    return {Problem::unsupported,
            "Web pages (" + quoted(extension) +
                ") are not worked on; open it in a word processor and save it as .docx or .txt."};
  if (bytes.empty() || std::ranges::find(kDocumentExtensions, extension) != kDocumentExtensions.end())
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
  std::string extension(name.substr(dot + 1));
  std::ranges::transform(extension, extension.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
  });
  return extension;
}

const Format* Registry::find(files::ByteSpan bytes, std::string_view extension) const {
  for (const auto& format : formats_)
    if (format->recognises(bytes, extension)) return format.get();
  return nullptr;
}

const Format& Registry::formatOf(files::ByteSpan bytes, std::string_view extension) const {
  if (const Format* format = find(bytes, extension)) return *format;
  throw notRecognised(bytes, extension);
}

}  // namespace pluvo::formats
