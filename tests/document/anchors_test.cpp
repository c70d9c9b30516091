#include "document/document.h"
#include "document/same_document.h"

#include <gtest/gtest.h>

namespace pluvo::document {
namespace {

Content content(word::WdStoryType kind, std::u16string text, std::vector<StoryAnchor> anchors) {
  Content result = plainContent(text::OriginalText(std::move(text)));
  result.kind = kind;
  result.anchors = std::move(anchors);
  return result;
}

/// Main text with a note that has two references, a comment in the note, a comment that hangs on itself, and
/// a header.
std::vector<Content> stories() {
  return {content(word::wdMainTextStory, u"a\x02z\x02\r", {}),
          content(word::wdPrimaryHeaderStory, u"h\r", {}),
          content(word::wdFootnotesStory, u"n\x05\r", {{0, 1}, {0, 3}}),
          content(word::wdCommentsStory, u"c\r", {{2, 1}}), content(word::wdCommentsStory, u"r\r", {{4, 0}})};
}

std::u16string goneOf(const Document& document) {
  std::u16string gone;
  for (std::size_t i = 0; i < document.count(); ++i)
    if (document.isGone(i)) gone += document.story(i).text().at(0);
  return gone;
}

TEST(Anchors, takeTheirStoriesAlongAndBringThemBack) {
  Document document(stories());
  const auto take = [&](std::size_t story, text::Span span) {
    document.story(story).replace(span, u"", text::View::results);
  };
  take(0, {0, 2});
  EXPECT_EQ(goneOf(document), u"");
  const Document::Snapshot before = document.snapshot();
  EXPECT_EQ(differenceOf(before, stories(), [] {}), "text");
  take(2, {1, 2});
  EXPECT_EQ(goneOf(document), u"c");
  take(0, {1, 2});
  EXPECT_EQ(goneOf(document), u"nc");
  std::vector<Content> left;
  left.push_back(content(word::wdMainTextStory, u"z\r", {}));
  EXPECT_EQ(differenceOf(document.snapshot(), left, [] {}), "parts");
  for (const std::size_t i : {1U, 4U}) left.push_back(std::move(stories()[i]));
  EXPECT_EQ(differenceOf(document.snapshot(), left, [] {}), "");
  left.push_back(std::move(stories()[1]));
  EXPECT_EQ(differenceOf(document.snapshot(), left, [] {}), "parts");
  document.restore(before);
  EXPECT_EQ(goneOf(document), u"");
}

/// Each note has two references to the next one: to judge them one by one would double with each note.
TEST(Anchors, ofNotesInNotesCostNoMoreThanTheNotes) {
  std::vector<Content> all;
  all.push_back(content(word::wdMainTextStory, u"a\x02\r", {}));
  constexpr std::size_t kNotes = 100;
  for (std::size_t i = 0; i < kNotes; ++i)
    all.push_back(
        content(word::wdFootnotesStory, u"n\x02\x02\r",
                i == 0 ? std::vector<StoryAnchor>{{0, 1}} : std::vector<StoryAnchor>{{i, 1}, {i, 2}}));
  Document document(std::move(all));
  document.mainText().replace({1, 2}, u"", text::View::results);
  EXPECT_EQ(goneOf(document).size(), kNotes);
}

}  // namespace
}  // namespace pluvo::document
