#include "zip/looks_like.h"

#include "base/ascii.h"
#include "cfb/compound_file.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace pluvo::zip {

namespace {

using namespace std::string_view_literals;

struct Look {
  std::string_view begin;
  std::string_view name;
};

constexpr Look kLooks[] = {
    {"{\\rtf", "an RTF document (.rtf)"},
    {"%PDF", "a PDF document (.pdf)"},
    {"\xDB\xA5", "a Word document from before Word 97 (.doc)"},
    {"PK\x05\x06", "an empty ZIP archive"},
    {"PK\x07\x08", "one part of a split ZIP archive"},
    {"PK00", "one part of a split ZIP archive"},
    {"\x1F\x8B", "a gzip archive"},
    {"Rar!", "a RAR archive"},
    {"7z\xBC\xAF\x27\x1C", "a 7-Zip archive"},
    {"\x89PNG", "a picture"},
    {"\xFF\xD8\xFF", "a picture"},
    {"GIF8", "a picture"},
};

/// Names of streams tell what a compound file holds.
constexpr Look kStreams[] = {
    {"WordDocument", "an older Word document (.doc)"},
    {"Workbook", "a spreadsheet (.xls)"},
    {"PowerPoint Document", "a presentation (.ppt)"},
};

bool isText(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) return true;
  return std::all_of(bytes.begin(), bytes.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x20 || (byte >= 0x08 && byte <= 0x0D) || byte == 0x1A;
  });
}

std::string_view markupOrText(std::string_view bytes) {
  std::string_view text = bytes;
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
  if (base::startsWithIgnoringAsciiCase(text, "<!doctype html") ||
      base::startsWithIgnoringAsciiCase(text, "<html")) {
    return "a web page (.html)";
  }
  if (text.starts_with("<?xml")) return "an XML document";
  if (std::all_of(bytes.begin(), bytes.end(), [](char c) { return c == '\0'; })) return "nothing but zeros";
  return isText(bytes) ? "plain text (.txt)" : "no document this program knows";
}

std::string_view nameOfLook(base::ByteSpan file) {
  const std::string_view bytes(reinterpret_cast<const char*>(file.data()), file.size());
  if (bytes.empty()) return "an empty file";
  if (cfb::isCompoundFile(file)) {
    for (const Look& stream : kStreams) {
      if (cfb::hasStream(file, stream.begin)) return stream.name;
    }
    return "an older Office document";
  }
  for (const Look& look : kLooks) {
    if (bytes.starts_with(look.begin)) return look.name;
  }
  return markupOrText(bytes);
}

bool isEncryptedPackage(base::ByteSpan bytes) {
  return cfb::hasStream(bytes, "EncryptedPackage") && cfb::hasStream(bytes, "EncryptionInfo");
}

}  // namespace

errors::DocumentError notAnArchive(base::ByteSpan bytes) {
  if (isEncryptedPackage(bytes)) {
    return {
        errors::Problem::password,
        "The document is encrypted with a password; open it in a word processor and save it without one."};
  }
  return {errors::Problem::damaged, "The file is not a Word document of its kind: it looks like " +
                                        std::string(nameOfLook(bytes)) +
                                        "; give it the right extension or get an intact copy."};
}

}  // namespace pluvo::zip
