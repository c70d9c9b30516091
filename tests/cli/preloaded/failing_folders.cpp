// Loaded before the program, it fails calls on folders as a bad disk does. Those named "unopened" cannot be
// opened. Reading those named "unfinished" ends after their third entry, and "unnamed" files get no name. In
// folders named "exchanged" somebody puts a link to "secret" in the place of "file.txt" once they were read.

#include <dirent.h>
#include <dlfcn.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <string_view>

namespace {

DIR* unfinished = nullptr;
int entriesLeft = 0;
DIR* exchanged = nullptr;
std::string pathOfExchanged;

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
  if (std::string_view(path).find("exchanged") != std::string_view::npos) {
    exchanged = opened;
    pathOfExchanged = path;
  }
  return opened;
}

extern "C" dirent* readdir(DIR* folder) {
  if (folder == unfinished && entriesLeft-- == 0) {
    errno = EIO;
    return nullptr;
  }
  dirent* const entry = real<dirent* (*)(DIR*)>("readdir")(folder);
  if (entry == nullptr && folder == exchanged) {
    const std::string file = pathOfExchanged + "/file.txt";
    if (::unlink(file.c_str()) == 0) (void)!::symlink("../../secret", file.c_str());
  }
  return entry;
}

extern "C" int rename(const char* from, const char* to) {
  if (std::string_view(to).find("unnamed") == std::string_view::npos)
    return real<int (*)(const char*, const char*)>("rename")(from, to);
  errno = EIO;
  return -1;
}
