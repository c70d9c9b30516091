#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

namespace pluvo::cli {

struct Result {
  int status = -1;  ///< exit status, or 128 and the signal
  std::string out;
  std::string err;
};

/// A folder of its own to run the program in as its user would.
class Sandbox {
 public:
  /// On a disk that forgets, where the machine has one, the program does not wait for the disk.
  enum class Disk { ordinary, memory };
  explicit Sandbox(Disk disk = Disk::ordinary);
  ~Sandbox();
  Sandbox(const Sandbox&) = delete;
  Sandbox& operator=(const Sandbox&) = delete;

  void write(const std::string& name, const std::string& bytes) const;
  std::string read(const std::string& name) const;
  std::string path(const std::string& name) const { return folder_ + "/" + name; }
  /// A name, as the program sees it, of a file beside the folder.
  std::string beside(const std::string& name) const;
  /// Where the program keeps its state.
  std::string statePath(const std::string& name) const { return streams_ + "/state/" + name; }
  std::vector<std::string> names() const;
  /// Everything that tells whether the file was touched.
  struct stat status(const std::string& name) const;

  /// Standard input is empty, no stream is a terminal.
  Result run(const std::vector<std::string>& arguments) const;
  /// The same, not waited for; its streams are called after the name.
  pid_t start(const std::vector<std::string>& arguments, const std::string& name = "") const;
  Result wait(pid_t child, const std::string& name = "") const;
  /// Whether the machine gives out terminals; a bare root without its devices does not.
  static bool hasTerminals();
  /// A person at a terminal types the keys; err is what the terminal shows, out goes to a file.
  Result runAtTerminal(const std::vector<std::string>& arguments, const std::string& keys) const;

 private:
  [[noreturn]] void become(const std::vector<std::string>& arguments) const;
  std::string folder_;   ///< what the program sees
  std::string streams_;  ///< where its output is kept
};

}  // namespace pluvo::cli
