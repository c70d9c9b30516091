#include "password_budget.h"

#include <gtest/gtest.h>

namespace pluvo::runs {
namespace {

TEST(PasswordBudget, EndsTheTryingForADocumentOrTheRun) {
  struct Case {
    std::uint64_t cost, ofRun;
    int tried;
    Tried how;
  };
  const Case cases[] = {{1'000'000, PasswordBudget::kForRun, 4, Tried::wrong},
                        {4'000'000, PasswordBudget::kForRun, 2, Tried::documentSpent},
                        {100'000, 350'000, 3, Tried::runSpent},
                        {0, 0, 4, Tried::wrong}};
  std::vector<base::SecretText> passwords;
  for (const char16_t* each : {u"a", u"b", u"c", u"d"}) passwords.emplace_back(std::u16string(each));
  for (const Case& it : cases) {
    PasswordBudget run(it.ofRun);
    std::size_t tried = 0;
    PasswordBudget document(PasswordBudget::kForDocument);
    EXPECT_EQ(tryPasswords(passwords, it.cost, document, run,
                           [&](const auto& each) { return &each != &passwords[tried++]; }),
              it.how)
        << it.cost;
    EXPECT_EQ(tried, static_cast<std::size_t>(it.tried)) << it.cost;
  }
}

}  // namespace
}  // namespace pluvo::runs
