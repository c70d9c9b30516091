#include "beginning.h"

#include "base/text.h"

#include <algorithm>

namespace pluvo::elsewhere {

namespace {

/// As the engine looks for it: every line end is one paragraph mark.
std::u16string searched(std::u16string_view text) {
  std::u16string result = base::withParagraphMarks(text);
  std::replace(result.begin(), result.end(), text::kLineBreak, text::kParagraphMark);
  return result;
}

}  // namespace

Beginning::Beginning(const engine::Request& request)
    : text_(searched(request.begin)), flags_{request.matchCase, request.wholeWords} {}

const text::Search& Beginning::search() const {
  if (!search_) search_.emplace(text_, flags_);
  return *search_;
}

bool Beginning::standsIn(const text::PieceText& text, const text::RunMap<text::Visibility>& visibility,
                         bool fieldCodes) const {
  return search()
      .find(text, visibility, fieldCodes ? text::View::codes : text::View::results, 0, text.length())
      .has_value();
}

std::int64_t Beginning::countIn(const text::Stretch& text) const {
  const text::Position length = text.length;
  if (length < this->length()) return 0;
  const text::PieceText pieces{text::OriginalText(text, nullptr)};
  const text::RunMap<text::Visibility> everywhere(length, text::kEverywhere);
  std::int64_t count = 0;
  text::Position from = 0;
  while (const auto match = search().find(pieces, everywhere, text::View::results, from, length)) {
    ++count;
    from = match->to;
  }
  return count;
}

}  // namespace pluvo::elsewhere
