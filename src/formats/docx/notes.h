#pragma once

#include "departed.h"
#include "package.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pluvo::docx {

/// A part with new contents, in its own encoding.
struct ChangedPart {
  std::string name;
  std::vector<std::uint8_t> bytes;
};

/// The parts of notes and comments without those that went with their references; parts that stay as they are
/// are not among them. What other parts say of a comment that goes, goes too.
std::vector<ChangedPart> partsWithoutDeparted(const Package& package, const Departed& departed);

}  // namespace pluvo::docx
