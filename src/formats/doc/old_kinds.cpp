#include "old_kinds.h"

#include "base/ascii.h"
#include "base/little_endian.h"
#include "damage.h"

#include <algorithm>
#include <array>
#include <string>

namespace pluvo::doc {

namespace {

using namespace std::string_view_literals;
using errors::DocumentError;
using errors::Problem;

struct Kind {
  std::string_view mark;
  std::string_view name;
};

/// By the first bytes, whatever the file's name.
constexpr std::array kByBeginning = {
    Kind{"\x9B\xA5\x21\x00"sv, "a document of Word 1 for Windows"},
    Kind{"\xDB\xA5\x2D\x00"sv, "a document of Word 2 for Windows"},
    Kind{"\xDC\xA5\x65\x00"sv, "a document of Word 6 for Windows"},
    Kind{"\xDC\xA5\x68\x00"sv, "a document of Word 95"},
    Kind{"\x31\xBE\x00\x00\x00\xAB"sv, "a document of Word for DOS or of Windows Write"},
    Kind{"\x32\xBE\x00\x00\x00\xAB"sv, "a document of Windows Write"},
    Kind{"\xFE\x32\x00"sv, "a document of Word for the Macintosh"},
    Kind{"\xFE\x34\x00"sv, "a document of Word for the Macintosh"},
    Kind{"\xFE\x37\x00"sv, "a document of Word for the Macintosh"},
    Kind{"\xFFWPC"sv, "a WordPerfect document"},
};

/// By streams.
constexpr std::array kByStream = {
    Kind{"Contents", "a document of Publisher or Works"},
    Kind{"MatOST", "a document of Works"},
    Kind{"PerfectOffice_MAIN", "a WordPerfect document"},
};

/// The same for files that no word processor opens.
constexpr std::array kOfOtherPrograms = {
    Kind{"Workbook", "a spreadsheet of Excel (.xls)"},
    Kind{"Book", "a spreadsheet of Excel (.xls)"},
    Kind{"PowerPoint Document", "a presentation of PowerPoint (.ppt)"},
    Kind{"VisioDocument", "a drawing of Visio (.vsd)"},
    Kind{"__properties_version1.0", "a message of Outlook (.msg)"},
};

bool isWordName(std::string_view extension) { return extension == "doc" || extension == "dot"; }

/// Markup and messages begin with words.
std::optional<std::string_view> markupOf(base::ByteSpan bytes) {
  constexpr std::size_t kNear = 4096;
  std::string_view text(reinterpret_cast<const char*>(bytes.data()), std::min(bytes.size(), kNear));
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
  if (base::startsWithIgnoringAsciiCase(text, "mime-version:")) return "a web archive (.mht)";
  if (base::startsWithIgnoringAsciiCase(text, "<!doctype html") ||
      base::startsWithIgnoringAsciiCase(text, "<html"))
    return "a web page (.html)";
  if (!text.starts_with("<?xml")) return std::nullopt;
  const bool isWord = text.find("Word.Document") != std::string_view::npos ||
                      text.find("wordDocument") != std::string_view::npos ||
                      text.find("/wordprocessingml/") != std::string_view::npos ||
                      text.find("<pkg:package") != std::string_view::npos;
  return isWord ? "a Word document in one XML file" : "an XML file";
}

}  // namespace

std::optional<std::string_view> otherKindOf(base::ByteSpan bytes, std::string_view extension) {
  const std::string_view front(reinterpret_cast<const char*>(bytes.data()),
                               std::min<std::size_t>(bytes.size(), 16));
  for (const Kind& kind : kByBeginning)
    if (front.starts_with(kind.mark)) return kind.name;
  return isWordName(extension) ? markupOf(bytes) : std::nullopt;
}

DocumentError unsupportedKind(std::string_view kind) {
  return {Problem::unsupported,
          "The file is " + std::string(kind) +
              ", which is not worked on; open it in a word processor that knows it and save it as .docx, "
              ".rtf or .txt."};
}

DocumentError notWord(const cfb::CompoundFile& file) {
  for (const Kind& kind : kOfOtherPrograms)
    if (file.find(kind.mark))
      return {Problem::unsupported, "The file is " + std::string(kind.name) +
                                        ", whatever its name says, and cannot be worked on; open it in the "
                                        "program it is for."};
  for (const Kind& kind : kByStream)
    if (file.find(kind.mark)) return unsupportedKind(kind.name);
  return unsupportedKind("an Office file without a Word document in it");
}

DocumentError beforeWord97(base::ByteSpan document) {
  constexpr std::uint16_t kWord6 = 0xA5DC, kEastAsian = 0xA697, kLastEastAsian = 0xA699, kWord97 = 0xA5EC;
  constexpr std::uint16_t kFirstOf95 = 0x66;
  const std::uint16_t mark = base::get16(document, 0);
  const std::uint16_t version = base::get16(document, 2);
  if (mark != kWord6 && mark != kWord97 && (mark < kEastAsian || mark > kLastEastAsian))
    return damaged("information block is no such block");
  return unsupportedKind(version < kFirstOf95 ? "a document of Word 6" : "a document of Word 95");
}

}  // namespace pluvo::doc
