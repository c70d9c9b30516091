#include "errors/fault.h"
#include "word_stand_in/word_session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace pluvo::word_com {
namespace {

using stand_in::Arguments;
using stand_in::WordSession;

/// A Word with a document, a file that is not open, and a range with its find.
struct Reached {
  WordSession session;
  std::shared_ptr<stand_in::OpenDocument> open = WordSession::document(u"One two. Three four.");
  std::shared_ptr<word::Application> word = session.word();
  std::shared_ptr<word::Document> document = word->ActiveDocument();
  std::shared_ptr<word::Range> range = document->Range(4, 9);
  std::shared_ptr<word::Find> find = range->Find();
};

std::string missing(int count) {
  std::string list = "missing";
  for (int i = 1; i < count; ++i) list += ", missing";
  return list;
}

/// The type of every argument is part of a call. Word's own VARIANT parameters are 32-bit integers or, given
/// by reference, 16-bit ones. Truth is -1 and 0; an argument left out is missing.
TEST(Calls, HaveTheTypesThatWordDeclares) {
  std::int16_t narrow = 7;
  struct Case {
    std::function<void(Reached&)> call;
    std::string logged;
  };
  const Case cases[] = {
      {[](Reached& r) { r.document->Range(2, 3); }, "call Document.Range(VT_I4 2, VT_I4 3)"},
      {[](Reached& r) { r.range->Start(8); }, "put Range.Start(VT_I4 8)"},
      {[](Reached& r) { r.range->End(8); }, "put Range.End(VT_I4 8)"},
      {[](Reached& r) { r.range->SetRange(1, 2); }, "call Range.SetRange(VT_I4 1, VT_I4 2)"},
      {[](Reached& r) { r.range->Text(u"a\r\nb"); }, "put Range.Text(VT_BSTR \"a<13>b\")"},
      {[](Reached& r) { r.range->MoveStart(word::wdSentence, -1); },
       "call Range.MoveStart(VT_I4 3, VT_I4 -1)"},
      {[](Reached& r) { r.range->MoveEnd(word::wdCharacter, 3); }, "call Range.MoveEnd(VT_I4 1, VT_I4 3)"},
      {[&](Reached& r) { r.range->MoveEnd(word::wdWord, &narrow); },
       "call Range.MoveEnd(VT_I4 2, VT_BYREF|VT_I2 7)"},
      {[](Reached& r) { r.range->Delete(); }, "call Range.Delete(missing, missing)"},
      {[](Reached& r) { r.range->HighlightColorIndex(7); }, "put Range.HighlightColorIndex(VT_I4 7)"},
      {[](Reached& r) { r.range->InsertAfter(std::u16string(u"a\0b\r\nc\nd\r\re", 11)); },
       "call Range.InsertAfter(VT_BSTR \"a<0>b<13>c<13>d<13><13>e\")"},
      {[](Reached& r) { r.range->InsertBefore(u"a\nb"); }, "call Range.InsertBefore(VT_BSTR \"a<13>b\")"},
      {[](Reached& r) { r.word->Selection()->SetRange(1, 2); }, "call Selection.SetRange(VT_I4 1, VT_I4 2)"},
      {[](Reached& r) { r.find->MatchCase(true); }, "put Find.MatchCase(VT_BOOL -1)"},
      {[](Reached& r) { r.find->Forward(false); }, "put Find.Forward(VT_BOOL 0)"},
      {[](Reached& r) { r.find->MatchWildcards(false); }, "put Find.MatchWildcards(VT_BOOL 0)"},
      {[](Reached& r) { r.find->MatchSoundsLike(false); }, "put Find.MatchSoundsLike(VT_BOOL 0)"},
      {[](Reached& r) { r.find->MatchAllWordForms(false); }, "put Find.MatchAllWordForms(VT_BOOL 0)"},
      {[](Reached& r) { r.find->Wrap(word::wdFindStop); }, "put Find.Wrap(VT_I4 0)"},
      {[](Reached& r) { r.find->Execute(); }, "call Find.Execute(" + missing(15) + ")"},
      {[](Reached& r) { r.word->Documents()->Open(u"C:\\a.doc"); },
       "call Documents.Open(VT_BSTR \"C:\\a.doc\", " + missing(15) + ")"},
      {[](Reached& r) { r.word->Documents()->Item(1); }, "call Documents.Item(VT_I4 1)"},
      {[](Reached& r) { r.document->WritePassword(u""); }, "put Document.WritePassword(VT_BSTR \"\")"},
      {[](Reached& r) { r.document->Protect(word::wdAllowOnlyFormFields, u"key"); },
       "call Document.Protect(VT_I4 2, missing, VT_BSTR \"key\", missing, missing)"},
      {[](Reached& r) {
         r.open->file.protection = word::wdAllowOnlyFormFields;
         r.document->Unprotect(u"");
       },
       "call Document.Unprotect(VT_BSTR \"\")"},
      {[](Reached& r) { r.document->StoryRanges(word::wdMainTextStory); }, "call StoryRanges.Item(VT_I4 1)"},
      {[](Reached& r) { EXPECT_EQ(r.range->StoryType(), word::wdMainTextStory); }, "get Range.StoryType()"},
      {[](Reached& r) { EXPECT_EQ(r.range->NextStoryRange(), nullptr); }, "get Range.NextStoryRange()"},
      {[](Reached& r) { r.document->Close(true); }, "call Document.Close(VT_BOOL -1, missing, missing)"},
      {[](Reached& r) { r.document->ActiveWindow()->View()->ShowFieldCodes(true); },
       "put View.ShowFieldCodes(VT_BOOL -1)"},
      {[](Reached& r) { r.word->Options()->DefaultFilePath(word::wdUserTemplatesPath); },
       "get Options.DefaultFilePath(VT_I4 2)"},
  };
  for (const Case& each : cases) {
    Reached reached;
    WordSession::world().fileAt(u"C:\\a.doc").text = u"a";
    WordSession::calls().clear();
    each.call(reached);
    EXPECT_THAT(WordSession::lines(), testing::Contains(each.logged)) << WordSession::log();
  }
}

TEST(Calls, LeaveWhatAnEmptyRangeDoesNotHave) {
  const Reached reached;
  reached.range->SetRange(3, 3);
  EXPECT_EQ(reached.range->Delete(), 0);
  EXPECT_EQ(reached.range->Characters().Count(), 0);
  EXPECT_EQ(reached.open->allText(), u"One two. Three four.\r");
}

TEST(Calls, AskForAnIdOnce) {
  const Reached reached;
  reached.range->SetRange(1, 1);
  const std::int32_t asked = WordSession::calls().idQuestions;
  reached.range->SetRange(2, 2);
  EXPECT_EQ(WordSession::calls().idQuestions, asked);
}

TEST(Calls, ReadWhatWordAnswersInOtherTypes) {
  const Reached reached;
  const auto answering = [](VARTYPE type) {
    return [type](const Arguments&, VARIANT& result, EXCEPINFO&) {
      result.vt = type;
      result.lVal = 0x10000 + 12;
      return S_OK;
    };
  };
  WordSession::calls().on(u"get Range.Start", answering(VT_I2));
  EXPECT_EQ(reached.range->Start(), 12);
  WordSession::calls().on(u"get Range.Text", answering(VT_NULL));
  EXPECT_EQ(reached.range->Text(), u"");
}

}  // namespace
}  // namespace pluvo::word_com
