#pragma once

#include "new_text_writer.h"

#include <string_view>
#include <vector>

namespace pluvo::docx {

/// Writes simple fields: elements around their result, whose start tags stand for a mark, a code and another
/// mark. One becomes a complex field where an edit asks for more than an element can say.
class FieldWriter {
 public:
  FieldWriter(EditedPart& part, OpenElements& opens, RunWriter& runs, NewTextWriter& newText)
      : part_(part), opens_(opens), runs_(runs), newText_(newText) {}

  /// Of the field that opens next; from is the position of its first mark.
  void begin(Position from, const Tag& tag, std::u16string_view instruction);
  void open(const Tag& tag);
  /// Before it closes; at is the position of its last mark.
  void end(Position at, Extent endTag);

 private:
  void writeAnew(Position from, Position end);
  void writeCode(std::u16string_view code);
  void putAll(bool after, Extent endTag);

  EditedPart& part_;
  OpenElements& opens_;
  RunWriter& runs_;
  NewTextWriter& newText_;
  std::vector<Step> steps_;
  OpenElement next_;
};

}  // namespace pluvo::docx
