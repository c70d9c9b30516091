#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pluvo::document {

/// The limits of a document's file. Asked before an edit is made.
class Medium {
 public:
  virtual ~Medium() = default;
  /// Why this text cannot stand in this file, as a UTF-8 sentence for the user; nothing when it can.
  virtual std::optional<std::string> refusesText(std::u16string_view newText) const = 0;
  /// Whether the file has a place for highlighting.
  virtual bool holdsHighlight() const = 0;
};

}  // namespace pluvo::document
