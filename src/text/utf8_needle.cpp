#include "utf8_needle.h"

#include "base/same_bytes.h"
#include "base/utf.h"
#include "characters.h"
#include "probing.h"
#include "utf8.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace pluvo::text {

namespace {

std::string utf8Of(char32_t point) {
  std::string bytes;
  base::appendUtf8(bytes, point);
  return bytes;
}

/// Leads are as frequent as characters of their script, followers about as letters.
std::size_t rarityOfByte(std::uint8_t byte, std::size_t length) {
  if (byte < 0x80) return rarity(byte);
  if (base::isUtf8Follower(byte)) return 12 + length;
  return length == 4 ? 20 : 2;
}

}  // namespace

/// A character, or half of one, and all the ways to write it.
struct Utf8Needle::Sign {
  std::vector<std::string> forms;
  bool isMark = false;

  std::size_t least() const {
    std::size_t least = 4;
    for (const std::string& form : forms) least = std::min(least, form.size());
    return least;
  }
  /// Whether the characters after it lie at the same distance in every form.
  bool isFixed() const {
    return !isMark && std::all_of(forms.begin(), forms.end(), [&](const std::string& form) {
      return form.size() == forms.front().size();
    });
  }
};

std::vector<Utf8Needle::Sign> Utf8Needle::signsOf(std::u16string_view units, bool matchCase) {
  std::vector<Sign> signs;
  for (std::size_t i = 0; i < units.size(); ++i) {
    const char16_t unit = units[i];
    if (unit == kParagraphMark) {
      signs.push_back({{"\n", "\r", "\v"}, true});
    } else if (isHighSurrogate(unit) && i + 1 < units.size() && isLowSurrogate(units[i + 1])) {
      signs.push_back({{utf8Of(joinSurrogates(unit, units[++i]))}});
    } else if (isHighSurrogate(unit) || isLowSurrogate(unit) || unit == u'\n') {
      return {};
    } else {
      const FoldVariants variants = matchCase ? FoldVariants{{unit}, 1} : foldVariants(unit);
      Sign sign;
      for (int form = 0; form < variants.count; ++form)
        sign.forms.push_back(utf8Of(variants.units[static_cast<std::size_t>(form)]));
      signs.push_back(std::move(sign));
    }
  }
  return signs;
}

Utf8Needle::Utf8Needle(std::u16string_view units, bool matchCase, const NarrowForms& forms)
    : matchCase_(matchCase), forms_(forms) {
  const std::vector<Sign> signs = signsOf(units, matchCase);
  if (signs.empty()) return;
  const bool one =
      std::all_of(signs.begin(), signs.end(), [](const Sign& sign) { return sign.forms.size() == 1; });
  for (const Sign& sign : signs) {
    if (one) exact_ += sign.forms.front();
  }
  for (std::size_t i = 0; i < units.size(); ++i) {
    const bool pair = isHighSurrogate(units[i]);
    signs_ += pair ? joinSurrogates(units[i], units[i + 1]) : units[i];
    if (pair) ++i;
  }
  choose(signs);
  for (std::size_t i = anchor_; i < signs.size(); ++i) leastFromAnchor_ += signs[i].least();
  for (std::size_t i = 0; one && i < anchor_; ++i) exactBefore_ += signs[i].forms.front().size();
}

/// Takes the two rarest bytes of a row of signs whose distances are fixed, from the row where they are
/// rarest.
void Utf8Needle::choose(const std::vector<Sign>& signs) {
  struct Candidate {
    Probe<std::uint8_t> probe;
    std::size_t rarity = 0;
  };
  std::size_t bestOfAll = 0;
  const std::size_t end = std::min(signs.size(), kProbed);
  for (std::size_t first = 0, after = 0; first < end; first = after) {
    std::optional<Candidate> best;
    std::optional<Candidate> second;
    std::size_t offset = 0;
    bool fixed = true;
    for (after = first; fixed && after < end; ++after) {
      const Sign& sign = signs[after];
      for (std::size_t i = 0; i < sign.least(); ++i) {
        std::vector<std::uint8_t> bytes;
        for (const std::string& form : sign.forms) bytes.push_back(static_cast<std::uint8_t>(form[i]));
        const auto probe = probeFor(bytes, offset + i);
        if (!probe) continue;
        const Candidate candidate{*probe, 1 + rarityOfByte(bytes.front(), sign.forms.front().size())};
        if (!best || candidate.rarity > best->rarity) {
          second = std::exchange(best, candidate);
        } else if (!second || candidate.rarity >= second->rarity) {
          second = candidate;
        }
      }
      fixed = sign.isFixed();
      offset += sign.least();
    }
    const std::size_t both = (best ? best->rarity : 0) + (second ? second->rarity : 0);
    if (both <= bestOfAll) continue;
    bestOfAll = both;
    anchor_ = first;
    probes_ = ProbePair<std::uint8_t>{best->probe, second ? second->probe : best->probe};
  }
}

bool Utf8Needle::is(char32_t point, std::size_t sign) const {
  if (point < 0x80) return forms_[point] == signs_[sign];
  if (point <= 0xFFFF && !matchCase_) point = foldCase(static_cast<char16_t>(point));
  return point == signs_[sign];
}

Utf8Needle::Match Utf8Needle::matchAt(Bytes bytes, std::size_t anchor, std::size_t& work) const {
  if (!exact_.empty()) {
    const std::size_t from = anchor - exactBefore_;
    const bool inside = anchor >= exactBefore_ && bytes.size() - from >= exact_.size();
    constexpr std::size_t kFront = 16;
    const std::size_t front = std::min(exact_.size(), kFront);
    if (!inside || !base::sameBytes(bytes.data() + from, exact_.data(), front)) return {};
    work += exact_.size() / kFront;
    const bool same =
        base::sameBytes(bytes.data() + from + front, exact_.data() + front, exact_.size() - front);
    return same ? Match{from, from + exact_.size()} : Match{};
  }
  if (base::isUtf8Follower(bytes[anchor])) return {};
  if (bytes[anchor] == '\n' && anchor > 0 && bytes[anchor - 1] == '\r') return {};
  std::size_t to = anchor;
  for (std::size_t sign = anchor_; sign < signs_.size(); ++sign) {
    ++work;
    if (to >= bytes.size()) return {};
    const Utf8Character character = utf8At(bytes, to);
    if (!is(character.point, sign)) return {};
    to += character.bytes;
  }
  std::size_t from = anchor;
  for (std::size_t sign = anchor_; sign-- > 0;) {
    ++work;
    if (from == 0) return {};
    from = utf8Before(bytes, 0, from);
    if (!is(utf8At(bytes, from).point, sign)) return {};
  }
  return {from, to};
}

Utf8Needle::Match Utf8Matcher::next() {
  constexpr std::size_t kWorkPerByte = 4;
  constexpr std::size_t kFreeWork = 4096;
  while (!gaveUpAt_) {
    while (hits_.places != 0) {
      const std::size_t place = hits_.start + static_cast<std::size_t>(std::countr_zero(hits_.places));
      hits_.places &= hits_.places - 1;
      if (work_ > kWorkPerByte * place + kFreeWork) {
        gaveUpAt_ = place;
        return {};
      }
      const Utf8Needle::Match match = needle_->matchAt(bytes_, place, work_);
      if (match.from != Utf8Needle::kNone) return match;
    }
    if (position_ >= places_) return {};
    hits_ = nextHits(bytes_.data(), position_, places_, *needle_->probes());
    position_ = std::min(hits_.start + kHitsWidth, places_);
  }
  return {};
}

}  // namespace pluvo::text
