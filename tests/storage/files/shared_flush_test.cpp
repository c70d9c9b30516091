#include "files/shared_flush.h"

#include "failing_file_system.h"
#include "scratch.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>
#include <vector>

namespace pluvo::files {
namespace {

class CountedFlushes : public FailingFileSystem {
 public:
  void flush(Handle) override {
    ++flushes;
    if (meanwhile) meanwhile();
  }

  int flushes = 0;
  std::function<void()> meanwhile;
};

TEST(SharedFlush, ServesAllWhoAskedBeforeItBegan) {
  CountedFlushes system;
  SharedFlush shared;
  const std::uint64_t first = shared.ask();
  const std::uint64_t second = shared.ask();
  std::uint64_t tooLate = 0;
  system.meanwhile = [&] { tooLate = shared.ask(); };
  shared.flush(system, 0, first);
  shared.flush(system, 0, second);
  EXPECT_EQ(system.flushes, 1);
  shared.flush(system, 0, tooLate);
  EXPECT_EQ(system.flushes, 2);
}

TEST(SharedFlush, TellsALossToAllWhomItMayConcern) {
  CountedFlushes system;
  SharedFlush shared;
  const std::uint64_t before = shared.ask();
  shared.flush(system, 0, before);
  const std::uint64_t asked = shared.ask();
  system.meanwhile = [] { throw std::system_error(EIO, std::generic_category(), "test"); };
  EXPECT_THROW(shared.flush(system, 0, asked), std::system_error);
  system.meanwhile = nullptr;
  EXPECT_THROW(shared.flush(system, 0, asked), std::system_error);
  EXPECT_THROW(shared.flush(system, 0, shared.ask()), std::system_error);
  EXPECT_EQ(system.flushes, 2);
  EXPECT_NO_THROW(shared.flush(system, 0, before));
}

TEST(SharedFlush, ManyThreadsWaitForFewerFlushes) {
  CountedFlushes system;
  SharedFlush shared;
  constexpr int kThreads = 8;
  std::atomic<int> asked = 0;
  system.meanwhile = [&] {
    while (asked < kThreads) std::this_thread::yield();
  };
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&] {
      const std::uint64_t mine = shared.ask();
      ++asked;
      shared.flush(system, 0, mine);
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_LE(system.flushes, 2);
}

TEST(FolderFlushes, AreThoseOfTheFolderNotOfTheHandle) {
  const Scratch scratch;
  FileSystem& system = machineFileSystem();
  const OpenFolder one(system, scratch.path(""));
  const OpenFolder again(system, scratch.path("."));
  const OpenFolder above(system, scratch.path(".."));
  FolderFlushes flushes;
  const auto held = flushes.of(system, one);
  EXPECT_EQ(flushes.of(system, again), held);
  EXPECT_NE(flushes.of(system, above), held);
}

TEST(MachineFileSystem, DoesByItselfWhatNoThreadCanBeHadFor) {
  pthread_attr_t before;
  ASSERT_EQ(pthread_getattr_default_np(&before), 0);
  pthread_attr_t refused;
  pthread_attr_init(&refused);
  pthread_attr_setstacksize(&refused, std::size_t{1} << 46U);  // more than there is
  ASSERT_EQ(pthread_setattr_default_np(&refused), 0);
  bool isDone = false;
  std::future<void> work = machineFileSystem().begin([&] { isDone = true; });
  pthread_setattr_default_np(&before);
  EXPECT_EQ(work.wait_for(std::chrono::seconds(0)), std::future_status::deferred);
  work.get();
  EXPECT_TRUE(isDone);
}

}  // namespace
}  // namespace pluvo::files
