#pragma once

#include "base/utf.h"
#include "engine/request.h"

#include <cstdint>
#include <random>
#include <string>
#include <string_view>

namespace pluvo::engine {

class Dice {
 public:
  explicit Dice(unsigned seed) : random_(seed) {}
  std::size_t upTo(std::size_t most) { return random_() % (most + 1); }
  bool once(std::size_t in) { return upTo(in - 1) == 0; }
  std::u16string text(std::u16string_view letters, std::size_t least, std::size_t most) {
    std::u16string result;
    for (std::size_t left = least + upTo(most - least); left > 0; --left) {
      result += letters[upTo(letters.size() - 1)];
    }
    return result;
  }
  /// A text to search for; now and then it begins with a line end.
  std::u16string searched(std::size_t more) {
    return text(once(4) ? u"\r\v" : u"abA", 1, 1) + text(u"abA .\r\v", 0, more);
  }

 private:
  std::mt19937 random_;
};

inline Request randomRequest(Dice& dice) {
  Request asked;
  asked.liftLimits = true;
  asked.begin = dice.searched(2);
  if (!dice.once(4)) asked.end = dice.searched(1);
  if (!asked.end.empty() && dice.once(3)) asked.inside = dice.searched(1);
  asked.distance = dice.once(2) ? std::int16_t{0} : static_cast<std::int16_t>(dice.upTo(3));
  asked.unit = static_cast<UnitCode>(dice.upTo(3));
  asked.operation = static_cast<OperationCode>(dice.upTo(4));
  asked.location = static_cast<LocationCode>(dice.upTo(asked.inside.empty() ? asked.end.empty() ? 1 : 2 : 3));
  asked.place = static_cast<PlaceCode>(dice.upTo(1));
  asked.text = dice.once(2) ? asked.begin + asked.inside + asked.end : dice.text(u"abA .\r\v", 0, 3);
  asked.extraSpace = dice.once(3);
  asked.wholeWords = dice.once(4);
  asked.matchCase = dice.once(2);
  return asked;
}

inline std::string words(const Request& asked) {
  const auto shown = [](std::u16string text) {
    for (char16_t& c : text) c = c == u'\r' ? u'/' : c == u'\v' ? u'|' : c;
    return '"' + base::utf8(text) + "\" ";
  };
  return shown(asked.begin) + shown(asked.end) + shown(asked.inside) + std::to_string(asked.distance) +
         " unit " + std::to_string(asked.unit) + " operation " + std::to_string(asked.operation) + " on " +
         std::to_string(asked.location) + " place " + std::to_string(asked.place) + ' ' + shown(asked.text) +
         (asked.extraSpace ? "extra space" : "");
}

}  // namespace pluvo::engine
