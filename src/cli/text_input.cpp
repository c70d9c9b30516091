#include "text_input.h"

#include "errors/text.h"
#include "unicode.h"
#include "usage_error.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace pluvo::cli {
namespace {

// Far beyond any text that is looked for or put in, far below what would trouble the machine.
constexpr std::size_t kMostBytes = 64U << 20U;

[[noreturn]] void refuse(std::string_view option, const std::string& why) {
  throw UsageError(std::string(option) + ": " + why, std::string(option));
}

struct CloseFile {
  void operator()(std::FILE* file) const {
    if (file != stdin) (void)std::fclose(file);
  }
};

std::u16string withParagraphMarks(const std::u16string& text) {
  std::u16string marked;
  marked.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != u'\n') {
      marked += text[i];
    } else if (i == 0 || text[i - 1] != u'\r') {
      marked += u'\r';
    }
  }
  return marked;
}

}  // namespace

std::string bytesFrom(const std::string& path, std::string_view option) {
  errno = 0;
  const std::unique_ptr<std::FILE, CloseFile> file(path == "-" ? stdin : std::fopen(path.c_str(), "rbe"));
  if (!file) refuse(option, "cannot open " + path + ": " + std::strerror(errno) + ".");
  std::string bytes;
  std::array<char, 65536> buffer{};
  while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), file.get())) {
    bytes.append(buffer.data(), count);
    if (bytes.size() > kMostBytes)
      refuse(option, "the text in " + path + " is over 64 MiB; use a shorter one.");
  }
  if (std::ferror(file.get()) != 0) refuse(option, "cannot read " + path + ": " + std::strerror(errno) + ".");
  return bytes;
}

std::u16string textFromArgument(const std::string& bytes, std::string_view option) {
  const std::size_t sound = wellFormedLength(bytes);
  if (sound < bytes.size()) {
    refuse(option, "byte " + std::to_string(sound + 1) +
                       " of the text is not UTF-8; convert it first, with iconv for instance.");
  }
  return withParagraphMarks(errors::utf16(bytes));
}

std::u16string textFromFile(const std::string& path, std::string_view option) {
  std::string bytes = bytesFrom(path, option);
  if (bytes.rfind("\xEF\xBB\xBF", 0) == 0) bytes.erase(0, 3);
  std::u16string text = textFromArgument(bytes, option);
  if (!text.empty() && text.back() == u'\r') text.pop_back();
  return text;
}

}  // namespace pluvo::cli
