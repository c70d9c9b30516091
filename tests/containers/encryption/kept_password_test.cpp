#include "encryption/kept_password.h"

#include <gtest/gtest.h>

namespace pluvo::encryption {
namespace {

TEST(Key, IsTheNumberThatWordProcessorsMakeOfAPassword) {
  const std::pair<const char16_t*, std::uint32_t> cases[] = {{u"", 0},
                                                             {u"a", 0x9D77CE88},
                                                             {u"test", 0x1FC6CBEB},
                                                             {u"secret", 0x014DDAA7},
                                                             {u"Example", 0x64CEED7E},
                                                             {u"password", 0x147A83AF},
                                                             {u"34579", 0x0005CB00}};
  for (const auto& [password, key] : cases) EXPECT_EQ(keyOf(password), key);
  EXPECT_EQ(keyOf(u"fifteen letters"), keyOf(u"fifteen letters and more"));
  EXPECT_EQ(keyOf(u"\u0100"), keyOf(u"\x01")) << "where the low byte is nothing the high one counts";
}

TEST(KeptPassword, IsKnownAgain) {
  using Of = KeptPassword::Of;
  struct Case {
    const char16_t* password;
    KeptPassword kept;
  };
  const std::string salt = "AQIDBAUGBwgJCgsMDQ4PEA==";
  const Case cases[] = {
      // Made by Word.
      {u"Example", {"SHA-1", "2Z+i7o/0EZyUNakVeWzU/w==", "MUHbcmpC9AnlLsd9v3lW0j30y6E=", 100000, Of::key}},
      {u"johnjohn",
       {"SHA-512", "pH1TDVHSfGBxkd3Q88UNhQ==",
        "pVjR9ktO9vlxijXcMPlH+4PLwD4Xwy1aqbNQOFmWaSpvBjipNh//T8S3nBhq6HRoRVfWL6s/+NdUCPTxUr0vZw==", 100000,
        Of::key}},
      {u"Example",
       {"SHA-512", salt,
        "sB4QFRUiYScKc9awLAg/izghewHia0y3THhcvHYNEfQ9HbUll4Boo8ZrV9N+9z163Exfdz9vZJWFFfgPwFO6mw==", 100000,
        Of::password}}};
  for (const Case& it : cases) {
    EXPECT_TRUE(it.kept.is(it.password));
    EXPECT_FALSE(it.kept.is(std::u16string(it.password) + u'x'));
    EXPECT_FALSE(it.kept.is(u""));
  }
  const KeptPassword& sound = cases[0].kept;
  KeptPassword odd = sound;
  odd.algorithm = "ROT-13";
  EXPECT_FALSE(odd.is(u"Example"));
  odd = sound;
  odd.salt = "no base64 at all";
  EXPECT_FALSE(odd.is(u"Example"));
  odd = sound;
  odd.turns = kMostTurns + 1;
  EXPECT_FALSE(odd.is(u"Example"));
}

}  // namespace
}  // namespace pluvo::encryption
