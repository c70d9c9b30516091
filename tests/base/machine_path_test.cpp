#ifdef _WIN32

#include "base/names.h"

#include <gtest/gtest.h>

namespace pluvo::base {
namespace {

TEST(MachinePath, IsLiteralWhereItIsLong) {
  const std::u16string deep(300, u'\u00E4');
  const std::wstring name(deep.begin(), deep.end());
  const struct {
    std::u16string path;
    std::wstring expected;
  } cases[] = {{u"C:\\f/a.txt", L"C:\\f/a.txt"},
               {u"C:/f/../" + deep + u"/./a", L"\\\\?\\C:\\" + name + L"\\a"},
               {u"\\\\server\\share\\" + deep, L"\\\\?\\UNC\\server\\share\\" + name},
               {u"\\\\?\\C:\\" + deep, L"\\\\?\\C:\\" + name},
               {u"C:\\odd\xDC80", L"C:\\odd\xDC80"}};
  for (const auto& [path, expected] : cases) {
    EXPECT_EQ(machinePath(path).native(), expected);
    EXPECT_EQ(machineText(expected), std::u16string(expected.begin(), expected.end()));
  }
}

}  // namespace
}  // namespace pluvo::base

#endif
