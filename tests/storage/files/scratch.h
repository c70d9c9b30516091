#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <string>

namespace pluvo::files {

/// A letter as names of files have them: a byte that is no UTF-8, where names are bytes.
#ifdef _WIN32
inline constexpr const char* kOddLetter = "\xE4\xB8\x80";
#else
inline constexpr const char* kOddLetter = "\xFF";
#endif

/// A folder that goes when the test ends. Names and paths are in UTF-8 on every system.
class Scratch {
 public:
  explicit Scratch(const std::filesystem::path& around = std::filesystem::temp_directory_path()) {
    std::random_device random;
    do {
      folder_ = around / ("pluvo-test-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(folder_));
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
  ~Scratch() { std::filesystem::remove_all(folder_); }

  /// Where a file of that name lies, as the machine has it.
  std::filesystem::path at(const std::string& name) const {
    return folder_ / std::filesystem::path(std::u8string(name.begin(), name.end()));
  }
  std::string path(const std::string& name) const { return bytes(at(name)); }

  std::string put(const std::string& name, const std::string& content) const {
    std::filesystem::create_directories(at(name).parent_path());
    std::ofstream(at(name), std::ios::binary) << content;
    return path(name);
  }

  std::string get(const std::string& name) const {
    std::ifstream file(at(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  std::set<std::string> names() const {
    std::set<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(folder_))
      found.insert(bytes(entry.path().filename()));
    return found;
  }

 private:
  static std::string bytes(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
  }

  std::filesystem::path folder_;
};

}  // namespace pluvo::files
