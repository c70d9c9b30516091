#include "scripted_word.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace pluvo::word_com {
namespace {

/// A Word with undo records and the settings that edits depend on.
class WordToEdit : public ScriptedWord {
 public:
  WordToEdit() {
    record->keeps(L"IsRecordingCustomRecord", VARIANT_FALSE);
    for (const wchar_t* method : {L"StartCustomRecord", L"EndCustomRecord"}) record->accepts(method);
    options->keeps(L"SmartCutPaste", VARIANT_TRUE);
    application->keeps(L"ScreenUpdating", VARIANT_TRUE);
    application->answersObject(L"UndoRecord", [this] { return record.Get(); });
    application->answersObject(L"Options", [this] { return options.Get(); });
  }
  void refuses(ScriptedObject& object, const wchar_t* member) {
    object.on(member, [](auto&, VARIANT&, EXCEPINFO&) { return E_FAIL; });
  }
  /// What is set while a pass throws, and then again.
  CallLog callsOfPass(bool seen) {
    const auto word = connected();
    try {
      const auto step = word->beginUndoStep();
      const auto edits = word->beginEdits(seen);
      throw std::runtime_error("in the middle");
    } catch (const std::runtime_error&) {
    }
    CallLog set;
    for (const std::string& call : *log) {
      if (call.find(" = ") != std::string::npos || call.find("CustomRecord(") != std::string::npos)
        set.push_back(call);
    }
    return set;
  }

  Microsoft::WRL::ComPtr<ScriptedObject> record = ScriptedObject::make("UndoRecord", log);
  Microsoft::WRL::ComPtr<ScriptedObject> options = ScriptedObject::make("Options", log);
};

const std::string kStart = "UndoRecord.StartCustomRecord(BSTR P.L.U.V.O.)";
const std::string kEnd = "UndoRecord.EndCustomRecord()";
const std::string kCut = "Options.SmartCutPaste = BOOL ";
const std::string kDraw = "Application.ScreenUpdating = BOOL ";

TEST(Batch, GivesEverythingBackAsItWas) {
  struct Case {
    const char* what;
    void (*prepare)(WordToEdit&);
    bool seen;
    CallLog set;
  };
  const Case cases[] = {
      {"as Word mostly is",
       [](WordToEdit&) {},
       false,
       {kStart, kCut + "0", kDraw + "0", kCut + "-1", kDraw + "-1", kEnd}},
      {"seen by the user", [](WordToEdit&) {}, true, {kStart, kCut + "0", kCut + "-1", kEnd}},
      {"all is as wanted",
       [](WordToEdit& word) {
         word.options->keeps(L"SmartCutPaste", VARIANT_FALSE);
         word.application->keeps(L"ScreenUpdating", VARIANT_FALSE);
       },
       false,
       {kStart, kEnd}},
      {"a macro makes an undo record",
       [](WordToEdit& word) { word.record->keeps(L"IsRecordingCustomRecord", VARIANT_TRUE); },
       true,
       {kCut + "0", kCut + "-1"}},
      {"the record cannot begin",
       [](WordToEdit& word) { word.refuses(*word.record.Get(), L"StartCustomRecord"); },
       true,
       {kStart, kCut + "0", kCut + "-1"}},
      {"it cannot end",
       [](WordToEdit& word) { word.refuses(*word.record.Get(), L"EndCustomRecord"); },
       false,
       {kStart, kCut + "0", kDraw + "0", kCut + "-1", kDraw + "-1", kEnd, kEnd, kEnd}},
      {"a Word that has nothing of it",
       [](WordToEdit& word) {
         word.application->answersObject(L"UndoRecord", [] { return nullptr; });
         word.application->answersObject(L"Options", [] { return nullptr; });
         word.refuses(*word.application.Get(), L"ScreenUpdating");
       },
       false,
       {}},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.what);
    WordToEdit word;
    each.prepare(word);
    EXPECT_EQ(word.callsOfPass(each.seen), each.set);
  }
}

/// Set, and yet refused: what the screen was is given back all the same.
TEST(Batch, GivesTheScreenBackThatCouldNotBeSet) {
  WordToEdit word;
  auto drawn = std::make_shared<VARIANT_BOOL>(VARIANT_TRUE);
  word.application->on(L"ScreenUpdating", [drawn](auto& arguments, VARIANT& result, EXCEPINFO&) {
    result.vt = VT_BOOL;
    result.boolVal = *drawn;
    if (arguments.empty()) return S_OK;
    *drawn = arguments[0].boolVal;
    return *drawn == VARIANT_TRUE ? S_OK : E_FAIL;
  });
  word.callsOfPass(false);
  EXPECT_EQ(*drawn, VARIANT_TRUE);
}

TEST(Batch, IsDrawnBehindQuestions) {
  WordToEdit word;
  const auto application = word.connected();
  EXPECT_EQ(application->showEdits(), nullptr) << "nothing is hidden";
  const auto edits = application->beginEdits(false);
  application->showEdits();
  const CallLog set = {kDraw + "0", kDraw + "-1", kDraw + "0"};
  CallLog drawn;
  for (const std::string& call : *word.log) {
    if (call.starts_with(kDraw)) drawn.push_back(call);
  }
  EXPECT_EQ(drawn, set);
}

}  // namespace
}  // namespace pluvo::word_com
