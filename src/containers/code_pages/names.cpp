#include "code_pages/names.h"

#include "base/ascii.h"
#include "errors/document_error.h"

#include <algorithm>
#include <array>

namespace pluvo::code_pages {

using errors::DocumentError;
using errors::Problem;

namespace {

/// Encodings whose common name is not iconv's, or for which the variant that files are in is another one.
struct Known {
  std::string_view name;
  std::string_view iconv;    ///< empty: read without iconv
  std::string_view aliases;  ///< as simplified gives them, blanks around each
};

constexpr std::array kKnown = {
    Known{"UTF-8", "", " UTF8 CP65001 "},
    Known{"UTF-16LE", "", " UTF16LE UCS2LE CP1200 "},
    Known{"UTF-16BE", "", " UTF16BE UCS2BE CP1201 "},
    Known{"Windows-1252", "", " WINDOWS1252 CP1252 MSANSI ANSI "},
    Known{"Windows-1250", "CP1250", " WINDOWS1250 CP1250 MSEE "},
    Known{"Windows-1251", "CP1251", " WINDOWS1251 CP1251 MSCYRL "},
    Known{"Windows-1253", "CP1253", " WINDOWS1253 CP1253 MSGREEK "},
    Known{"Windows-1254", "CP1254", " WINDOWS1254 CP1254 MSTURK "},
    Known{"Windows-1255", "CP1255", " WINDOWS1255 CP1255 MSHEBR "},
    Known{"Windows-1256", "CP1256", " WINDOWS1256 CP1256 MSARAB "},
    Known{"Windows-1257", "CP1257", " WINDOWS1257 CP1257 WINBALTRIM "},
    Known{"Windows-1258", "CP1258", " WINDOWS1258 CP1258 "},
    Known{"Windows-874", "CP874", " WINDOWS874 CP874 "},
    Known{"Shift_JIS", "CP932", " SHIFTJIS SJIS CP932 MS932 WINDOWS31J MSKANJI SJISWIN WINDOWS932 "},
    Known{"EUC-JP", "EUC-JP", " EUCJP "},
    Known{"GBK", "GBK", " GBK CP936 MS936 WINDOWS936 GB2312 EUCCN "},
    Known{"GB18030", "GB18030", " GB18030 "},
    Known{"Big5", "BIG5", " BIG5 CP950 BIGFIVE CNBIG5 WINDOWS950 "},
    Known{"Big5-HKSCS", "BIG5-HKSCS", " BIG5HKSCS "},
    Known{"EUC-KR", "CP949", " EUCKR CP949 UHC MSCP949 WINDOWS949 KSC5601 "},
    Known{"KOI8-R", "KOI8-R", " KOI8R CP20866 "},
    Known{"KOI8-U", "KOI8-U", " KOI8U "},
    Known{"macintosh", "MACINTOSH", " MACINTOSH MACROMAN MAC "},
};

/// As names are compared: capitals, without "-", "_" and blanks.
std::string simplified(std::string_view name) {
  std::string simple;
  for (const char c : name) {
    if (c == '-' || c == '_' || c == ' ') continue;
    simple.push_back(base::asciiUpper(c));
  }
  return simple;
}

/// iconv takes instructions after a slash, and its own configuration more than names.
bool looksLikeName(std::string_view name) {
  constexpr std::size_t kLongest = 40;
  static constexpr std::string_view kMarks = "-_.:+()";
  return !name.empty() && name.size() <= kLongest && std::ranges::all_of(name, [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
           kMarks.find(c) != std::string_view::npos;
  });
}

/// Byte orders that a mark tells, or that are the machine's.
bool needsByteOrder(std::string_view simple) {
  constexpr std::string_view kNames = " UTF16 UCS2 UNICODE ISO10646UCS2 CSUNICODE UNICODELITTLE UNICODEBIG ";
  return kNames.find(" " + std::string(simple) + " ") != std::string_view::npos;
}

bool isStatefulByName(std::string_view simple) {
  return simple.starts_with("ISO2022") || simple.starts_with("CSISO2022") || simple.starts_with("HZ") ||
         simple.starts_with("UTF7") || simple == "SCSU" || simple == "BOCU1";
}

DocumentError notUsable(std::string_view name, CodePage::Kind kind) {
  if (kind == CodePage::Kind::stateful) return statefulEncoding(name);
  if (kind == CodePage::Kind::notByBytes)
    return {Problem::encoding, "Texts in the encoding " + base::asciiUpper(name) +
                                   " are not read here; save them as UTF-8 first."};
  const std::string shown = looksLikeName(name) ? "There is no encoding \"" + std::string(name) + "\""
                                                : std::string("There is no encoding of that name");
  return {Problem::encoding, shown +
                                 "; known ones are UTF-8, Windows-1252, ISO-8859-2, Windows-1251, KOI8-R, "
                                 "Shift_JIS, EUC-JP, GBK, Big5 and EUC-KR, and what 'iconv -l' lists."};
}

Coding codingOf(const Known& known) {
  if (known.name == "UTF-16LE") return {Encoding::utf16Little};
  if (known.name == "UTF-16BE") return {Encoding::utf16Big};
  if (known.name == "Windows-1252") return {Encoding::windows1252};
  if (known.iconv.empty()) return {Encoding::utf8};
  const auto answer = CodePage::named(std::string(known.iconv));
  if (answer.page == nullptr) throw notUsable(known.name, answer.kind);
  return {Encoding::codePage, answer.page};
}

}  // namespace

DocumentError statefulEncoding(std::string_view name) {
  return {Problem::encoding, "In the encoding " + base::asciiUpper(name) +
                                 " the meaning of bytes depends on what stands before them, so a text cannot "
                                 "be changed in place; save it as UTF-8 first."};
}

Named encodingOf(std::string_view name) {
  const std::string simple = simplified(name);
  if (!looksLikeName(name)) throw notUsable(name, CodePage::Kind::unknown);
  for (const Known& known : kKnown)
    if (known.aliases.find(" " + simple + " ") != std::string_view::npos)
      return {codingOf(known), std::string(known.name)};
  if (needsByteOrder(simple))
    throw DocumentError(Problem::encoding, "\"" + std::string(name) +
                                               "\" does not tell the order of bytes; say UTF-16LE or "
                                               "UTF-16BE.");
  if (isStatefulByName(simple)) throw statefulEncoding(name);
  const auto answer = CodePage::named(base::asciiUpper(name));
  if (answer.page == nullptr) throw notUsable(name, answer.kind);
  return {{Encoding::codePage, answer.page}, base::asciiUpper(name)};
}

std::optional<Named> knownEncoding(std::string_view name) {
  try {
    return encodingOf(name);
  } catch (const DocumentError&) {
    return std::nullopt;
  }
}

}  // namespace pluvo::code_pages
