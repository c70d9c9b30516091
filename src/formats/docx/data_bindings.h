#pragma once

#include "body_walker.h"
#include "formats/other_texts.h"

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace pluvo::docx {

/// The ids by which controls name the parts of document properties.
inline constexpr std::string_view kCoreProperties = "{6C3C8BC8-F283-45AE-878A-BAB7291924A1}";
inline constexpr std::string_view kExtendedProperties = "{6668398D-A668-4E3E-A5EB-62B293D839F1}";

/// Content controls that show data of another part: Word puts the data in place of their text on opening.
/// Paths are understood that lead down by names and numbers, and may end at an attribute; Word writes no
/// others.
class DataBindings {
 public:
  void add(const Binding& binding, std::u16string_view text);

  /// Tells the data that a control shows instead of its text, where the two differ.
  void tellOtherwise(base::ByteSpan part, const std::string& partName, std::string_view store,
                     formats::OtherTexts& texts) const;
  bool empty() const { return stores_.empty(); }

 private:
  struct Bound {
    std::u16string text;
    std::vector<std::pair<std::string, std::string>> items;
  };
  struct Store {
    std::unordered_multimap<std::string, Bound> bound;  ///< by path
    std::unordered_set<std::string> ways;               ///< paths on which there are such paths
  };
  class Reading;

  std::map<std::string, Store> stores_;  ///< by id, in capitals
};

}  // namespace pluvo::docx
