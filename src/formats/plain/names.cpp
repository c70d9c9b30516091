#include "names.h"

#include "base/utf.h"
#include "plain/encodings.h"
#include "sample.h"
#include "token.h"

#include <algorithm>

namespace pluvo::plain {

std::string encodingNamed(std::string_view name) { return encodingOf(name).name; }

const std::vector<LikelyEncoding>& likelyEncodings() {
  static const std::vector<LikelyEncoding> likely = {{"Windows-1252", "Western European"},
                                                     {"ISO-8859-15", "Western European"},
                                                     {"macintosh", "Western European, old Macintosh"},
                                                     {"IBM850", "Western European, DOS"},
                                                     {"Windows-1250", "Central European"},
                                                     {"ISO-8859-2", "Central European"},
                                                     {"IBM852", "Central European, DOS"},
                                                     {"Windows-1251", "Cyrillic"},
                                                     {"KOI8-R", "Russian"},
                                                     {"KOI8-U", "Ukrainian"},
                                                     {"ISO-8859-5", "Cyrillic"},
                                                     {"IBM866", "Cyrillic, DOS"},
                                                     {"Windows-1253", "Greek"},
                                                     {"ISO-8859-7", "Greek"},
                                                     {"Windows-1254", "Turkish"},
                                                     {"Windows-1255", "Hebrew"},
                                                     {"Windows-1256", "Arabic"},
                                                     {"Windows-1257", "Baltic"},
                                                     {"Windows-1258", "Vietnamese"},
                                                     {"Windows-874", "Thai"},
                                                     {"Shift_JIS", "Japanese"},
                                                     {"EUC-JP", "Japanese"},
                                                     {"GBK", "Chinese, simplified"},
                                                     {"GB18030", "Chinese, simplified"},
                                                     {"Big5", "Chinese, traditional"},
                                                     {"Big5-HKSCS", "Chinese, traditional, Hong Kong"},
                                                     {"EUC-KR", "Korean"},
                                                     {"UTF-8", "every language; bytes that are none stay"},
                                                     {"UTF-16LE", "every language"},
                                                     {"UTF-16BE", "every language"}};
  return likely;
}

std::u16string sampleOf(base::ByteSpan bytes, std::string_view encoding) {
  constexpr std::size_t kMost = 2000;
  const Coding coding = encodingOf(encoding).coding;
  const bool whole = isUtf16(coding.encoding);
  const std::vector<std::uint8_t> lines = telling(bytes, kMost);
  const base::ByteSpan taken = whole ? bytes.first(std::min(bytes.size(), kMost) / 2 * 2) : lines;
  std::u16string text;
  forEachToken(taken, coding, [&](const Token& token) {
    char32_t point = token.codePoint;
    if (point == U'\r') point = U'\n';
    base::appendUtf16(text, isStray(point) ? base::kReplacement : point);
  });
  return text;
}

}  // namespace pluvo::plain
