#include "text/chunked_stack.h"

#include "text/byte_places.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <tuple>
#include <utility>
#include <vector>

namespace pluvo::text {
namespace {

/// Beside a plain vector, through many chunks up and down, with copies that both sides go on from.
TEST(ChunkedStack, HoldsWhatAVectorHolds) {
  using Stack = ChunkedStack<int, 4>;
  std::mt19937 dice(1);
  Stack stack;
  std::vector<int> expected;
  std::vector<std::pair<Stack, std::vector<int>>> copies;
  const auto expectSame = [&dice](const Stack& is, const std::vector<int>& shouldBe) {
    ASSERT_EQ(is.size(), shouldBe.size());
    for (std::size_t i = 0; i < shouldBe.size(); ++i) ASSERT_EQ(is[i], shouldBe[i]) << i;
    for (int value = -1; value <= static_cast<int>(shouldBe.size()); ++value) {
      const auto below = [&](int each) { return each < value; };
      ASSERT_EQ(is.countWhile(below),
                static_cast<std::size_t>(std::partition_point(shouldBe.begin(), shouldBe.end(), below) -
                                         shouldBe.begin()));
    }
    std::size_t at = dice() % (shouldBe.size() + 1);
    Stack::Reader reader(is, at);
    for (; reader.peek() != nullptr; reader.next()) ASSERT_EQ(*reader.peek(), shouldBe.at(at++));
    ASSERT_EQ(at, shouldBe.size());
  };
  for (int turn = 0; turn < 3000; ++turn) {
    const bool grows = turn / 50 % 2 == 0 ? dice() % 4 != 0 : dice() % 4 == 0;
    if (grows || expected.empty()) {
      const int next = expected.empty() ? 0 : expected.back() + 1;
      stack.push(next);
      expected.push_back(next);
    } else {
      stack.pop();
      expected.pop_back();
    }
    if (!expected.empty()) stack.back() = expected.back() += static_cast<int>(dice() % 2);
    if (turn % 100 == 0) copies.emplace_back(stack, expected);
    if (turn % 250 == 0) std::tie(stack, expected) = copies[dice() % copies.size()];
    expectSame(stack, expected);
  }
  for (const auto& [copy, then] : copies) expectSame(copy, then);
}

/// Steps of all lengths, on both sides of what two bytes hold; asked for are places noted and not noted.
TEST(BytePlaces, TellsWhereEachUnitLies) {
  std::mt19937 dice(1);
  const auto below = [&](unsigned most) { return static_cast<std::uint32_t>(dice() % most); };
  BytePlaces places;
  std::vector<BytePlace> noted;
  BytePlace at;
  for (int i = 0; i < 5000; ++i) {
    noted.push_back(at);
    places.push(at);
    const std::uint32_t units = 1 + below(1U << below(19));
    at.position += static_cast<Position>(units);
    at.offset += units + below(1U << below(19));
  }
  BytePlaceCursor cursor(places);
  for (std::size_t i = 0; i + 1 < noted.size(); ++i) {
    if (below(3) != 0) {
      ASSERT_EQ(cursor.offsetOf(noted[i].position), noted[i].offset) << i;
    }
    if (const Position between = noted[i].position + 1; between < noted[i + 1].position) {
      ASSERT_EQ(cursor.offsetOf(between), std::nullopt) << i;
    }
  }
  EXPECT_EQ(cursor.offsetOf(noted.back().position), noted.back().offset);
  EXPECT_EQ(cursor.offsetOf(noted.back().position + 1), std::nullopt);
}

}  // namespace
}  // namespace pluvo::text
