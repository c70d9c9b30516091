#include "multifile/clsSorting.h"

#include "errors/reports.h"

#include <gtest/gtest.h>

namespace pluvo::multifile {
namespace {

using Paths = std::vector<std::u16string>;

Paths sorted(const Paths& paths, std::int32_t type = 0) {
  errors::WatchedContext watched;
  clsSorting sorter(watched.context);
  EXPECT_EQ(sorter.SortType(), 0);
  sorter.SortType(type);
  EXPECT_FALSE(sorter.Sorted());
  sorter.Data(paths);
  sorter.SortData();
  EXPECT_TRUE(sorter.Sorted());
  Paths data = sorter.Data();
  sorter.Data({});
  EXPECT_FALSE(sorter.Sorted());
  return data;
}

TEST(clsSorting, SortsByCodesOfUpperCaseLetters) {
  const struct {
    Paths given;
    Paths expected;
  } cases[] = {
      {{u"a"}, {u"a"}},
      {{u"c", u"B", u"a"}, {u"a", u"B", u"c"}},
      // The separator comes before the underscore and behind the letters, so that folders stay together.
      {{u"C:\\B_x\\a", u"C:\\B\\a"}, {u"C:\\B\\a", u"C:\\B_x\\a"}},
      {{u"C:\\B\\z", u"C:\\Bz\\a"}, {u"C:\\Bz\\a", u"C:\\B\\z"}},
      {{u"/b/a", u"/b0/a", u"/b-/a", u"/a/z"}, {u"/a/z", u"/b-/a", u"/b/a", u"/b0/a"}},
      // Beyond ASCII: É is é, and comes behind Z.
      {{u"é", u"z", u"É", u"ä"}, {u"z", u"ä", u"É", u"é"}},
      {{u"ab", u"a", u""}, {u"", u"a", u"ab"}},
      // Paths that differ only in case stand together in the order that the exchanges leave them in.
      {{u"b", u"A", u"a"}, {u"A", u"a", u"b"}},
      {{u"c", u"b", u"B", u"a"}, {u"a", u"B", u"b", u"c"}}};
  for (const auto& [given, expected] : cases) EXPECT_EQ(sorted(given), expected);
}

TEST(clsSorting, LeavesTheDataWhenTheTypeIsAnother) {
  EXPECT_EQ(sorted({u"b", u"a"}, 1), (Paths{u"b", u"a"}));
  EXPECT_EQ(sorted({u"b", u"a"}, -1), (Paths{u"b", u"a"}));
}

}  // namespace
}  // namespace pluvo::multifile
