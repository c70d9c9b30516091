#include "scanner/mask.h"

#include "text/folding.h"

#include <optional>
#include <string>

namespace pluvo::scanner {

namespace {

bool isWildcard(char16_t unit) { return unit == u'*' || unit == u'?'; }

}  // namespace

Mask::Mask(std::u16string_view mask) {
  const std::u16string folded = text::foldCase(mask);
  for (std::size_t i = 0; i < folded.size(); ++i) {
    const std::u16string_view rest = std::u16string_view(folded).substr(i);
    if (rest == u"*.") {
      tokens_.push_back({Kind::restWithoutDot, 0});
      return;
    }
    const bool looseDot = rest[0] == u'.' && (rest.size() == 1 || isWildcard(rest[1]));
    const Kind kind = rest[0] == u'*'   ? Kind::anyUnits
                      : rest[0] == u'?' ? Kind::oneUnit
                      : looseDot        ? Kind::dotOrEnd
                                        : Kind::unit;
    tokens_.push_back({kind, rest[0]});
  }
  if (tokens_.empty()) tokens_.push_back({Kind::anyUnits, 0});
  takesAll_ = mask.empty() || mask == u"*" || mask == u"*.*";
}

bool Mask::fits(std::u16string_view name) const {
  const std::u16string folded = text::foldCase(name);
  const auto isDot = [&](std::size_t at) { return at < folded.size() && folded[at] == u'.'; };
  /// Where the name goes on after a token that is matched at a place.
  const auto after = [&](const Token& token, std::size_t at) -> std::optional<std::size_t> {
    const bool ended = at == folded.size();
    switch (token.kind) {
      case Kind::oneUnit:
        return ended || isDot(at) ? at : at + 1;
      case Kind::dotOrEnd:
        if (ended || isDot(at)) return ended ? at : at + 1;
        return std::nullopt;
      case Kind::restWithoutDot:
        if (const std::size_t dot = folded.find(u'.', at); dot >= folded.size() - 1) return folded.size();
        return std::nullopt;
      default:
        if (!ended && folded[at] == token.unit) return at + 1;
        return std::nullopt;
    }
  };

  struct Star {
    std::size_t token;
    std::size_t end;  ///< of the characters it takes
  };
  std::optional<Star> star;
  std::size_t at = 0;
  std::size_t next = 0;
  while (next < tokens_.size() || at < folded.size()) {
    if (next < tokens_.size() && tokens_[next].kind == Kind::anyUnits) {
      star = Star{next++, at};
      continue;
    }
    const auto end = next < tokens_.size() ? after(tokens_[next], at) : std::nullopt;
    if (end) {
      at = *end;
      ++next;
      continue;
    }
    // The last star takes one unit more.
    if (!star || star->end == folded.size()) return false;
    at = ++star->end;
    next = star->token + 1;
  }
  return true;
}

}  // namespace pluvo::scanner
