#include "input_field.h"

#include "base/names.h"
#include "errors/fault.h"

#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

namespace pluvo::dialog {

namespace {

/// No options are longer; the rest is not read.
constexpr std::size_t kMostBytes = 65536;

std::string_view fieldIn(std::string_view bytes) {
  const std::size_t first = bytes.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  bytes.remove_prefix(first);
  if (!bytes.starts_with('"')) return bytes.substr(0, bytes.find_first_of(",\r\n"));
  bytes.remove_prefix(1);
  return bytes.substr(0, bytes.find('"'));
}

}  // namespace

std::optional<std::u16string> firstInputField(const std::u16string& path) {
  const std::filesystem::path file = base::machinePath(path);
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error)) return std::nullopt;
  std::ifstream input(file, std::ios::binary);
  if (!input) return std::nullopt;
  std::string bytes(kMostBytes, '\0');
  input.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (input.bad()) throw errors::Fault(errors::kPathFileAccess, u"\"" + path + u"\" cannot be read");
  bytes.resize(static_cast<std::size_t>(input.gcount()));
  if (bytes.empty()) throw errors::Fault(errors::kInputPastEnd, u"Input past end of file");
  return base::nameText(fieldIn(bytes));
}

}  // namespace pluvo::dialog
