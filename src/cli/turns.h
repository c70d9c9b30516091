#pragma once

#include <condition_variable>
#include <mutex>

namespace pluvo::cli {

/// So many documents are worked on at the same time; more may wait for the disk.
class Turns {
 public:
  explicit Turns(int jobs) : free_(jobs) {}

  /// Had while a document is worked on, and given up at the latest when this goes.
  class Turn {
   public:
    explicit Turn(Turns& turns) : turns_(&turns) { turns.take(); }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    ~Turn() { giveUp(); }

    void giveUp() {
      if (turns_ != nullptr) turns_->giveUp();
      turns_ = nullptr;
    }

   private:
    Turns* turns_;
  };

 private:
  void take() {
    std::unique_lock lock(mutex_);
    givenUp_.wait(lock, [&] { return free_ > 0; });
    --free_;
  }
  void giveUp() {
    {
      const std::lock_guard guard(mutex_);
      ++free_;
    }
    givenUp_.notify_one();
  }

  std::mutex mutex_;
  std::condition_variable givenUp_;
  int free_;
};

}  // namespace pluvo::cli
