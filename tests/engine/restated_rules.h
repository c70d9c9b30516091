#pragma once

#include "engine/workplace.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pluvo::engine {

/// The rules of a pass, with its limits lifted, restated over one string: what is found where, and what
/// becomes of the text. Units are counted by a document made anew for every question.
class RestatedRules {
 public:
  struct Place {
    std::size_t from = 0;
    std::size_t to = 0;
    bool operator==(const Place&) const = default;
  };

  RestatedRules(std::u16string text, Asked asked, bool extraSpace);
  void pass();

  std::u16string text;
  std::vector<Place> blocks;      ///< as they were found
  std::vector<bool> highlighted;  ///< one for each character

 private:
  struct Block {
    Place whole, begin, end, inside;
  };

  bool find(const std::u16string& needle, Place within, Place& match) const;
  bool matchesInFull(const std::u16string& full, Place& match) const;
  bool tooFar(const Block& block) const;
  bool accept(Block& block) const;
  /// Returns where the search goes on.
  std::size_t operate(Block& block);
  void replace(Place& what, const std::u16string& with, Place& other);

  Asked asked_;
  std::u16string space_;
  bool wholeWords_;
};

}  // namespace pluvo::engine
