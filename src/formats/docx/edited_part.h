#pragma once

#include "document/edit_script.h"
#include "identifiers.h"
#include "part_output.h"
#include "reader.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::docx {

using document::EditScript;
using document::Step;

inline bool isTrackedDeletion(Name name) { return name == Name::del || name == Name::moveFrom; }

/// The complex fields that are open where an edit has come to, and whether their marks stay.
class FieldsUnderEdit {
 public:
  void begin(bool kept, bool inResult) { open_.push_back({kept, inResult}); }
  void end() { open_.pop_back(); }
  void setKept(bool kept) { open_.back().kept = kept; }
  void enterResult() { open_.back().inResult = true; }

  /// Of a mark of a field that is an element of its own.
  void pass(char16_t mark, bool kept) {
    if (mark == text::kFieldBegin) begin(kept, false);
    if (open_.empty()) return;
    if (mark == text::kFieldSeparator) enterResult();
    if (mark == text::kFieldEnd) end();
  }

  bool inCode() const {
    return std::any_of(open_.rbegin(), open_.rend(),
                       [](const Field& field) { return field.kept && !field.inResult; });
  }

 private:
  struct Field {
    bool kept = false;
    bool inResult = false;
  };
  std::vector<Field> open_;
};

/// A part under edit, or the piece of it that holds one story. It has the facts known, the edits to be made,
/// and the result so far. The writers of its runs, paragraphs, fields and tables share it.
struct EditedPart {
  EditedPart(base::ByteSpan bytes, const BodyMap& bodyMap, const document::Story& edited,
             const EditScript& steps, Identifiers& ids)
      : size(bytes.size()), map(bodyMap), story(edited), script(steps), output(bytes), identifiers(ids) {}

  std::uint8_t colourAt(Position at) const { return story.highlight().valueAt(at); }

  const std::size_t size;  ///< in bytes, as it was
  const BodyMap& map;
  const document::Story& story;
  EditScript script;
  PartOutput output;
  Identifiers& identifiers;  ///< of all of the part
  FieldsUnderEdit fields;
  std::string_view deletion;  ///< the tag of the tracked deletion met last
};

}  // namespace pluvo::docx
