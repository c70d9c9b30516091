#include "opened_dialog.h"

namespace pluvo::dialog {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char16_t* kBoxes[] = {u"txtBeginText", u"txtEndText", u"txtInsideText1", u"txtTextToEnter"};

class TextBoxes : public testing::Test, protected OpenedDialog {
 protected:
  TextBoxes() {
    document("one two three¶four¶");
    open();
    type(u"txtBeginText", u"b");
    type(u"txtEndText", u"e");
    choose(u"cboxProcOperation1", u"Replace");
  }
  /// Ctrl+V: the box takes the clipboard's text, then the key comes up.
  std::u16string paste(const char16_t* name) {
    type(name, u"clipboard");
    box(name).releaseKey(forms::kVKey, forms::kControl);
    return box(name).Text();
  }
};

TEST_F(TextBoxes, LetTheInsideTextBeTypedBetweenTwo) {
  auto& inside = box(u"txtInsideText1");
  type(u"txtInsideText1", u"kept");
  EXPECT_TRUE(inside.Enabled());
  type(u"txtBeginText", u"");
  EXPECT_FALSE(inside.Enabled());
  EXPECT_EQ(inside.BackStyle(), forms::BackStyle::transparent);
  type(u"txtBeginText", u"b");
  EXPECT_TRUE(inside.Enabled());
  type(u"txtEndText", u"");
  EXPECT_FALSE(inside.Enabled());
  type(u"txtInsideText1", u"not typed into a box that is off");
  EXPECT_EQ(inside.Text(), u"kept");
}

TEST_F(TextBoxes, TakeTheSelectionInTheClipboardsPlace) {
  tick(u"chkControlVButton");
  select(4, 13);
  for (const char16_t* name : kBoxes) EXPECT_EQ(paste(name), u"two three");
  select(8, 16);
  EXPECT_EQ(paste(u"txtBeginText"), u"three\rfo");
  select(4, 6);
  EXPECT_EQ(paste(u"txtBeginText"), u"tw") << "two characters are enough";
}

TEST_F(TextBoxes, KeepTheClipboardsTextOtherwise) {
  const struct {
    const char* why;
    bool on;
    int shift;
    std::int32_t selectedTo;
    std::int16_t key = forms::kVKey;
  } cases[] = {{"off", false, forms::kControl, 13},
               {"with Shift", true, forms::kControl | forms::kShift, 13},
               {"with Alt", true, forms::kControl | forms::kAlt, 13},
               {"alone", true, 0, 13},
               {"another key", true, forms::kControl, 13, 67},
               {"an insertion point", true, forms::kControl, 4},
               {"one character", true, forms::kControl, 5}};
  for (const auto& [why, on, shift, selectedTo, key] : cases) {
    tick(u"chkControlVButton", on);
    select(4, selectedTo);
    type(u"txtBeginText", u"clipboard");
    box(u"txtBeginText").releaseKey(key, static_cast<std::int16_t>(shift));
    EXPECT_EQ(box(u"txtBeginText").Text(), u"clipboard") << why;
  }
}

TEST_F(TextBoxes, AskAtTheRightButton) {
  select(0, 3);
  for (const char16_t* name : kBoxes) {
    box(name).Text(u"before");
    box(name).releaseMouse(forms::kLeft);
    EXPECT_THAT(told(), IsEmpty());
    boxes.answers = {forms::BoxAnswer::no, forms::BoxAnswer::yes};
    box(name).releaseMouse(forms::kRight);
    EXPECT_EQ(box(name).Text(), u"before");
    box(name).releaseMouse(forms::kRight);
    EXPECT_EQ(box(name).Text(), u"one");
    EXPECT_EQ(told().back(), "Insert Highlighted Data? | Right-Click Paste Selection Operation");
  }
  select(5, 5);
  boxes.answers = {forms::BoxAnswer::yes};
  box(u"txtBeginText").releaseMouse(forms::kRight);
  EXPECT_EQ(box(u"txtBeginText").Text(), u"w") << "whatever the selection yields";
}

TEST_F(TextBoxes, KeepTheirTextWhereTheSelectionCannotBeRead) {
  word->close(sample->document);
  tick(u"chkControlVButton");
  const std::pair<const char16_t*, std::pair<const char*, const char*>> cases[] = {
      {u"txtBeginText", {"4248 FF:31", "4248 FF:32"}},
      {u"txtEndText", {"4248 FF:34", "4248 FF:35"}},
      {u"txtInsideText1", {"4248 FF:37", "4248 FF:38"}},
      {u"txtTextToEnter", {"4248 FF:39", "4248 FF:40"}}};
  for (const auto& [name, tags] : cases) {
    EXPECT_EQ(paste(name), u"clipboard");
    EXPECT_THAT(reported(), ElementsAre(tags.first));
    boxes.answers = {forms::BoxAnswer::yes};
    box(name).releaseMouse(forms::kRight);
    EXPECT_EQ(reported().back(), tags.second);
  }
}

}  // namespace
}  // namespace pluvo::dialog
