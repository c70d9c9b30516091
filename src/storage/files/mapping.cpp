#include "mapping.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <mutex>
#include <system_error>

namespace pluvo::files {

namespace {

/// The mappings in use, where a signal handler can read them: no locks, no allocation.
struct Slot {
  std::atomic<bool> taken = false;
  std::atomic<std::uintptr_t> from = 0;
  std::atomic<std::uintptr_t> to = 0;
  std::atomic<bool> vanished = false;
};
constexpr std::size_t kMostMappings = 1024;
std::array<Slot, kMostMappings> slots;
struct sigaction previousAction;

std::uintptr_t pageSize() {
  static const auto size = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  return size;
}

[[noreturn]] void failWith(int error, const char* call) {
  throw std::system_error(error, std::generic_category(), call);
}

Slot* slotOf(std::uintptr_t address) {
  for (Slot& slot : slots)
    if (slot.from <= address && address < slot.to) return &slot;
  return nullptr;
}

/// Gives the signal its usual effect.
void passOn(int number, siginfo_t* info, void* context) {
  if ((previousAction.sa_flags & SA_SIGINFO) != 0) return previousAction.sa_sigaction(number, info, context);
  if (previousAction.sa_handler != SIG_DFL && previousAction.sa_handler != SIG_IGN)
    return previousAction.sa_handler(number);
  signal(number, SIG_DFL);  // the faulting instruction runs again and ends the program
}

void onBusError(int number, siginfo_t* info, void* context) {
  const int savedError = errno;
  const auto address = reinterpret_cast<std::uintptr_t>(info->si_addr);
  Slot* slot = slotOf(address);
  void* page = static_cast<std::uint8_t*>(info->si_addr) - address % pageSize();
  if (slot != nullptr &&
      mmap(page, pageSize(), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0) == page)
    slot->vanished = true;
  else
    passOn(number, info, context);
  errno = savedError;
}

void watchForBusErrors() {
  static std::once_flag once;
  std::call_once(once, [] {
    pageSize();
    struct sigaction action = {};
    action.sa_sigaction = onBusError;
    action.sa_flags = SA_SIGINFO;
    sigemptyset(&action.sa_mask);
    if (sigaction(SIGBUS, &action, &previousAction) != 0) failWith(errno, "sigaction");
  });
}

Slot& takeSlot() {
  for (Slot& slot : slots)
    if (!slot.taken.exchange(true)) return slot;
  failWith(ENOMEM, "mmap");
}

class Mapping final : public base::MappedFile {
 public:
  Mapping(int descriptor, std::size_t size)
      : size_(size), length_((size / pageSize() + 1) * pageSize()), slot_(takeSlot()) {
    file_ = fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    if (file_ < 0 || fstat(file_, &mapped_) != 0) fail();
    // Memory for one byte more than the file, then the file's whole pages over it. The rest of the file is
    // copied. The byte after it must not lie in a page of the file. A file cut off and restored would give
    // that page back without it.
    void* start = mmap(nullptr, length_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (start == MAP_FAILED) fail();
    start_ = static_cast<std::uint8_t*>(start);
    const std::size_t whole = mappedLength();
    if (whole > 0 && mmap(start_, whole, PROT_READ, MAP_PRIVATE | MAP_FIXED, descriptor, 0) == MAP_FAILED)
      fail();
    slot_.vanished = !copyRest(descriptor);
    slot_.from = reinterpret_cast<std::uintptr_t>(start_);
    slot_.to = reinterpret_cast<std::uintptr_t>(start_) + length_;
    start_[size] = base::Bytes::kBehind;
  }
  Mapping(const Mapping&) = delete;
  Mapping& operator=(const Mapping&) = delete;
  ~Mapping() override {
    slot_.to = 0;
    slot_.from = 0;
    munmap(start_, length_);
    close(file_);
    slot_.taken = false;
  }

  base::ByteSpan view() const { return {start_, size_}; }
  bool vanished() const override { return slot_.vanished; }
  bool overwritten() const override {
    struct stat now = {};
    if (fstat(file_, &now) != 0) return false;
    return now.st_size != mapped_.st_size || now.st_mtim.tv_sec != mapped_.st_mtim.tv_sec ||
           now.st_mtim.tv_nsec != mapped_.st_mtim.tv_nsec;
  }
  void release() const override { madvise(start_, mappedLength(), MADV_DONTNEED); }

 private:
  std::size_t mappedLength() const { return length_ - pageSize(); }

  /// False where the file ends before it should.
  bool copyRest(int descriptor) {
    for (std::size_t at = mappedLength(); at < size_;) {
      const ssize_t count = pread(descriptor, start_ + at, size_ - at, static_cast<off_t>(at));
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) fail();
      if (count == 0) return false;
      at += static_cast<std::size_t>(count);
    }
    return true;
  }

  [[noreturn]] void fail() {
    const int error = errno;
    if (start_ != nullptr) munmap(start_, length_);
    if (file_ >= 0) close(file_);
    slot_.taken = false;
    failWith(error, "mmap");
  }

  std::size_t size_;
  std::size_t length_;
  Slot& slot_;
  std::uint8_t* start_ = nullptr;
  int file_ = -1;
  struct stat mapped_ = {};
};

}  // namespace

base::Bytes mapFile(int descriptor, std::size_t size) {
  watchForBusErrors();
  auto mapping = std::make_shared<const Mapping>(descriptor, size);
  const base::ByteSpan view = mapping->view();
  return {view, mapping, mapping};
}

}  // namespace pluvo::files
