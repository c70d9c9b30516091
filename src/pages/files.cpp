#include "pages/files.h"

#include "pages/completion.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace pluvo::pages {

std::string read(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  if (!file) throw std::runtime_error(path.string() + " cannot be read.");
  return text.str();
}

void write(const std::filesystem::path& path, const std::string& text) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  file << text;
  file.close();
  if (!file) throw std::runtime_error(path.string() + " cannot be written.");
}

void writeCompletions(const std::filesystem::path& folder, const Program& program) {
  write(folder / "bash" / program.name, bashCompletion(program));
  write(folder / "zsh" / ("_" + program.name), zshCompletion(program));
  write(folder / "fish" / (program.name + ".fish"), fishCompletion(program));
}

}  // namespace pluvo::pages
