// Loaded before the program, fails calls on folders as a bad disk does: those named "unopened" cannot be
// opened, and reading those named "unfinished" ends behind their third entry.

#include <dirent.h>
#include <dlfcn.h>

#include <cerrno>
#include <string_view>

namespace {

DIR* unfinished = nullptr;
int entriesLeft = 0;

template <class Function>
Function real(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" DIR* opendir(const char* path) {
  if (std::string_view(path).find("unopened") != std::string_view::npos) {
    errno = EIO;
    return nullptr;
  }
  DIR* const opened = real<DIR* (*)(const char*)>("opendir")(path);
  if (std::string_view(path).find("unfinished") != std::string_view::npos) {
    unfinished = opened;
    entriesLeft = 3;
  }
  return opened;
}

extern "C" dirent* readdir(DIR* folder) {
  if (folder == unfinished && entriesLeft-- == 0) {
    errno = EIO;
    return nullptr;
  }
  return real<dirent* (*)(DIR*)>("readdir")(folder);
}
