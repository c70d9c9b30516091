#pragma once

#include "new_markup.h"
#include "open_elements.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::docx {

/// The content under way to the next paragraph: the rest of one that lost its mark, markers met since, and
/// new text after a mark. Text with marks of its own comes as paragraphs before it.
class UnderWay {
 public:
  UnderWay(EditedPart& part, OpenElements& opens) : part_(part), opens_(opens) {}

  bool empty() const { return !hasContent() && blocks_.empty() && waiting_.empty(); }
  bool hasContent() const { return !content_.empty() || other_ == Other::awaited; }
  bool waits() const { return !waiting_.empty(); }
  bool hasBlocks() const { return !blocks_.empty(); }
  /// Text is under way, and not only markers.
  bool hasText() const { return hasText_; }

  /// New text is to stand at the beginning of the next paragraph. The paragraphs it consists of begin as
  /// given, or like that paragraph.
  void wait(const Step& put, std::string runProperties = {}, ParagraphStart start = {});
  /// Makes markup of what waits.
  void place(const ParagraphStart& start);
  void place() { place(plainStart()); }
  /// Text that ends with a mark of its own stays outside a table or control that follows it; other text joins
  /// its first paragraph.
  void placeBefore(const Tag& tableOrControl);

  /// The content for the next paragraph, to be added to.
  std::string& content() { return content_; }
  /// The rest of a paragraph joined the content.
  void join(const OpenElement& paragraph);
  void writeBlocks();
  void writeContent();
  /// At the end of a container that lacks a last paragraph, gives the content under way one. That is so where
  /// there is any content, or the container lost its own.
  void writeLastParagraph(Extent endTag);

  // A part may be rewritten from a place on where content is under way that another writes.
  /// To be called there; there is text in that content.
  void followOther() {
    other_ = Other::awaited;
    hasText_ = true;
  }
  bool followsOther() const { return other_ != Other::none; }
  /// The other's content is still under way, in front of this one's.
  bool awaitsOther() const { return other_ == Other::awaited; }
  bool canBeJoined() const { return other_ != Other::lost; }
  /// Where in the output that content belongs, once it is known.
  std::size_t joint() const { return joint_; }
  void moveJoint(std::size_t from, std::size_t to) {
    if (joint_ == from) joint_ = to;
  }
  /// Whether text is under way and nothing else, as one that follows expects.
  bool isText() const {
    return hasContent() && hasText_ && !hasBreak_ && blocks_.empty() && waiting_.empty();
  }
  /// Whether nothing is under way, nor known of what was.
  bool isForgotten() const { return empty() && !hasText_ && !hasBreak_; }

 private:
  /// lost: it would have to go where it cannot be put in later.
  enum class Other : std::uint8_t { none, awaited, placed, lost };

  struct Waiting {
    Step put;
    std::string runProperties;
    ParagraphStart start;
    std::string_view deletion;  ///< the one to take after
  };

  ParagraphStart plainStart() const { return {opens_.markup().tag("p") + ">", {}}; }

  EditedPart& part_;
  OpenElements& opens_;
  std::string blocks_;
  std::string content_;
  bool hasText_ = false;
  bool hasBreak_ = false;
  std::vector<Waiting> waiting_;
  Other other_ = Other::none;
  std::size_t joint_ = std::string::npos;
};

}  // namespace pluvo::docx
