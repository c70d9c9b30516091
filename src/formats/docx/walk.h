#pragma once

#include "body_events.h"
#include "document/content_builder.h"
#include "errors/document_error.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::docx {

/// How far a walk goes: through main text alone, the first other story it meets, or every story of a part
/// with those in drawings. A story lies within an element of another and has positions of its own.
enum class Reach : std::uint8_t { mainText, oneStory, everyStory };

/// How text is told: as units wherever it is not ASCII, or as bytes wherever they are all there is to it.
enum class Told : bool { units, bytes };

/// The fields that are open at a place of a walk.
class OpenFields {
 public:
  bool empty() const { return open_.empty(); }
  void begin(bool simple) {
    constexpr std::size_t kDeepest = document::ContentBuilder::kDeepest;
    if (open_.size() == kDeepest) {
      throw errors::DocumentError(errors::Problem::tooLarge, "The document has fields nested " +
                                                                 std::to_string(kDeepest) +
                                                                 " deep, which is more than is worked on.");
    }
    open_.push_back({simple, simple});
  }
  /// Whether the innermost one may have this mark next.
  bool takesSeparator() const { return !open_.empty() && !open_.back().inResult; }
  bool takesEnd() const { return !open_.empty() && !open_.back().simple; }
  void separate() { open_.back().inResult = true; }
  void end() { open_.pop_back(); }
  /// Of a field at any depth; the results of fields within a code are part of it.
  bool inCode() const {
    return std::any_of(open_.rbegin(), open_.rend(), [](const Field& f) { return !f.inResult; });
  }

 private:
  struct Field {
    bool inResult = false;
    bool simple = false;
  };
  std::vector<Field> open_;
};

/// Where a walk through a part is, and whom it tells.
struct Walk {
  enum class Context : std::uint8_t { root, blocks, table, row, inlines, run, ruby, outside };
  struct Open {
    Tag tag;
    Context within;
    bool endsWithParagraph = false;  ///< body and cell: the last block was a paragraph
    bool hasCells = false;           ///< row
    bool preserves = false;          ///< text in it keeps its blanks
    Position from = 0;               ///< where it was opened
  };

  bool throughEveryStory() const { return reach == Reach::everyStory; }
  Extent tokenExtent() const { return {scanner.begin(), scanner.end()}; }
  void skip(xml::Token token) {
    if (token == xml::Token::start) scanner.skipElement();
  }
  void push(Name name, xml::Token token, Context within) {
    const bool keepsBlanks = preserves();
    stack.push_back(
        {{name, tokenExtent(), token == xml::Token::empty}, within, false, false, keepsBlanks, position});
  }
  /// Blanks at the ends of text, by the element at hand or else by the nearest one around it that says so.
  bool preserves() const {
    if (!scanner.attributes().empty()) {
      const xml::Attribute* const space = attribute(scanner, Name::space);
      if (space != nullptr) return scanner.rawValue(*space) == "preserve";
    }
    return !stack.empty() && stack.back().preserves;
  }
  void advance(std::size_t count) {
    if (count > static_cast<std::size_t>(text::kMaxLength - position)) {
      throw errors::DocumentError(errors::Problem::tooLarge,
                                  "The document's text is too long to be worked on.");
    }
    position += static_cast<Position>(count);
  }

  xml::Scanner scanner;
  BodyEvents* events;
  Reach reach;
  Told told = Told::units;
  Position position = 0;
  std::vector<Open> stack = {};
  OpenFields fields = {};
};

}  // namespace pluvo::docx
