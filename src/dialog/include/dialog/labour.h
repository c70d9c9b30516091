#pragma once

#include <exception>
#include <functional>

namespace pluvo::dialog {

/// Does long work. This one does it at once, as inside Word, where everything is on Word's thread. A program
/// with windows of its own does it in another thread.
class Labour {
 public:
  /// Is given what the work threw, if anything.
  using Then = std::function<void(const std::exception_ptr& thrown)>;

  virtual ~Labour() = default;
  /// Does the work, then the continuation in the caller's thread; may return before either.
  virtual void run(const std::function<void()>& work, const Then& then) {
    std::exception_ptr thrown;
    try {
      work();
    } catch (...) {
      thrown = std::current_exception();
    }
    then(thrown);
  }
  /// For work: has the thread of forms and boxes do this, and returns when it has.
  virtual void show(const std::function<void()>& doing) { doing(); }
  /// Whether work is in another thread than the dialog.
  virtual bool isElsewhere() const { return false; }
};

}  // namespace pluvo::dialog
