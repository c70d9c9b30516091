#include "batch.h"

#include "fault.h"

#include <utility>

namespace pluvo::word_com {

namespace {

/// The name in the list of steps to undo.
constexpr const char16_t* kStepName = u"P.L.U.V.O.";
constexpr const wchar_t* kSecurity = L"AutomationSecurity";

/// Whether it could be done; it is done without else.
template <class Work>
bool tryTo(Work&& work) {
  try {
    std::forward<Work>(work)();
    return true;
  } catch (...) {
    return false;
  }
}

/// A setting that is not given back stays changed for the user.
template <class Work>
void giveBack(Work&& work) {
  constexpr int kAttempts = 3;
  for (int i = 0; i < kAttempts; ++i) {
    if (tryTo(work)) return;
  }
}

}  // namespace

ComUndoStep::ComUndoStep(const Object& application) {
  tryTo([&] {
    Object record = application.getObject(L"UndoRecord", L"UndoRecord");
    if (record.get(L"IsRecordingCustomRecord").toBoolean()) return;
    record.call(L"StartCustomRecord", Arguments().text(kStepName));
    record_ = std::move(record);
  });
}

ComUndoStep::~ComUndoStep() {
  if (record_) giveBack([&] { record_->call(L"EndCustomRecord"); });
}

ComSwitched::ComSwitched(Object owner, const wchar_t* property, bool value)
    : owner_(std::move(owner)), property_(property), value_(value) {
  tryTo([&] {
    isOther_ = owner_.get(property_).toBoolean() != value_;
    if (isOther_) owner_.put(property_, Arguments().boolean(value_));
  });
}

// Also where setting it may have failed: the old value does no harm.
ComSwitched::~ComSwitched() {
  if (isOther_) giveBack([&] { owner_.put(property_, Arguments().boolean(!value_)); });
}

ComSwitched::ComSwitched(Object owner, const wchar_t* property)
    : owner_(std::move(owner)), property_(property), value_(false) {
  isOther_ = tryTo([&] { value_ = !owner_.get(property_).toBoolean(); });
}

ComMacrosOff::ComMacrosOff(const Object& application) : application_(application) {
  constexpr std::int32_t kForceDisable = 3;
  try {
    const std::int32_t before = application_.get(kSecurity).toInteger();
    if (before == kForceDisable) return;
    application_.put(kSecurity, Arguments().integer(kForceDisable));
    before_ = before;
  } catch (const errors::Fault& fault) {
    if (fault.number != kNoSuchMember) throw;
    application_.session().log.line(u"macros of opened files cannot be kept from running here");
  }
}

ComMacrosOff::~ComMacrosOff() {
  if (before_) giveBack([&] { application_.put(kSecurity, Arguments().integer(*before_)); });
}

ComEdits::ComEdits(const Object& application, bool seen, std::shared_ptr<bool> hidden)
    : hidden_(std::move(hidden)) {
  tryTo([&] { smartCut_.emplace(application.getObject(L"Options", L"Options"), L"SmartCutPaste", false); });
  if (seen) return;
  screen_.emplace(application, L"ScreenUpdating", false);
  if (screen_->isOther()) *hidden_ = true;
}

ComEdits::~ComEdits() {
  if (screen_ && screen_->isOther()) *hidden_ = false;
}

}  // namespace pluvo::word_com
