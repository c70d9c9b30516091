#pragma once

#include "edited_part.h"
#include "properties.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace pluvo::docx {

/// The outcome of an edit for the contents of an element.
struct Outcome {
  bool kept = false;  ///< holds text, old or new
  bool lost = false;  ///< held text that went
  bool touched = false;
  bool textChanged = false;
};

/// An element around the place that the walk has come to, and how it is written.
struct OpenElement : Outcome {
  static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

  OpenElement() = default;
  OpenElement(const Tag& start, Offset afterStart) : tag(start), inner(afterStart) {}
  explicit OpenElement(const Tag& start) : OpenElement(start, start.extent.end) {}

  Tag tag;
  Offset inner = 0;                 ///< after the start tag, and after a paragraph's properties
  std::size_t outBegin = kNowhere;  ///< where the start tag and the bytes after inner stand in the output
  std::size_t outInner = kNowhere;
  bool reopened = false;       ///< stands for the rest of a divided element
  bool bare = false;           ///< its tags are no longer written
  bool toComplex = false;      ///< a simple field that has become a complex one
  bool expanded = false;       ///< was <a/> and has content now
  bool breaksLines = false;    ///< control, paragraph: it holds a line break that a control has to allow
  Offset content = 0;          ///< content control: where its content begins
  std::u16string instruction;  ///< simple field
  std::string markers;         ///< to stay when the element goes
  std::vector<std::pair<std::size_t, std::size_t>> passed;  ///< alternatives not chosen, in the output
};

/// The elements that are open in a part under edit. Knows where they stand in the output, closes them as what
/// they hold demands, and divides them where a paragraph is divided.
class OpenElements {
 public:
  /// The style of placeholders is asked for where one goes.
  OpenElements(EditedPart& part, const xml::Scanner& scanner, std::function<std::string()> placeholderStyle);

  std::size_t size() const { return opens_.size(); }
  OpenElement& operator[](std::size_t index) { return opens_[index]; }
  OpenElement& back() { return opens_.back(); }
  void push(OpenElement element) { opens_.push_back(std::move(element)); }
  /// Writes the rest of the innermost element, and tells the one around it the outcome.
  void close(Extent endTag);
  /// Takes the innermost element away, which was written by other hands.
  OpenElement pop();
  void passOn(const OpenElement& closed);
  /// Text went, directly in the innermost element.
  void loseText();
  /// Makes room for content in an element that has none.
  void expand(OpenElement& open);
  void writeEndTag(const OpenElement& open);
  /// Removes the alternatives that were not chosen: they hold the text as it was before.
  void removePassed(OpenElement& open);

  // The paragraph.
  void pushParagraph(const Tag& tag);
  bool inParagraph() const { return paragraph_ != 0; }
  std::size_t firstInParagraph() const { return paragraph_ + 1; }
  OpenElement& paragraph() { return opens_[paragraph_]; }
  OpenElement& aroundParagraph() { return opens_[paragraph_ - 1]; }
  OpenElement popParagraph();

  /// Closes elements from this index on, to be opened again after something that must not stand in them.
  void closeFrom(std::size_t from);
  void openAgainFrom(std::size_t from);
  /// New text with line breaks makes the controls around it ones that allow them.
  void holdLineBreaks(std::u16string_view units);
  void allowLineBreaks();

  /// Copies old bytes, and notes where the open elements come to stand.
  void copyTo(Offset to);

  /// How elements are written like the one at hand: the run, where one is open, or the paragraph.
  const Markup& markup() const;
  void enterRun(const Tag& tag) { run_ = tag; }
  void leaveRun() { run_.reset(); }
  std::string_view qualifiedName(const Tag& tag) const;

 private:
  void unbind(OpenElement& open);
  std::string tagToOpenAgain(std::size_t index);

  EditedPart& part_;
  const xml::Scanner& scanner_;
  std::function<std::string()> placeholderStyle_;
  std::optional<std::string> knownPlaceholderStyle_;
  std::vector<OpenElement> opens_;
  std::size_t paragraph_ = 0;  ///< index of the open paragraph; 0 when there is none
  std::optional<Tag> run_;
  mutable Markup markup_;
  mutable std::string_view markupPrefix_ = "?";
  mutable Offset markupTag_ = 0;  ///< where the tag begins that it was last asked for
};

}  // namespace pluvo::docx
