#include "errors/fault.h"
#include "forms/doubles.h"
#include "forms/unreported.h"

namespace pluvo::forms {
namespace {

using Story = std::vector<std::string>;

std::string ascii(const std::u16string& text) { return {text.begin(), text.end()}; }

class Combo : public testing::Test {
 protected:
  Combo() {
    list.AddItem(u"red", u"6");
    list.AddItem(u"blue", u"2");
    list.Change.handledBy([this] { story.push_back("change " + ascii(list.Text())); });
    list.BeforeUpdate.handledBy([this](bool& cancel) {
      story.push_back("update " + ascii(list.Text()));
      cancel = refusing;
    });
  }
  Story told() { return std::exchange(story, {}); }

  ComboBox list{u"list"};
  bool refusing = false;
  Story story;
};

TEST_F(Combo, RaisesChangeWithEveryTextAndUpdateAtTheEnd) {
  list.type(u"b");
  list.type(u"blue");
  EXPECT_EQ(list.Value(), u"2");
  EXPECT_TRUE(list.commit());
  EXPECT_TRUE(list.commit()) << "nothing is left to be done";
  EXPECT_EQ(told(), (Story{"change b", "change blue", "update blue"}));
  list.choose(0);
  list.Text(u"red");
  EXPECT_EQ(told(), (Story{"change red", "update red"}));
  list.Enabled(false);
  list.choose(1);
  EXPECT_EQ(told(), Story());
}

TEST_F(Combo, GoesBackToBeforeARefusedEdit) {
  list.Value(u"6");
  EXPECT_EQ(told(), (Story{"change red"})) << "a set by code is not tested";
  refusing = true;
  list.type(u"b");
  EXPECT_FALSE(list.enter(u"blue"));
  EXPECT_EQ(list.Value(), u"6");
  EXPECT_EQ(told(), (Story{"change b", "change blue", "update blue", "change red"}));
}

TEST_F(Combo, HasTheCodeOfTheTextItShows) {
  list.Text(u"green");
  EXPECT_EQ(list.Value(), std::nullopt);
  list.AddItem(u"green", u"11");
  EXPECT_EQ(list.Value(), u"11") << "the rows may come after the text";
  list.Value(u"");
  EXPECT_EQ(list.Text(), u"");
  EXPECT_EQ(list.Value(), std::nullopt);
  list.Value(u"99");
  EXPECT_EQ(list.Text(), u"") << "no row has that code";

  ComboBox numbers(u"numbers", ComboBox::Bound::text);
  numbers.AddItem(u"1");
  numbers.Value(u"25");
  EXPECT_EQ(numbers.Value(), u"25");
}

TEST(Check, TakesTextsThatAreTruths) {
  CheckBox box(u"box");
  for (const char16_t* text : {u"True", u"true", u"-1", u"2"}) {
    box.Value(false);
    box.valueText(text);
    EXPECT_TRUE(box.Value()) << ascii(text);
  }
  for (const char16_t* text : {u"FALSE", u"false", u"0"}) {
    box.Value(true);
    box.valueText(text);
    EXPECT_FALSE(box.Value()) << ascii(text);
  }
  for (const char16_t* text : {u"", u"Yes", u"Truest", u"99999"})
    EXPECT_THROW(box.valueText(text), errors::Fault) << ascii(text);
}

TEST(Text, ThatIsReadOnlyIsNotTyped) {
  TextBox box(u"box");
  int changes = 0;
  box.Change.handledBy([&] { ++changes; });
  box.type(u"typed");
  box.type(u"typed");
  EXPECT_EQ(changes, 1);
  box.ReadOnly(true);
  box.type(u"more");
  EXPECT_EQ(box.Text(), u"typed");
  box.Text(u"by code");
  EXPECT_EQ(changes, 2);
}

TEST(List, SelectsOneOrSeveral) {
  ListBox list(u"list");
  list.items({u"a", u"b", u"c"});
  list.select(0);
  list.select(2);
  list.select(3);
  EXPECT_FALSE(list.Selected(0));
  EXPECT_TRUE(list.Selected(2));
  list.MultiSelect(true);
  list.select(0);
  list.retain([](bool selected) { return selected; });
  EXPECT_EQ(list.ListCount(), 2U);
  EXPECT_EQ(list.List(1), u"c");
}

TEST(Unreported, FaultsAreShown) {
  ScriptedBoxes boxes;
  userDid(boxes, [] { throw errors::Fault(errors::kPathNotFound, u"no log"); });
  userDid(boxes, [] {});
  EXPECT_EQ(boxes.shown, (std::vector<ScriptedBoxes::Box>{{u"no log", Buttons::ok, std::nullopt}}));
}

}  // namespace
}  // namespace pluvo::forms
