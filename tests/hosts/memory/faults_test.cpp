#include "base/utf.h"
#include "errors/fault.h"
#include "memory/application.h"
#include "support/notation.h"

#include <gtest/gtest.h>

#include <functional>

namespace pluvo::memory {
namespace {

/// What fails without a document, of a closed one, and by itself.
TEST(Faults, NameTheMember) {
  const auto sample = std::make_unique<notation::Sample>("text¶");
  MemoryDocument& document = *sample->document;
  MemoryApplication application;
  application.add(sample->document);
  const auto range = document.Range(0, 1);
  const auto find = range->Find();
  const auto selection = application.Selection();
  const std::u16string text(256, u'x');
  document.Close(false);
  const std::pair<const char*, std::function<void()>> cases[] = {
      {"Application.ActiveDocument", [&] { application.ActiveDocument(); }},
      {"Application.Selection", [&] { application.Selection(); }},
      {"Documents.Item", [&] { application.Documents()->Item(1); }},
      {"Documents.Open", [&] { application.Documents()->Open(u"/a.txt"); }},
      {"Options.DefaultFilePath", [&] { application.Options()->DefaultFilePath(word::wdDocumentsPath); }},
      {"Document.Range", [&] { document.Range(0, 1); }},
      {"Document.Activate", [&] { document.Activate(); }},
      {"Document.WritePassword", [&] { document.WritePassword(u"p"); }},
      {"Document.ProtectionType", [&] { document.ProtectionType(); }},
      {"Document.Unprotect", [&] { document.Unprotect(u""); }},
      {"Document.Protect", [&] { document.Protect(word::wdAllowOnlyReading, u""); }},
      {"StoryRanges.Item", [&] { document.StoryRanges(word::wdMainTextStory); }},
      {"Document.Saved", [&] { static_cast<void>(document.Saved()); }},
      {"Document.Close", [&] { document.Close(true); }},
      {"Selection.Start", [&] { selection->Start(); }},
      {"Selection.Text", [&] { selection->Text(); }},
      {"Selection.SetRange", [&] { selection->SetRange(0, 0); }},
      {"Characters.Count", [&] { static_cast<void>(selection->Characters().Count()); }},
      {"Range.Start", [&] { range->Start(); }},
      {"Range.Start", [&] { range->Start(1); }},
      {"Range.End", [&] { range->End(); }},
      {"Range.End", [&] { range->End(1); }},
      {"Range.SetRange", [&] { range->SetRange(0, 1); }},
      {"Range.Text", [&] { range->Text(); }},
      {"Range.Text", [&] { range->Text(u"x"); }},
      {"Words.Count", [&] { static_cast<void>(range->Words().Count()); }},
      {"Sentences.Count", [&] { static_cast<void>(range->Sentences().Count()); }},
      {"Paragraphs.Count", [&] { static_cast<void>(range->Paragraphs().Count()); }},
      {"Range.MoveStart", [&] { range->MoveStart(word::wdWord, 1); }},
      {"Range.MoveEnd", [&] { range->MoveEnd(word::wdWord, 1); }},
      {"Range.Select", [&] { range->Select(); }},
      {"Range.InsertBefore", [&] { range->InsertBefore(u"x"); }},
      {"Range.InsertAfter", [&] { range->InsertAfter(u"x"); }},
      {"Range.Delete", [&] { range->Delete(); }},
      {"Range.StoryType", [&] { range->StoryType(); }},
      {"Range.NextStoryRange", [&] { range->NextStoryRange(); }},
      {"Range.HighlightColorIndex", [&] { range->HighlightColorIndex(word::wdYellow); }},
      {"Find.Text", [&] { find->Text(text); }},
      {"Find.Forward", [&] { find->Forward(false); }},
      {"Find.MatchWildcards", [&] { find->MatchWildcards(true); }},
      {"Find.MatchSoundsLike", [&] { find->MatchSoundsLike(true); }},
      {"Find.MatchAllWordForms", [&] { find->MatchAllWordForms(true); }},
      {"Find.Wrap", [&] { find->Wrap(word::wdFindAsk); }},
      {"Find.Execute", [&] { find->Execute(); }},
  };
  for (const auto& [member, call] : cases) {
    SCOPED_TRACE(member);
    try {
      call();
      ADD_FAILURE() << "no fault";
    } catch (const errors::Fault& fault) {
      EXPECT_EQ(base::utf8(fault.source), std::string("PLUVO (") + member + ")");
    }
  }
}

}  // namespace
}  // namespace pluvo::memory
