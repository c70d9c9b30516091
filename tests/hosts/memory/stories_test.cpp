#include "errors/fault.h"
#include "memory/application.h"
#include "support/notation.h"
#include "word/faults.h"

#include <gtest/gtest.h>

namespace pluvo::memory {
namespace {

document::Content story(word::WdStoryType kind, std::string_view notation) {
  document::Content content = notation::parse(notation).content;
  content.kind = kind;
  return content;
}

std::shared_ptr<MemoryDocument> withNotes() {
  return MemoryDocument::create(
      {story(word::wdMainTextStory, "main ¶"), story(word::wdPrimaryHeaderStory, "head ¶"),
       story(word::wdFootnotesStory, "note ¶"), story(word::wdFootnotesStory, "more ¶")});
}

TEST(Stories, AreGivenByKindOneAfterTheOther) {
  const auto document = withNotes();
  const auto first = document->StoryRanges(word::wdFootnotesStory);
  const auto second = first->NextStoryRange();
  EXPECT_EQ(first->Text(), u"note \r");
  EXPECT_EQ(second->Text(), u"more \r");
  EXPECT_EQ(second->StoryType(), word::wdFootnotesStory);
  EXPECT_EQ(second->NextStoryRange(), nullptr);
  EXPECT_EQ(document->StoryRanges(word::wdMainTextStory)->NextStoryRange(), nullptr);
  EXPECT_THROW(document->StoryRanges(word::wdEndnotesStory), errors::Fault);
}

/// An edit, a find and a selection stay in their story; positions are the story's own.
TEST(Stories, HaveRangesFindsAndEditsOfTheirOwn) {
  const auto document = withNotes();
  MemoryApplication application;
  application.add(document);
  const document::Document::Snapshot before = document->stories().snapshot();
  const auto inMain = document->Range(2, 4);
  const auto note = document->StoryRanges(word::wdFootnotesStory);
  note->InsertBefore(u"a longer ");
  EXPECT_EQ(inMain->Start(), 2);
  EXPECT_EQ(note->End(), 15);
  EXPECT_THROW(inMain->SetRange(0, 15), errors::Fault);
  EXPECT_FALSE(document->mainText().changed());
  EXPECT_FALSE(document->Saved());

  const auto second = note->NextStoryRange();
  const auto find = second->Find();
  find->Text(u"note");
  EXPECT_FALSE(find->Execute());
  note->SetRange(9, 13);
  EXPECT_EQ(note->Text(), u"note");
  note->Select();
  EXPECT_EQ(application.Selection()->Text(), u"note");
  application.Selection()->SetRange(11, 15);
  EXPECT_EQ(application.Selection()->Start(), 11);
  document->Range(0, 1)->Select();
  EXPECT_EQ(application.Selection()->Text(), u"m");

  document->stories().restore(before);
  EXPECT_EQ(document->StoryRanges(word::wdFootnotesStory)->Text(), u"note \r");
  EXPECT_TRUE(document->Saved());
}

}  // namespace
}  // namespace pluvo::memory
