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
  /// Keeps the heap out of crash reports. Systems without these calls (before Windows Vista) make none by
  /// themselves.
  void set(bool keep) {
    using Get = HRESULT(WINAPI*)(HANDLE, DWORD*);
    using Set = HRESULT(WINAPI*)(DWORD);
    constexpr DWORD kNoHeap = 1;  // WER_FAULT_REPORTING_FLAG_NOHEAP
    HMODULE system = GetModuleHandleW(L"kernel32.dll");
    const auto get = reinterpret_cast<Get>(reinterpret_cast<void*>(GetProcAddress(system, "WerGetFlags")));
    const auto put = reinterpret_cast<Set>(reinterpret_cast<void*>(GetProcAddress(system, "WerSetFlags")));
    if (get == nullptr || put == nullptr) return;
    if (!keep && get(GetCurrentProcess(), &before_) != S_OK) before_ = 0;
    put(keep ? before_ : before_ | kNoHeap);
  }
  DWORD before_ = 0;
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
