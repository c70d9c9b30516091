#pragma once

#include "formats/spliced_bytes.h"
#include "inline_stack.h"
#include "page.h"
#include "style_sheet.h"
#include "walker.h"

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::formats::html {

/// Old bytes and new ones, and which inline elements are open where they end. As long as these are the old
/// ones, old tags are copied. Otherwise new tags lead from the open elements to the wanted ones.
class Markup {
 public:
  /// Nothing outside the part is written.
  Markup(const Page& page, Extent part, Walker& walker)
      : page_(page),
        walker_(walker),
        out_({reinterpret_cast<const std::uint8_t*>(page.bytes().data()), part.end}) {
    out_.leaveOutTo(part.begin);
  }

  /// An inline element that is wanted around a character, or one that is open.
  struct Wrap {
    enum class Kind : std::uint8_t { old, stripped, colour };
    Kind kind = Kind::old;
    std::int32_t number = -1;  ///< of the old element
    std::uint8_t colour = 0;
    bool isSilent = false;  ///< nothing stands for it: it cannot be there twice
  };
  using Wraps = std::vector<Wrap>;

  /// From here on, up to which the old bytes are copied, the elements of a number and around it are open.
  void begin(std::size_t at, std::int32_t number, bool keepsBlanks);
  /// Whether the old tags that follow lead to the wanted elements by themselves.
  bool isAsBefore() const { return isAsBefore_; }

  /// Whether nothing was written since it began.
  bool isAtBegin() { return out_.copied() == begin_ && out_.text().size() == sizeAtBegin_; }

  std::size_t copied() const { return out_.copied(); }
  void copyTo(std::size_t to);
  void leaveOutTo(std::size_t to) { out_.leaveOutTo(to); }
  /// Copies old bytes with the tags among them, which lead to an element.
  void copyWithTags(std::size_t to, std::int32_t number);
  void put(std::string_view bytes) { out_.text() += bytes; }

  /// The elements wanted around a character of the colour. Above says in which elements it may not lie.
  Wraps wrapsFor(std::int32_t number, std::uint8_t colour) const;
  static constexpr std::int32_t kNone = -1;
  /// The element above which none is as a predicate asks; the number itself where none is.
  template <class Is>
  std::int32_t outside(std::int32_t number, Is is) const {
    for (std::int32_t at = number; at >= 0; at = walker_.inlines()[at].parent)
      if (is(walker_.inlines()[at])) number = walker_.inlines()[at].parent;
    return number;
  }

  /// Whether old tags that lead to an element are of use where a character in it gets a colour.
  bool addsTo(std::int32_t number, std::uint8_t colour) const;

  /// Closes and opens what differs.
  void lead(const Wraps& wanted);
  void leadTo(std::int32_t number, std::uint8_t colour);
  /// The same, and then old tags may follow again.
  void leadBack(std::int32_t number);
  /// Closes all elements but those open in both.
  void closeTo(std::int32_t number);

  /// The CSS of new spans against a rule of the document for spans.
  std::string against();
  std::string_view old(Extent extent) const { return page_.bytes().substr(extent.begin, extent.size()); }

  std::vector<base::ByteSpan> finish() { return out_.finish(); }

 private:
  bool isSame(const Wrap& a, const Wrap& b) const;
  std::uint8_t oursOf(const Wrap& wrap) const;
  void open(Wrap wrap);
  void close();
  void materialise();
  bool isByRule(const Inline& element) const;

  const Page& page_;
  Walker& walker_;
  formats::SplicedBytes<std::size_t> out_;
  Wraps open_;              ///< unless the next is true …
  bool isAsBefore_ = true;  ///< … and these are open:
  std::int32_t number_ = -1;
  std::size_t begin_ = 0;
  std::size_t sizeAtBegin_ = 0;
  bool keepsBlanks_ = false;      ///< the block around
  std::set<std::size_t> opened_;  ///< in the paragraph at hand: where their tags begin
  std::size_t tagBytes_ = 0;      ///< put for one character
};

}  // namespace pluvo::formats::html
