#include "xml/encoding.h"

#include "base/ascii.h"
#include "base/utf.h"
#include "characters.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <optional>
#include <utility>

namespace pluvo::xml {

namespace {

using namespace std::string_view_literals;

/// Far beyond any XML declaration.
constexpr std::size_t kDeclarationLimit = 1024;

/// How a part may begin, mark first. UTF-32's mark begins with UTF-16's, so it is asked for first.
struct Beginning {
  std::string_view bytes;
  std::string_view encoding;
  bool isMark;
};
constexpr Beginning kBeginnings[] = {
    {"\xFF\xFE\0\0"sv, "UTF-32LE", true}, {"\0\0\xFE\xFF"sv, "UTF-32BE", true},
    {"\xEF\xBB\xBF"sv, "UTF-8", true},    {"\xFF\xFE"sv, "UTF-16LE", true},
    {"\xFE\xFF"sv, "UTF-16BE", true},     {"<\0\0\0"sv, "UTF-32LE", false},
    {"\0\0\0<"sv, "UTF-32BE", false},     {"<\0"sv, "UTF-16LE", false},
    {"\0<"sv, "UTF-16BE", false},
};

std::string_view viewOf(base::ByteSpan bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// The encoding that the XML declaration names; empty when it names none.
std::string_view declaredEncoding(std::string_view text) {
  if (!text.starts_with("<?xml")) return {};
  std::string_view declaration = text.substr(0, std::min(text.find("?>"), kDeclarationLimit));
  const std::size_t at = declaration.find("encoding");
  if (at == std::string_view::npos) return {};
  declaration.remove_prefix(at);
  const std::size_t open = declaration.find_first_of("\"'");
  if (open == std::string_view::npos) return {};
  const std::size_t close = declaration.find(declaration[open], open + 1);
  return close == std::string_view::npos ? std::string_view()
                                         : declaration.substr(open + 1, close - open - 1);
}

/// EncName of XML 1.0: nothing that means more than a name to the converter.
bool isEncodingName(std::string_view name) {
  const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  return !name.empty() && name.size() <= 40 && isLetter(name.front()) &&
         std::all_of(name.begin(), name.end(), [&](char c) {
           return isLetter(c) || (c >= '0' && c <= '9') || c == '.' || c == '_' || c == '-';
         });
}

class Converter {
 public:
  Converter(const std::string& to, const std::string& from) : handle_(iconv_open(to.c_str(), from.c_str())) {}
  ~Converter() {
    if (isOpen()) iconv_close(handle_);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  bool isOpen() const { return reinterpret_cast<std::intptr_t>(handle_) != -1; }

  /// Converts from the front of `text`, which is left at what could not be converted; empty when all could.
  void convert(std::string_view& text, std::vector<std::uint8_t>& out) {
    std::array<char, 16384> room;
    while (!text.empty()) {
      char* from = const_cast<char*>(text.data());
      std::size_t left = text.size();
      char* to = room.data();
      std::size_t free = room.size();
      const std::size_t result = iconv(handle_, &from, &left, &to, &free);
      const int error = errno;
      out.insert(out.end(), room.data(), to);
      text.remove_prefix(text.size() - left);
      if (result == static_cast<std::size_t>(-1) && error != E2BIG) return;
    }
  }

  /// The bytes that bring a stateful encoding back to its beginning.
  void finish(std::vector<std::uint8_t>& out) {
    std::array<char, 64> room;
    char* to = room.data();
    std::size_t free = room.size();
    iconv(handle_, nullptr, nullptr, &to, &free);
    out.insert(out.end(), room.data(), to);
  }

 private:
  iconv_t handle_;
};

Encoding encodingOf(std::string_view part) {
  Encoding encoding;
  const auto* const beginning =
      std::find_if(std::begin(kBeginnings), std::end(kBeginnings),
                   [&](const Beginning& candidate) { return part.starts_with(candidate.bytes); });
  if (beginning != std::end(kBeginnings)) {
    encoding.name = beginning->encoding;
    if (beginning->isMark) encoding.mark = beginning->bytes;
    return encoding;
  }
  const std::string_view declared = declaredEncoding(part);
  if (!declared.empty() && !base::equalsIgnoringAsciiCase(declared, "UTF-8") &&
      !base::equalsIgnoringAsciiCase(declared, "UTF8") &&
      !base::equalsIgnoringAsciiCase(declared, "US-ASCII")) {
    encoding.name = declared;
  }
  return encoding;
}

errors::DocumentError unknown(std::string_view partName) {
  return {errors::Problem::unsupported,
          "The document's part \"" + std::string(partName) +
              "\" is written in an encoding this program does not know; let a word "
              "processor save the document anew."};
}

errors::DocumentError unfit(std::string_view partName, const Encoding& encoding) {
  return {errors::Problem::damaged, "The document's part \"" + std::string(partName) + "\" is not the " +
                                        encoding.name +
                                        " it says it is; let a word processor repair and save the document."};
}

}  // namespace

Utf8Part toUtf8(const base::Bytes& part, std::string_view partName) {
  Utf8Part result;
  result.encoding = encodingOf(viewOf(part.view));
  const Encoding& encoding = result.encoding;
  const base::ByteSpan body = part.view.subspan(encoding.mark.size());
  if (encoding.isUtf8()) {
    result.utf8 = {body, part.owner, part.file};
    return result;
  }
  if (!isEncodingName(encoding.name)) throw unknown(partName);
  Converter converter("UTF-8", encoding.name);
  if (!converter.isOpen()) throw unknown(partName);
  std::vector<std::uint8_t> utf8;
  std::string_view left = viewOf(body);
  converter.convert(left, utf8);
  converter.finish(utf8);
  if (!left.empty()) throw unfit(partName, encoding);
  result.utf8 = base::Bytes::of(std::move(utf8));
  // Some encodings write one text in several ways; then an untouched part of it would not stay as it was.
  if (!std::ranges::equal(fromUtf8(result.utf8.view, encoding), part.view)) throw unfit(partName, encoding);
  return result;
}

std::vector<std::uint8_t> fromUtf8(base::ByteSpan utf8, const Encoding& encoding) {
  std::vector<std::uint8_t> out(encoding.mark.begin(), encoding.mark.end());
  if (encoding.isUtf8()) {
    out.insert(out.end(), utf8.begin(), utf8.end());
    return out;
  }
  Converter converter(encoding.name, "UTF-8");
  std::string_view left = viewOf(utf8);
  for (converter.convert(left, out); !left.empty(); converter.convert(left, out)) {
    const base::Utf8Character next = base::firstOfUtf8(left);
    left.remove_prefix(next.bytes);
    const std::string reference = "&#" + std::to_string(static_cast<std::uint32_t>(next.point)) + ";";
    std::string_view ascii = reference;
    converter.convert(ascii, out);
  }
  converter.finish(out);
  return out;
}

}  // namespace pluvo::xml
