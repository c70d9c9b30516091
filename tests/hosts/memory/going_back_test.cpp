#include "support/invariants.h"
#include "support/notation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace pluvo::memory {
namespace {

using text::Position;
using text::Span;

/// Keeps a copy of the text by what it is told alone.
struct Follower : DocumentObserver {
  explicit Follower(document::Story& model) : followed(model), length(model.length()) {}
  void aboutToChange() override { ++announced; }
  void replaced(const document::Story&, Span span, Position newLength) override {
    length += newLength - span.length();
    untouched = std::min(untouched, span.from);
    ++changes;
  }
  void highlighted(const document::Story&, Span span) override { coloured.push_back(span); }
  void selected(const document::Story&, Span span) override { selection = span; }

  document::Story& followed;
  Position length;
  Position untouched = 1 << 20;
  int announced = 0;
  int changes = 0;
  std::vector<Span> coloured;
  Span selection;
};

TEST(GoingBack, BringsBackWhatWasThereAndTellsWhoWatches) {
  constexpr std::string_view kBefore = "one <7:two> {code|result} three¶⟦a¦b¦‖⟧four¶";
  notation::Sample sample(kBefore);
  document::Story& model = sample.mainText();
  Follower follower(model);
  sample.document->observer(&follower);
  const document::Story::Snapshot before = model.snapshot();

  model.highlight({4, 7}, 7);
  EXPECT_EQ(follower.announced, 0) << "nothing changes";
  sample.document->select({4, 7});
  EXPECT_EQ(follower.selection, (Span{4, 7}));
  model.replace({4, 7}, u"2¶2", text::View::results);
  model.replace({0, 3}, {}, text::View::results);
  model.highlight({0, 2}, 3);
  const std::string after = sample.print();
  const document::Story::Snapshot changed = model.snapshot();

  model.restore(before);
  EXPECT_EQ(sample.print(), kBefore);
  EXPECT_EQ(notation::damageOf(model), "");
  EXPECT_FALSE(model.changed());
  EXPECT_EQ(follower.length, model.length());
  EXPECT_TRUE(model.find({std::make_shared<const std::u16string>(u"three"), {}}, {0, model.length()},
                         text::View::results));
  EXPECT_EQ(model.count({0, model.length()}, word::wdParagraph, text::View::results), 5);

  model.saved();
  model.restore(changed);
  EXPECT_EQ(sample.print(), after);
  EXPECT_TRUE(model.changed());
  model.saved();
  model.restore(before);
  EXPECT_TRUE(model.changed()) << "the file has the later text";
}

TEST(GoingBack, LeavesRangesInFrontOfTheFirstDifferenceAlone) {
  notation::Sample sample("[aonea] two [bthreeb] four¶");
  const document::Story::Snapshot before = sample.mainText().snapshot();
  sample.range('b').Text(u"3");
  sample.mainText().restore(before);
  EXPECT_EQ(sample.print(), "[aonea] two [bthreeb] four¶");
}

}  // namespace
}  // namespace pluvo::memory
