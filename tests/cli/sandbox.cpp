#include "sandbox.h"

#include <fcntl.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <sstream>
#include <stdexcept>

namespace pluvo::cli {
namespace {

std::filesystem::path placeOf(Sandbox::Disk disk) {
  const std::filesystem::path memory = "/dev/shm";
  const bool inMemory = disk == Sandbox::Disk::memory && ::access(memory.c_str(), W_OK) == 0;
  return inMemory ? memory : std::filesystem::temp_directory_path();
}

int statusOf(pid_t child) {
  int status = 0;
  if (::waitpid(child, &status, 0) != child) throw std::runtime_error("no child to wait for");
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

void redirect(int descriptor, const std::string& path, int flags) {
  const int file = ::open(path.c_str(), flags, 0600);
  if (file < 0 || ::dup2(file, descriptor) < 0) ::_exit(126);
  ::close(file);
}

constexpr int kNewFile = O_WRONLY | O_CREAT | O_TRUNC;

}  // namespace

Words wordsOf(const std::string& line) {
  std::istringstream in(line);
  Words words;
  for (std::string word; std::getline(in, word, ' ');) {
    std::ranges::replace(word, '|', '\n');
    if (!word.empty()) words.push_back(word == "_" ? "" : word);
  }
  return words;
}

Words operator+(Words words, const Words& more) {
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

Sandbox::Sandbox(Disk disk) : Scratch(placeOf(disk)), streams_(placeOf(disk)) {}

std::string Sandbox::beside(const std::string& name) const {
  return "../" + streams_.at("").parent_path().filename().string() + "/" + name;
}

struct stat Sandbox::status(const std::string& name) const {
  struct stat status = {};
  if (::stat(path(name).c_str(), &status) != 0) throw std::runtime_error("no " + name);
  return status;
}

void Sandbox::become(const Words& arguments) const {
  Words words = Words{PLUVO_PROGRAM} + arguments;
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  ::setenv("XDG_STATE_HOME", streams_.path("state").c_str(), 1);
  if (::chdir(path("").c_str()) == 0) ::execv(PLUVO_PROGRAM, pointers.data());
  ::_exit(127);
}

pid_t Sandbox::start(const Words& arguments, const std::string& name) const {
  const pid_t child = ::fork();
  if (child != 0) return child;
  redirect(STDIN_FILENO, "/dev/null", O_RDONLY);
  redirect(STDOUT_FILENO, streams_.path("out" + name), kNewFile);
  redirect(STDERR_FILENO, streams_.path("err" + name), kNewFile);
  become(arguments);
}

Result Sandbox::wait(pid_t child, const std::string& name) const {
  const int status = statusOf(child);
  return {status, streams_.get("out" + name), streams_.get("err" + name)};
}

#ifdef PLUVO_SIGNAL_AT_CALL
Result Sandbox::runSignalled(const Words& arguments, int signal, int call) const {
  ::setenv("LD_PRELOAD", PLUVO_SIGNAL_AT_CALL, 1);
  ::setenv("PLUVO_SIGNAL", std::to_string(signal).c_str(), 1);
  ::setenv("PLUVO_CALL", std::to_string(call).c_str(), 1);
  ::signal(signal, SIG_DFL);  // a shell has its background programs ignore some
  const pid_t child = start(arguments);
  ::unsetenv("LD_PRELOAD");
  return wait(child);
}
#endif

bool Sandbox::hasTerminals() {
  const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY);
  const bool given = terminal >= 0 && ::grantpt(terminal) == 0 && ::unlockpt(terminal) == 0 &&
                     ::access(::ptsname(terminal), R_OK) == 0;
  if (terminal >= 0) ::close(terminal);
  return given;
}

Result Sandbox::runAtTerminal(const Words& arguments, const std::string& keys) const {
  int terminal = -1;
  const pid_t child = ::forkpty(&terminal, nullptr, nullptr, nullptr);
  if (child < 0) throw std::runtime_error("no terminal");
  if (child == 0) {
    redirect(STDOUT_FILENO, streams_.path("out"), kNewFile);
    become(arguments);
  }
  if (::write(terminal, keys.data(), keys.size()) < 0) throw std::runtime_error("the terminal is gone");
  std::string shown;
  std::array<char, 4096> buffer{};
  // Reading fails when the program has ended and its side of the terminal is closed.
  for (ssize_t count = 0; (count = ::read(terminal, buffer.data(), buffer.size())) > 0;) {
    shown.append(buffer.data(), static_cast<std::size_t>(count));
  }
  ::close(terminal);
  const int status = statusOf(child);
  return {status, streams_.get("out"), shown};
}

}  // namespace pluvo::cli
