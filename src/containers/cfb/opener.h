#pragma once

#include "cfb/compound_file.h"
#include "layout.h"

#include <string>

namespace pluvo::cfb {

/// Opens a file: its table of sectors, its directory, its small streams.
class Opener {
 public:
  explicit Opener(base::Bytes bytes) { file_.bytes_ = std::move(bytes); }
  CompoundFile open();

 private:
  void readHeader();
  void readFollowers();
  void readSmallOnes();
  void readDirectory();
  void readTree();
  Entry entryAt(Id id) const;

  std::size_t sectorSize() const { return std::size_t{1} << file_.shift_; }
  /// Fewer bytes where the file ends in it; none outside the file.
  base::ByteSpan sector(std::uint32_t number) const;
  std::vector<std::uint8_t> chain(std::uint32_t first, const char* what) const;

  CompoundFile file_;
};

}  // namespace pluvo::cfb
