#pragma once

#include "io.h"

#include <memory>
#include <string_view>

namespace limit {

/// word/document.xml of an archive of the plainest kind (no ZIP64), inflated.
class MainPart {
 public:
  explicit MainPart(std::string_view archive);
  std::string_view xml() const { return {xml_.get(), size_}; }
  /// Writes the archive with the part deflated again and every other byte copied.
  void rewrite(std::string_view archive, int level, Written& out) const;

 private:
  std::unique_ptr<char[]> xml_;
  std::size_t size_ = 0;
  std::size_t packedSize_ = 0;
  std::size_t dataAt_ = 0;
};

/// The text between the tags of w:t elements, once through.
class GatheredText {
 public:
  explicit GatheredText(std::string_view xml);
  std::string_view text() const { return {units_.get(), size_}; }

 private:
  std::unique_ptr<char[]>
      units_;  ///< touched as far as it is used: fresh memory costs more than searching it
  std::size_t size_ = 0;
};

}  // namespace limit
