#include "word_stand_in/word_session.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace pluvo::word_com {
namespace {

using stand_in::Arguments;
using stand_in::WordSession;
using stand_in::World;
using Lines = std::vector<std::string>;

/// What was set, and of undo records.
Lines linesSet() {
  Lines set;
  for (const std::string& line : WordSession::lines()) {
    if (line.starts_with("put") || line.find("CustomRecord(") != line.npos) set.push_back(line);
  }
  std::erase(set, "get UndoRecord.IsRecordingCustomRecord()");
  return set;
}

/// A pass that throws.
void pass(const WordSession& session, bool seen) {
  const auto word = session.word();
  try {
    const auto step = word->beginUndoStep();
    const auto edits = word->beginEdits(seen);
    throw std::runtime_error("in the middle");
  } catch (const std::runtime_error&) {
  }
}

constexpr auto kStart = "call UndoRecord.StartCustomRecord(VT_BSTR \"P.L.U.V.O.\")";
constexpr auto kEnd = "call UndoRecord.EndCustomRecord()";
constexpr auto kKeepBlanks = "put Options.SmartCutPaste(VT_BOOL 0)";
constexpr auto kCutSmartly = "put Options.SmartCutPaste(VT_BOOL -1)";
constexpr auto kHide = "put Application.ScreenUpdating(VT_BOOL 0)";
constexpr auto kDraw = "put Application.ScreenUpdating(VT_BOOL -1)";

TEST(Batch, GivesEverythingBackAsItWas) {
  struct Case {
    const char* what;
    void (*prepare)(World&);
    bool seen;
    Lines set;
  };
  const Case cases[] = {
      {"as Word mostly is", [](World&) {}, false, {kStart, kKeepBlanks, kHide, kCutSmartly, kDraw, kEnd}},
      {"seen by the user", [](World&) {}, true, {kStart, kKeepBlanks, kCutSmartly, kEnd}},
      {"all is as wanted",
       [](World& world) { world.smartCutPaste = world.screenUpdating = false; },
       false,
       {kStart, kEnd}},
      {"a macro makes an undo record",
       [](World& world) { world.undoLevel = 1; },
       true,
       {kKeepBlanks, kCutSmartly}},
      {"the record cannot begin",
       [](World& world) { world.calls.refuse(u"call UndoRecord.StartCustomRecord", 4605); },
       true,
       {kStart, kKeepBlanks, kCutSmartly}},
      {"it cannot end",
       [](World& world) {
         world.calls.on(u"call UndoRecord.EndCustomRecord",
                        [](const Arguments&, VARIANT&, EXCEPINFO&) { return E_FAIL; });
       },
       false,
       {kStart, kKeepBlanks, kHide, kCutSmartly, kDraw, kEnd, kEnd, kEnd}},
      {"the screen is set, and yet refused",
       [](World& world) {
         world.calls.on(u"put Application.ScreenUpdating", [&](const Arguments& given, VARIANT&, EXCEPINFO&) {
           world.screenUpdating = given.flag(0);
           return world.screenUpdating ? S_OK : E_FAIL;
         });
       },
       false,
       {kStart, kKeepBlanks, kHide, kCutSmartly, kDraw, kEnd}},
      {"a Word that has nothing of it",
       [](World& world) {
         for (const auto* member : {u"UndoRecord", u"Options", u"ScreenUpdating"})
           world.calls.lack(std::u16string(u"Application.") + member);
       },
       false,
       {}},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.what);
    const WordSession session;
    each.prepare(WordSession::world());
    pass(session, each.seen);
    EXPECT_EQ(linesSet(), each.set);
  }
}

TEST(Batch, IsDrawnBehindQuestions) {
  const WordSession session;
  const auto word = session.word();
  EXPECT_EQ(word->showEdits(), nullptr) << "nothing is hidden";
  auto edits = word->beginEdits(false);
  word->showEdits();
  EXPECT_EQ(linesSet(), (Lines{kKeepBlanks, kHide, kDraw, kHide}));
  edits.reset();
  EXPECT_EQ(word->showEdits(), nullptr) << "nothing is hidden any more";
}

}  // namespace
}  // namespace pluvo::word_com
