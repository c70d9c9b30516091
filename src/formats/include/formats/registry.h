#pragma once

#include "formats/format.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::formats {

/// "txt" of "folder/Letter.TXT"; nothing for a name without one.
std::string extensionOf(std::string_view path);

/// The formats there are. Which one a file has is told by its bytes, and by its extension only where bytes
/// cannot tell: plain text is asked last.
class Registry {
 public:
  /// Formats are asked in the order in which they are added.
  void add(std::unique_ptr<Format> format) { formats_.push_back(std::move(format)); }

  /// Nothing where no format recognises the file.
  const Format* find(base::ByteSpan bytes, std::string_view extension) const;
  /// Throws DocumentError: damaged where the name promises a document that the bytes are not, unsupported
  /// otherwise; the sentence says what the file looks like.
  const Format& formatOf(base::ByteSpan bytes, std::string_view extension) const;

  /// Those that any of the formats goes by.
  std::vector<std::string_view> extensions() const;

 private:
  std::vector<std::unique_ptr<Format>> formats_;
};

}  // namespace pluvo::formats
