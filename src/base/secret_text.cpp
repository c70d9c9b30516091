#include "base/secret_text.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/resource.h>

#include <cstring>
#endif

#include <mutex>

namespace pluvo::base {

namespace {

/// How crashes are told of, set aside while there are secrets.
class Crashes {
 public:
  void keepImages(bool keep) {
    const std::lock_guard guard(mutex_);
    if (keep ? --secrets_ == 0 : secrets_++ == 0) set(keep);
  }

 private:
#ifndef _WIN32
  /// No image fits into one byte; of 0 bytes the system still hands images to a program that takes them.
  void set(bool keep) {
    if (!keep && getrlimit(RLIMIT_CORE, &before_) != 0) before_ = {};
    rlimit limit = before_;
    if (!keep) limit.rlim_cur = limit.rlim_max == 0 ? 0 : 1;
    setrlimit(RLIMIT_CORE, &limit);
  }
  rlimit before_ = {};
#else
  /// Windows asks its user about the contents of a crash report.
  void set(bool /*keep*/) {}
#endif

  std::mutex mutex_;
  std::size_t secrets_ = 0;
};

Crashes& crashes() {
  static Crashes only;
  return only;
}

}  // namespace

NoMemoryImage::NoMemoryImage() { crashes().keepImages(false); }

NoMemoryImage::~NoMemoryImage() { crashes().keepImages(true); }

void wipe(void* memory, std::size_t size) {
  if (size == 0) return;
#ifdef _WIN32
  SecureZeroMemory(memory, size);
#else
  explicit_bzero(memory, size);
#endif
}

}  // namespace pluvo::base
