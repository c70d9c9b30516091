// Loaded before the program, it sends it a signal before one of its calls that change the file system.
// PLUVO_SIGNAL is the signal's number, PLUVO_CALL the call's.

#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>

namespace {

int numberIn(const char* name) {
  const char* text = std::getenv(name);
  return text == nullptr ? 0 : std::atoi(text);
}

void counted() {
  static std::atomic<int> left = numberIn("PLUVO_CALL");
  if (left.fetch_sub(1) != 1) return;
  const int signal = numberIn("PLUVO_SIGNAL");
  ::kill(::getpid(), signal);
  // The loss of a terminal is told by the shell and by the system.
  if (signal == SIGHUP) ::kill(::getpid(), signal);
}

template <class Function>
Function real(Function, const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

#define COUNTED(RESULT, NAME, PARAMETERS, ARGUMENTS) \
  extern "C" RESULT NAME PARAMETERS {                \
    counted();                                       \
    static const auto next = real(&(NAME), #NAME);   \
    return next ARGUMENTS;                           \
  }

COUNTED(ssize_t, write, (int file, const void* bytes, size_t size), (file, bytes, size))
COUNTED(ssize_t, pwrite, (int file, const void* bytes, size_t size, off_t at), (file, bytes, size, at))
COUNTED(int, ftruncate, (int file, off_t size) noexcept, (file, size))
COUNTED(int, fsync, (int file), (file))
COUNTED(int, fdatasync, (int file), (file))
COUNTED(int, fchmod, (int file, mode_t mode) noexcept, (file, mode))
COUNTED(int, mkdirat, (int folder, const char* path, mode_t mode) noexcept, (folder, path, mode))
COUNTED(int, unlinkat, (int folder, const char* path, int flags) noexcept, (folder, path, flags))
COUNTED(int, linkat, (int a, const char* from, int b, const char* to, int flags) noexcept,
        (a, from, b, to, flags))
COUNTED(int, renameat, (int a, const char* from, int b, const char* to) noexcept, (a, from, b, to))
COUNTED(int, renameat2, (int a, const char* from, int b, const char* to, unsigned flags) noexcept,
        (a, from, b, to, flags))
