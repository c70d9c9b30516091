#pragma once

#include "dispatch.h"
#include "word/word_processor.h"

#include <cstdint>
#include <memory>
#include <optional>

/// Settings of Word for a while. None of them is worth a fault: a pass goes on without.
namespace pluvo::word_com {

/// One step to undo, where Word has such (2010 and later). While a macro makes one this is part of that.
class ComUndoStep final : public word::Batch {
 public:
  explicit ComUndoStep(const Object& application);
  ComUndoStep(const ComUndoStep&) = delete;
  ComUndoStep& operator=(const ComUndoStep&) = delete;
  ~ComUndoStep() override;

 private:
  std::optional<Object> record_;
};

/// A property of Word's that is another for a while, and then as it was.
class ComSwitched final : public word::Batch {
 public:
  /// The property is looked at and set where it is not so already; its name is a literal.
  ComSwitched(Object owner, const wchar_t* property, bool value);
  /// It is as it is now when this goes, whatever is set meanwhile.
  ComSwitched(Object owner, const wchar_t* property);
  ComSwitched(const ComSwitched&) = delete;
  ComSwitched& operator=(const ComSwitched&) = delete;
  ~ComSwitched() override;

  bool isOther() const { return isOther_; }

 private:
  Object owner_;
  const wchar_t* property_;
  bool value_;
  bool isOther_ = false;
};

/// No macro of a file runs that is opened meanwhile. A Word without such a setting opens it all the same; one
/// that refuses it throws its Fault.
class ComMacrosOff final {
 public:
  explicit ComMacrosOff(const Object& application);
  ComMacrosOff(const ComMacrosOff&) = delete;
  ComMacrosOff& operator=(const ComMacrosOff&) = delete;
  ~ComMacrosOff();

 private:
  const Object& application_;
  std::optional<std::int32_t> before_;
};

/// Word removes no extra blank beside deleted text and, unless the edits are to be seen, does
/// not draw its windows.
class ComEdits final : public word::Batch {
 public:
  ComEdits(const Object& application, bool seen, std::shared_ptr<bool> hidden);
  ComEdits(const ComEdits&) = delete;
  ComEdits& operator=(const ComEdits&) = delete;
  ~ComEdits() override;

 private:
  /// Whether Word does not draw because of this.
  std::shared_ptr<bool> hidden_;
  std::optional<ComSwitched> screen_;
  std::optional<ComSwitched> smartCut_;
};

}  // namespace pluvo::word_com
