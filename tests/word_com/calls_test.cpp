#include "errors/fault.h"
#include "scripted_word.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

namespace pluvo::word_com {
namespace {

/// The type of every argument is part of what a call is.
TEST(Calls, PassTheTypesThatWordDeclares) {
  const std::string fifteen = [] {
    std::string list = "missing";
    for (int i = 1; i < 15; ++i) list += ", missing";
    return list;
  }();
  std::int16_t narrow = 7;
  struct Case {
    std::function<void(word::Range&)> call;
    std::string logged;
  };
  const Case cases[] = {
      {[](word::Range& range) { range.Start(70000); }, "Range.Start = I4 70000"},
      {[](word::Range& range) { range.SetRange(1, 2); }, "Range.SetRange(I4 1, I4 2)"},
      {[](word::Range& range) { range.MoveEnd(word::wdCharacter, 3); }, "Range.MoveEnd(I4 1, I4 3)"},
      {[&](word::Range& range) { range.MoveEnd(word::wdWord, &narrow); }, "Range.MoveEnd(I4 2, I2& 7)"},
      {[](word::Range& range) { range.Delete(); }, "Range.Delete(missing, missing)"},
      {[](word::Range& range) { range.HighlightColorIndex(7); }, "Range.HighlightColorIndex = I4 7"},
      {[](word::Range& range) { range.InsertAfter(std::u16string(u"a\0b", 3)); },
       "Range.InsertAfter(BSTR a?b)"},
      {[](word::Range& range) { range.InsertBefore(u""); }, "Range.InsertBefore(BSTR )"},
      {[](word::Range& range) { range.Select(); }, "Range.Select()"},
      {[](word::Range& range) { range.Find()->MatchCase(true); }, "Find.MatchCase = BOOL -1"},
      {[](word::Range& range) { range.Find()->Forward(false); }, "Find.Forward = BOOL 0"},
      {[](word::Range& range) { range.Find()->Wrap(word::wdFindStop); }, "Find.Wrap = I4 0"},
      {[](word::Range& range) {
         const auto find = range.Find();
         find->Text(u"x");
         find->Execute();
       },
       "Find.Execute(" + fifteen + ")"},
  };
  for (const Case& each : cases) {
    ScriptedWord word;
    const auto range = word.rangeOver(4, 9);
    EXPECT_EQ(word.log->back(), "Document.Range(I4 4, I4 9)");
    each.call(*range);
    EXPECT_THAT(*word.log, testing::Contains(each.logged)) << testing::PrintToString(*word.log);
  }
}

TEST(Calls, OfDocumentsToo) {
  ScriptedWord word;
  for (const wchar_t* method : {L"Protect", L"Unprotect", L"Close", L"WritePassword"})
    word.document->accepts(method);
  const auto options = ScriptedObject::make("Options", word.log);
  options->answersText(L"DefaultFilePath", [] { return L"C:\\Templates"; });
  word.application->answersObject(L"Options", [&] { return options.Get(); });
  const auto documents = ScriptedObject::make("Documents", word.log);
  documents->answersObject(L"Open", [&] { return word.document.Get(); });
  word.application->answersObject(L"Documents", [&] { return documents.Get(); });

  const auto application = word.connected();
  const auto document = application->Documents()->Open(u"C:\\a.doc");
  EXPECT_TRUE(word.log->back().starts_with("Documents.Open(BSTR C:\\a.doc, missing, missing"))
      << word.log->back();
  document->WritePassword(u"");
  EXPECT_EQ(word.log->back(), "Document.WritePassword = BSTR ");
  document->Protect(word::wdAllowOnlyFormFields, u"secret");
  EXPECT_EQ(word.log->back(), "Document.Protect(I4 2, missing, BSTR secret, missing, missing)");
  document->Close(true);
  EXPECT_EQ(word.log->back(), "Document.Close(BOOL -1, missing, missing)");
  EXPECT_EQ(application->Options()->DefaultFilePath(word::wdUserTemplatesPath), u"C:\\Templates");
  EXPECT_EQ(word.log->back(), "Options.DefaultFilePath(I4 2)");
}

TEST(Calls, GiveWordOneMarkForALineEnd) {
  ScriptedWord word;
  std::wstring given;
  word.rangeObject->on(L"InsertAfter", [&](auto& arguments, VARIANT&, EXCEPINFO&) {
    given.assign(arguments[0].bstrVal, SysStringLen(arguments[0].bstrVal));
    return S_OK;
  });
  word.rangeOver(0, 0)->InsertAfter(u"a\r\nb\nc\r\rd");
  EXPECT_EQ(given, L"a\rb\rc\r\rd");
}

TEST(Calls, LeaveWhatAnEmptyRangeDoesNotHave) {
  ScriptedWord word;
  const auto range = word.rangeOver(3, 3);
  EXPECT_EQ(range->Delete(), 0);
  EXPECT_EQ(range->Characters().Count(), 0);
  EXPECT_TRUE(word.calls("Range.Delete").empty());
}

TEST(Calls, AskForAnIdOnce) {
  ScriptedWord word;
  const auto range = word.rangeOver(0, 0);
  range->SetRange(1, 1);
  const int asked = word.rangeObject->idQuestions;
  range->SetRange(2, 2);
  EXPECT_EQ(word.rangeObject->idQuestions, asked);
}

TEST(Calls, ReadWhatWordAnswersInOtherTypes) {
  ScriptedWord word;
  const auto range = word.rangeOver(0, 0);
  word.rangeObject->on(L"Start", [](auto&, VARIANT& result, EXCEPINFO&) {
    result.vt = VT_I2;
    result.iVal = 12;
    return S_OK;
  });
  EXPECT_EQ(range->Start(), 12);
  word.rangeObject->on(L"Text", [](auto&, VARIANT& result, EXCEPINFO&) {
    result.vt = VT_NULL;
    return S_OK;
  });
  EXPECT_EQ(range->Text(), u"");
}

}  // namespace
}  // namespace pluvo::word_com
