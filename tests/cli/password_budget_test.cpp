#include "base/secret_text.h"
#include "errors/clsErrorLogging.h"
#include "multifile/frmPassword.h"
#include "prompt_answers.h"

#include <gtest/gtest.h>

namespace pluvo::cli {
namespace {

TEST(PasswordBudget, EndsTheTryingForADocumentOrTheRun) {
  using Spent = PromptAnswers::Spent;
  struct Case {
    std::uint64_t cost, ofRun;
    int tried;
    Spent spent;
  };
  const Case cases[] = {{1'000'000, PasswordBudget::kForRun, 4, Spent::nothing},
                        {4'000'000, PasswordBudget::kForRun, 2, Spent::document},
                        {100'000, 350'000, 3, Spent::run},
                        {0, 0, 4, Spent::nothing}};
  std::vector<base::SecretText> passwords;
  for (const char16_t* each : {u"a", u"b", u"c", u"d"}) passwords.emplace_back(std::u16string(each));
  for (const Case& it : cases) {
    PasswordBudget run(it.ofRun);
    PromptAnswers answers(passwords, run, [&] { return it.cost; });
    errors::Context context;
    multifile::frmPassword prompt(context, answers);
    std::u16string given;
    int tried = 0;
    while (prompt.RetrievePassword(given))
      EXPECT_EQ(given, passwords[static_cast<std::size_t>(tried++)].text());
    EXPECT_EQ(tried, it.tried) << it.cost;
    EXPECT_EQ(answers.spent(), it.spent) << it.cost;
  }
}

}  // namespace
}  // namespace pluvo::cli
