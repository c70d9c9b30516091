#include "sandbox.h"

#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace pluvo::cli {
namespace {

std::string makeFolder(Sandbox::Disk disk) {
  const std::filesystem::path memory = "/dev/shm";
  const bool inMemory = disk == Sandbox::Disk::memory && ::access(memory.c_str(), W_OK) == 0;
  std::string name = (inMemory ? memory : std::filesystem::temp_directory_path()) / "pluvo-cli-XXXXXX";
  if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
  return name;
}

std::string bytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path);
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return bytes.str();
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

}  // namespace

Sandbox::Sandbox(Disk disk) : folder_(makeFolder(disk)), streams_(makeFolder(disk)) {}

Sandbox::~Sandbox() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
  std::filesystem::remove_all(streams_, ignored);
}

std::string Sandbox::beside(const std::string& name) const {
  return "../" + std::filesystem::path(streams_).filename().string() + "/" + name;
}

void Sandbox::write(const std::string& name, const std::string& bytes) const {
  std::filesystem::create_directories(std::filesystem::path(path(name)).parent_path());
  std::ofstream(path(name), std::ios::binary) << bytes;
}

std::string Sandbox::read(const std::string& name) const { return bytesOf(path(name)); }

std::vector<std::string> Sandbox::names() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
    names.push_back(entry.path().filename());
  }
  std::sort(names.begin(), names.end());
  return names;
}

struct stat Sandbox::status(const std::string& name) const {
  struct stat status = {};
  if (::stat(path(name).c_str(), &status) != 0) throw std::runtime_error("no " + name);
  return status;
}

void Sandbox::become(const std::vector<std::string>& arguments) const {
  std::vector<std::string> words = {PLUVO_PROGRAM};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  ::setenv("XDG_STATE_HOME", statePath("").c_str(), 1);
  if (::chdir(folder_.c_str()) == 0) ::execv(PLUVO_PROGRAM, pointers.data());
  ::_exit(127);
}

Result Sandbox::run(const std::vector<std::string>& arguments) const { return wait(start(arguments)); }

pid_t Sandbox::start(const std::vector<std::string>& arguments, const std::string& name) const {
  const pid_t child = ::fork();
  if (child != 0) return child;
  redirect(STDIN_FILENO, "/dev/null", O_RDONLY);
  redirect(STDOUT_FILENO, streams_ + "/out" + name, O_WRONLY | O_CREAT | O_TRUNC);
  redirect(STDERR_FILENO, streams_ + "/err" + name, O_WRONLY | O_CREAT | O_TRUNC);
  become(arguments);
}

Result Sandbox::wait(pid_t child, const std::string& name) const {
  const int status = statusOf(child);
  return {status, bytesOf(streams_ + "/out" + name), bytesOf(streams_ + "/err" + name)};
}

bool Sandbox::hasTerminals() {
  const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY);
  const bool given = terminal >= 0 && ::grantpt(terminal) == 0 && ::unlockpt(terminal) == 0 &&
                     ::access(::ptsname(terminal), R_OK) == 0;
  if (terminal >= 0) ::close(terminal);
  return given;
}

Result Sandbox::runAtTerminal(const std::vector<std::string>& arguments, const std::string& keys) const {
  int terminal = -1;
  const pid_t child = ::forkpty(&terminal, nullptr, nullptr, nullptr);
  if (child < 0) throw std::runtime_error("no terminal");
  if (child == 0) {
    redirect(STDOUT_FILENO, streams_ + "/out", O_WRONLY | O_CREAT | O_TRUNC);
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
  return {status, bytesOf(streams_ + "/out"), shown};
}

}  // namespace pluvo::cli
