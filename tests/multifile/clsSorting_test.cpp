#include "multifile/clsSorting.h"

#include "errors/reports.h"

#include <gtest/gtest.h>

namespace pluvo::multifile {
namespace {

using Paths = std::vector<std::u16string>;

TEST(clsSorting, SortsByCodesOfUpperCaseLetters) {
  const struct {
    Paths given;
    Paths expected;
    std::int32_t type = 0;
  } cases[] = {
      {{u"c", u"B", u"a"}, {u"a", u"B", u"c"}},
      // The separator comes before the underscore and after the letters, so that folders stay together.
      {{u"C:\\B_x\\a", u"C:\\B\\a"}, {u"C:\\B\\a", u"C:\\B_x\\a"}},
      {{u"C:\\B\\z", u"C:\\Bz\\a"}, {u"C:\\Bz\\a", u"C:\\B\\z"}},
      {{u"/b/a", u"/b0/a", u"/b-/a", u"/a/z"}, {u"/a/z", u"/b-/a", u"/b/a", u"/b0/a"}},
      // Beyond ASCII: É is é, and comes after Z.
      {{u"é", u"z", u"É", u"ä"}, {u"z", u"ä", u"É", u"é"}},
      {{u"ab", u"a", u""}, {u"", u"a", u"ab"}},
      // Paths that differ only in case stand together in the order that the exchanges leave them in.
      {{u"c", u"b", u"B", u"a"}, {u"a", u"B", u"b", u"c"}},
      // Another type leaves the data as they are.
      {{u"b", u"a"}, {u"b", u"a"}, 1}};
  errors::WatchedContext watched;
  clsSorting sorter(watched.context);
  for (const auto& [given, expected, type] : cases) {
    sorter.SortType(type);
    sorter.Data(given);
    EXPECT_FALSE(sorter.Sorted());
    sorter.SortData();
    EXPECT_TRUE(sorter.Sorted());
    EXPECT_EQ(sorter.Data(), expected);
  }
  EXPECT_EQ(watched.context.locationTag, u"csort:07");
}

}  // namespace
}  // namespace pluvo::multifile
