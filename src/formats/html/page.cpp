#include "page.h"

#include "base/utf.h"
#include "errors/document_error.h"
#include "utf16_bytes.h"

#include <utility>

namespace pluvo::formats::html {

namespace {

using code_pages::Encoding;
using errors::DocumentError;
using errors::Problem;
using namespace std::string_view_literals;

std::string_view viewOf(base::ByteSpan bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace

Page::Page(base::Bytes file) : file_(std::move(file)) {
  const std::string_view all = viewOf(file_.view);
  if (all.starts_with("\xFF\xFE\0\0"sv) || all.starts_with("\0\0\xFE\xFF"sv))
    throw DocumentError(Problem::encoding,
                        "Pages in the encoding UTF-32 are not read here; save it as UTF-8.");
  const bool isLittle = all.starts_with(kLittleMark);
  if (isLittle || all.starts_with(kBigMark)) {
    converted_ = utf8Of(all.substr(kLittleMark.size()), isLittle);
    bytes_ = converted_;
    markLength_ = kLittleMark.size();
    charset_ = {{isLittle ? Encoding::utf16Little : Encoding::utf16Big, nullptr},
                isLittle ? "UTF-16LE" : "UTF-16BE",
                true};
    return;
  }
  bytes_ = all;
  if (all.size() > 3 && ((all[0] == '<' && all[1] == '\0') || (all[0] == '\0' && all[1] == '<')))
    throw DocumentError(Problem::encoding,
                        "The page is in UTF-16 and does not begin with a byte order mark; save it as UTF-8.");
  if (all.starts_with(kUtf8Mark)) {
    markLength_ = kUtf8Mark.size();
    bytes_.remove_prefix(markLength_);
    charset_ = {{Encoding::utf8, nullptr}, "UTF-8", true};
  } else if (auto charset = declaredCharset(bytes_)) {
    charset_ = *std::move(charset);
  } else if (base::wellFormedLength(bytes_) == bytes_.size()) {
    charset_ = {{Encoding::utf8, nullptr}, "UTF-8", false};
  } else {
    charset_ = {{Encoding::windows1252, nullptr}, "Windows-1252", false};
  }
}

void Page::write(const std::vector<base::ByteSpan>& pieces, base::Output& out) const {
  out.write(file_.view.first(markLength_));
  if (!code_pages::isUtf16(charset_.coding.encoding)) {
    for (const base::ByteSpan piece : pieces) out.write(piece);
    return;
  }
  Utf16Output units(charset_.coding.encoding == Encoding::utf16Little, out);
  for (const base::ByteSpan piece : pieces) units.write(piece);
  units.finish();
  if (file_.view.size() % 2 == 1) out.write(file_.view.last(1));
}

}  // namespace pluvo::formats::html
