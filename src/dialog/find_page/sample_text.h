#pragma once

#include <cstdint>
#include <string>

namespace pluvo::dialog {

/// An operation on a sample; codes as the engine has them.
struct SampleOperation {
  std::int16_t operation = 0;
  std::int16_t location = 0;
  std::int16_t place = 0;
  std::u16string text;    ///< a line end is a character 13, here as in the sample's parts
  std::u16string space;   ///< put between inserted and found text
  std::u16string colour;  ///< in words; empty removes the colour
};

/// A block as a sample text: its parts, and the text between them. The paragraph mark at the end of a part or
/// of the text put in can be seen.
class SampleText {
 public:
  SampleText(std::u16string begin, std::u16string end, std::u16string inside);

  /// With CR LF for a line end.
  std::u16string print() const;
  /// The sample as it is after the operation.
  SampleText after(const SampleOperation& operation) const;

 private:
  SampleText() = default;
  std::u16string joined() const { return begin_ + gapBefore_ + inside_ + gapAfter_ + end_; }

  std::u16string begin_;
  std::u16string gapBefore_;
  std::u16string inside_;
  std::u16string gapAfter_;
  std::u16string end_;
};

}  // namespace pluvo::dialog
