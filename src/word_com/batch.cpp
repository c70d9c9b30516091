#include "batch.h"

#include <utility>

namespace pluvo::word_com {

namespace {

/// What the list of steps to undo shows.
constexpr const char16_t* kStepName = u"P.L.U.V.O.";

template <class Work>
void tryTo(Work&& work) {
  try {
    std::forward<Work>(work)();
  } catch (...) {  // the pass goes on without
  }
}

void setUpdating(const Object& application, bool value) {
  application.put(L"ScreenUpdating", Arguments().boolean(value));
}

}  // namespace

ComBatch::ComBatch(const Object& application, bool seen) : application_(application) {
  tryTo([&] {
    Object record = application_.getObject(L"UndoRecord", L"UndoRecord");
    record.call(L"StartCustomRecord", Arguments().text(kStepName));
    undoRecord_ = std::move(record);
  });
  if (seen) return;
  tryTo([&] {
    const bool was = application_.get(L"ScreenUpdating").toBoolean();
    setUpdating(application_, false);
    wasUpdating_ = was;
  });
}

ComBatch::~ComBatch() {
  if (undoRecord_) tryTo([&] { undoRecord_->call(L"EndCustomRecord"); });
  if (wasUpdating_) tryTo([&] { setUpdating(application_, *wasUpdating_); });
}

}  // namespace pluvo::word_com
