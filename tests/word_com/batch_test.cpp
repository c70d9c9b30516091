#include "scripted_word.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace pluvo::word_com {
namespace {

/// Throws in a batch; what the batch called.
CallLog callsOfBatch(ScriptedWord& word, bool seen) {
  const auto application = word.connected();
  try {
    const auto batch = application->beginBatch(seen);
    throw std::runtime_error("in the middle");
  } catch (const std::runtime_error&) {
    return *word.log;
  }
}

Microsoft::WRL::ComPtr<ScriptedObject> giveUndoRecord(ScriptedWord& word) {
  auto record = ScriptedObject::make("UndoRecord", word.log);
  record->accepts(L"StartCustomRecord");
  record->accepts(L"EndCustomRecord");
  word.application->answersObject(L"UndoRecord", [record] { return record.Get(); });
  return record;
}

TEST(Batch, IsOneStepAndGivesTheScreenBack) {
  ScriptedWord word;
  giveUndoRecord(word);
  word.application->keeps(L"ScreenUpdating", VARIANT_TRUE);
  const CallLog expected = {
      "Application.UndoRecord",       "UndoRecord.StartCustomRecord(BSTR P.L.U.V.O.)",
      "Application.ScreenUpdating",   "Application.ScreenUpdating = BOOL 0",
      "UndoRecord.EndCustomRecord()", "Application.ScreenUpdating = BOOL -1",
  };
  EXPECT_EQ(callsOfBatch(word, false), expected);
}

TEST(Batch, LeavesTheScreenAsItWas) {
  ScriptedWord word;
  word.application->keeps(L"ScreenUpdating", VARIANT_FALSE);  // and there are no undo records in this Word
  EXPECT_EQ(callsOfBatch(word, false).back(), "Application.ScreenUpdating = BOOL 0");
  ScriptedWord watched;
  watched.application->keeps(L"ScreenUpdating", VARIANT_TRUE);
  EXPECT_TRUE(callsOfBatch(watched, true).empty());
}

TEST(Batch, EndsNothingThatDidNotBegin) {
  ScriptedWord word;
  const auto record = giveUndoRecord(word);
  record->on(L"StartCustomRecord", [](auto&, VARIANT&, EXCEPINFO&) { return E_FAIL; });
  callsOfBatch(word, true);
  EXPECT_TRUE(word.calls("UndoRecord.EndCustomRecord").empty());
}

}  // namespace
}  // namespace pluvo::word_com
