#ifndef _WIN32

#include "base/secret_text.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <optional>

namespace pluvo::base {
namespace {

rlim_t largestImage() {
  rlimit limit{};
  getrlimit(RLIMIT_CORE, &limit);
  return limit.rlim_cur;
}

TEST(Secret, LeavesNoImageOfACrashAsLongAsThereIsOne) {
  rlimit before{};
  getrlimit(RLIMIT_CORE, &before);
  rlimit some = before;
  some.rlim_cur = std::min<rlim_t>(before.rlim_max, 4096);
  setrlimit(RLIMIT_CORE, &some);
  std::optional<SecretText> first(std::u16string(u"a password that is long"));
  EXPECT_LE(largestImage(), 1U);
  std::optional<SecretText> second(first->copy());
  EXPECT_EQ(second->text(), u"a password that is long");
  for (auto* each : {&first, &second}) {
    EXPECT_LE(largestImage(), 1U);
    each->reset();
  }
  EXPECT_EQ(largestImage(), some.rlim_cur);
  setrlimit(RLIMIT_CORE, &before);
}

}  // namespace
}  // namespace pluvo::base

#endif
