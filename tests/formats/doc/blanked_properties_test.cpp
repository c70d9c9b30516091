#include "blanked_properties.h"

#include "base/utf.h"
#include "formats/doc/doc_builder.h"
#include "gone_texts.h"
#include "property_sets.h"
#include "storage/files/as_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ctime>

namespace pluvo::doc {
namespace {

std::string wide(std::u16string_view text) {
  std::string bytes;
  for (const char16_t unit : text) bytes += number(unit);
  return bytes;
}
std::string padded(std::string bytes) { return bytes.append((4 - bytes.size() % 4) % 4, '\0'); }

/// One set with these values, each with its type; the code page comes first.
std::string set(const std::vector<std::pair<std::uint32_t, std::string>>& values) {
  std::string head;
  std::string body;
  for (const auto& [id, value] : values) {
    head += number(id) + number(static_cast<std::uint32_t>(8 + values.size() * 8 + body.size()));
    body += padded(value);
  }
  return number(0U) + number(static_cast<std::uint32_t>(values.size())) + head + body;
}
std::string narrowValue(const std::string& text) {
  return number(0x1EU) + number(static_cast<std::uint32_t>(text.size() + 1)) + text + '\0';
}
std::string wideValue(std::u16string_view text) {
  return number(0x1FU) + number(static_cast<std::uint32_t>(text.size() + 1)) +
         padded(wide(text) + std::string(2, '\0'));
}

TEST(BlankedProperties, LoseWhatStandsNowhereAnyMore) {
  const struct {
    const char* title;
    std::u16string deleted;
    const char* standing;  ///< in notation
    const char* left;
  } cases[] = {
      {"The Smith lease", u"Smith", "the lease¶", "The       lease"},
      {"The Smith lease", u"Smith", "a SMITH¶", "The Smith lease"},
      {"The Smith lease", u"Smithy", "lease¶", "The Smith lease"},
      {"The Smith lease", u"mit", "lease¶", "The Smith lease"},
      {"The Smith lease", u"a The Smith lease, old", "smith, The and lease¶", "               "},
      {"a b c a b", u"a b c a", "b c a a b¶", "        b"},
      {"John Smith", u"to John Smith, who", "John and Smith¶", "          "},
      {"Will of John Smith", u" John Smith\r", "<7:J>ohn Doe, R. Smith¶", "Will of           "},
      {"Will of John Smith", u"John Smith", "by Jo<7:hn Smi>th¶", "Will of John Smith"},
      {"\xD2\xE5\xEA\xF1\xF2 a", u"текст", "¶", "      a"},
  };
  for (const auto& [title, deleted, standing, left] : cases) {
    SCOPED_TRACE(title);
    DocBuilder builder;
    builder.notation(standing);
    const std::u16string wideTitle(title, title + std::string_view(title).size());
    builder.tables[Table::titles] = number(std::uint16_t{0xFFFF}) + number(std::uint16_t{3}) +
                                    number(std::uint16_t{0}) + std::string(4, '\0') +
                                    number(static_cast<std::uint16_t>(wideTitle.size())) + wide(wideTitle);
    const std::string sets = std::string(24, '\0') + number(1U) + std::string(16, '\0') + number(48U);
    builder.streams = {
        {kSummary,
         sets + set({{1, number(2U) + number(1251U)}, {2, narrowValue(title)}, {4, narrowValue(title)}})}};
    const Streams streams = Streams::open(files::bytesOf(builder.build()), {});
    const std::u16string all[] = {u"unknown", deleted};
    const BlankedProperties blanked = blankedProperties(streams.file, Text(streams, 0), all);
    const std::string before(files::textOf(streams.file.read(*streams.file.stream(kSummary)).view));
    std::string expected = before;
    expected.replace(expected.find(title), std::string_view(left).size(), left);
    ASSERT_EQ(blanked.streams.size(), expected == before ? 0U : 1U);
    for (const auto& stream : blanked.streams) EXPECT_EQ(files::textOf(stream.bytes), expected);
    // The same in the table of titles, of which these are not of the same code page.
    if (title[0] < 0) continue;
    const std::u16string wideLeft(left, left + std::string_view(left).size());
    EXPECT_EQ(blanked.titles.empty(), expected == before);
    const std::string titles(blanked.titles.empty() ? builder.tables[Table::titles]
                                                    : files::textOf(blanked.titles));
    EXPECT_THAT(titles, testing::EndsWith(wide(wideLeft)));
  }
}

TEST(BlankedProperties, LoseItInTitlesOfPartsAndLinks) {
  DocBuilder builder;
  builder.notation("text¶");
  const std::string parts = number(0x101EU) + number(2U) + number(7U) + std::string("Secret\0", 7) +
                            number(5U) + std::string("text\0", 5);
  const std::string link = wideValue(u"http://secret.org/");
  const std::string links = number(0x41U) + number(static_cast<std::uint32_t>(link.size() + 12)) +
                            number(2U) + number(3U) + number(1U) + link;
  const std::string first = set({{1, number(2U) + number(1252U)}, {13, parts}, {15, narrowValue("Secret")}});
  const std::string second = set({{1, number(2U) + number(1252U)}, {2, links}});
  builder.streams = {{kDocumentSummary, std::string(24, '\0') + number(2U) + std::string(16, '\0') +
                                            number(68U) + std::string(16, '\0') +
                                            number(static_cast<std::uint32_t>(68 + first.size())) + first +
                                            second}};
  const Streams streams = Streams::open(files::bytesOf(builder.build()), {});
  const std::u16string all[] = {u"secret"};
  const BlankedProperties blanked = blankedProperties(streams.file, Text(streams, 0), all);
  ASSERT_EQ(blanked.streams.size(), 1U);
  const std::string now(files::textOf(blanked.streams[0].bytes));
  EXPECT_THAT(now, testing::HasSubstr(std::string("      \0\5\0\0\0text", 15)));
  EXPECT_THAT(now, testing::HasSubstr(wide(u"http://      .org/")));
  EXPECT_THAT(now, testing::HasSubstr("Secret")) << "the company stays";
}

/// Tens of thousands of each; their product takes minutes.
TEST(GoneTexts, CostTheSumOfPropertiesAndDeletions) {
  constexpr int kMany = 20000;
  GoneTexts gone;
  const auto text = [](int i, const char* last) { return base::utf16("a b a " + std::to_string(i) + last); };
  for (int i = 0; i < kMany; ++i) gone.addShort(text(i, ""));
  const std::clock_t before = std::clock();
  for (int i = 0; i < kMany; ++i) gone.addDeleted(text(i, i % 2 == 0 ? " and more" : ""));
  for (int i = 2; i < kMany; ++i) gone.addStanding(text(i, " "));
  gone.finishStanding();
  EXPECT_THAT(gone.in(u"a b a 1"), testing::Each(true));
  EXPECT_THAT(gone.in(u"a b a 2"), testing::Each(false));
  EXPECT_LT(std::clock() - before, 20 * CLOCKS_PER_SEC);
}

}  // namespace
}  // namespace pluvo::doc
