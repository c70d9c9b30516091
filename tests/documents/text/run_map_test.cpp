#include "text/run_map.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace pluvo::text {
namespace {

std::string flat(const RunMap<char>& map, Position from, Position to) {
  std::string values;
  for (const auto& run : map.runs(from, to)) {
    EXPECT_EQ(static_cast<Position>(values.size()), run.from - from);
    values.append(static_cast<std::size_t>(run.to - run.from), run.value);
  }
  return values;
}

TEST(RunMap, BehavesLikeAString) {
  std::mt19937 random(7);
  for (int round = 0; round < 200; ++round) {
    std::string twin;
    RunMap<char> map;
    const auto upTo = [&](Position n) {
      return static_cast<Position>(random() % (static_cast<unsigned>(n) + 1));
    };
    const auto letter = [&] { return static_cast<char>('a' + random() % 3); };
    for (int i = upTo(8); i > 0; --i) {
      const Position length = upTo(5);
      const char value = letter();
      map.append(length, value);
      twin.append(static_cast<std::size_t>(length), value);
    }
    for (int step = 0; step < 40; ++step) {
      const Position length = map.length();
      const Position from = upTo(length);
      const Position to = from + upTo(std::min(length - from, 6));
      const char value = letter();
      const std::string before = twin;
      const auto at = twin.begin() + from;
      if (random() % 2 == 0) {
        std::fill(at, twin.begin() + to, value);
        EXPECT_EQ(map.set(from, to, value), twin != before);
      } else {
        const Position added = upTo(4);
        twin.replace(at, twin.begin() + to, static_cast<std::size_t>(added), value);
        map.replace(from, to, added, value);
      }
      ASSERT_TRUE(map.check());
      ASSERT_EQ(map.length(), static_cast<Position>(twin.size()));
      ASSERT_EQ(flat(map, 0, map.length()), twin);
      if (twin.empty()) continue;
      const Position p = upTo(map.length() - 1);
      const auto index = static_cast<std::size_t>(p);
      ASSERT_EQ(map.valueAt(p), twin[index]);
      const auto behind = twin.find_first_not_of(twin[index], index);
      ASSERT_EQ(map.runEnd(p), behind == std::string::npos ? map.length() : static_cast<Position>(behind));
      ASSERT_EQ(flat(map, p, map.length()), twin.substr(index));
    }
  }
}

}  // namespace
}  // namespace pluvo::text
