#pragma once

#include "storage/files/scratch.h"

#include <sys/stat.h>

#include <string>
#include <vector>

namespace pluvo::cli {

using Words = std::vector<std::string>;

/// Divided at blanks; _ is an empty word, and | a line end.
Words wordsOf(const std::string& line);
Words operator+(Words words, const Words& more);

struct Result {
  int status = -1;  ///< exit status, or 128 and the signal
  std::string out;
  std::string err;
};

/// A folder of its own to run the program in as its user would.
class Sandbox : public files::Scratch {
 public:
  /// On a disk that forgets, where the machine has one, the program does not wait for the disk.
  enum class Disk { ordinary, memory };
  explicit Sandbox(Disk disk = Disk::ordinary);

  /// A name, as the program sees it, of a file beside the folder.
  std::string beside(const std::string& name) const;
  /// Everything that tells whether the file was touched.
  struct stat status(const std::string& name) const;

  /// Standard input is empty, no stream is a terminal.
  Result run(const Words& arguments) const { return wait(start(arguments)); }
  Result run(const std::string& line) const { return run(wordsOf(line)); }
#ifdef PLUVO_SIGNAL_AT_CALL
  /// The program gets the signal before its so manieth call that changes the file system.
  Result runSignalled(const Words& arguments, int signal, int call) const;
#endif
  /// The same, not waited for; its streams are called after the name.
  pid_t start(const Words& arguments, const std::string& name = "") const;
  Result wait(pid_t child, const std::string& name = "") const;
  /// Whether the machine gives out terminals; a bare root without its devices does not.
  static bool hasTerminals();
  /// A person at a terminal types the keys; err is what the terminal shows, out goes to a file.
  Result runAtTerminal(const Words& arguments, const std::string& keys) const;

 private:
  [[noreturn]] void become(const Words& arguments) const;
  files::Scratch streams_;  ///< where its output and its state are kept
};

}  // namespace pluvo::cli
