#include "byte_needle.h"

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

/// Elsewhere the same bytes may be a match.
ByteNeedle::Match refusedAtAnEnd(ByteNeedle::Match& compared) {
  compared = {0, 0};
  return {};
}

}  // namespace

std::size_t ByteNeedle::Sign::least() const {
  std::size_t least = 4;
  for (const std::string& form : forms) least = std::min(least, form.size());
  return least;
}

/// Whether the characters after it lie at the same distance in every form.
bool ByteNeedle::Sign::isFixed() const {
  return !isMark && std::all_of(forms.begin(), forms.end(),
                                [&](const std::string& form) { return form.size() == forms.front().size(); });
}

std::vector<ByteNeedle::Sign> ByteNeedle::signsOf(std::u16string_view units, bool matchCase) {
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

/// None where an end of a line in UTF-16 might be the last one, which has no bytes.
std::vector<ByteNeedle::Sign> ByteNeedle::signsIn(const ByteCoding& coding, std::u16string_view units) const {
  std::vector<Sign> signs;
  for (const char16_t unit : units) {
    if (unit == u'\n' || (unit == kParagraphMark && coding.isUtf16())) return {};
    if (unit == kParagraphMark) {
      signs.push_back({{"\n", "\r", "\v"}, true});
      continue;
    }
    const FoldVariants variants = matchCase_ ? FoldVariants{{unit}, 1} : foldVariants(unit);
    Sign sign;
    for (int variant = 0; variant < variants.count; ++variant)
      for (const auto& form : coding.formsOf(variants.units[static_cast<std::size_t>(variant)]))
        sign.forms.emplace_back(form.begin(), form.end());
    signs.push_back(std::move(sign));
  }
  return signs;
}

ByteNeedle::ByteNeedle(std::u16string_view units, bool matchCase, const NarrowForms& forms,
                       const ByteCoding* coding)
    : matchCase_(matchCase), forms_(forms), coding_(coding) {
  const std::vector<Sign> signs = coding != nullptr ? signsIn(*coding, units) : signsOf(units, matchCase);
  if (signs.empty()) return;
  isImpossible_ =
      std::any_of(signs.begin(), signs.end(), [](const Sign& sign) { return sign.forms.empty(); });
  if (isImpossible_) {
    probes_.emplace();
    return;
  }
  hasMark_ = std::any_of(signs.begin(), signs.end(), [](const Sign& sign) { return sign.isMark; });
  if (coding != nullptr) coded_ = signs;
  const bool one =
      std::all_of(signs.begin(), signs.end(), [](const Sign& sign) { return sign.forms.size() == 1; });
  for (const Sign& sign : signs) {
    if (one) exact_ += sign.forms.front();
  }
  for (std::size_t i = 0; coding == nullptr && i < units.size(); ++i) {
    const bool pair = isHighSurrogate(units[i]);
    signs_ += pair ? joinSurrogates(units[i], units[i + 1]) : units[i];
    if (pair) ++i;
  }
  choose(signs);
  for (std::size_t i = anchor_; i < signs.size(); ++i) leastFromAnchor_ += signs[i].least();
  for (std::size_t i = 0; one && i < anchor_; ++i) exactBefore_ += signs[i].forms.front().size();
}

std::size_t ByteNeedle::rarityIn(const Sign& sign, std::size_t byte) const {
  const std::string& form = sign.forms.front();
  const auto value = static_cast<std::uint8_t>(form[byte]);
  if (coding_ == nullptr) return rarityOfByte(value, form.size());
  // The upper half of a unit is much the same in a whole text, as is a lead; the rest is like letters.
  const bool isUpper =
      coding_->isUtf16() && byte == (coding_->kind() == ByteCoding::Kind::littleUnits ? 1U : 0U);
  if (isUpper || (byte == 0 && form.size() == 2 && !coding_->isUtf16())) return 0;
  return value < 0x80 && form.size() == coding_->leastBytes() ? rarity(value) : 14;
}

/// Takes the two rarest bytes of a row of signs whose distances are fixed, from the row where they are
/// rarest.
void ByteNeedle::choose(const std::vector<Sign>& signs) {
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
        const Candidate candidate{*probe, 1 + rarityIn(sign, i)};
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

bool ByteNeedle::is(char32_t point, std::size_t sign) const {
  if (point < 0x80) return forms_[point] == signs_[sign];
  if (point <= 0xFFFF && !matchCase_) point = foldCase(static_cast<char16_t>(point));
  return point == signs_[sign];
}

bool ByteNeedle::isAt(Bytes bytes, std::size_t from, std::string_view form, std::size_t& work) const {
  constexpr std::size_t kFront = 16;
  const std::size_t front = std::min(form.size(), kFront);
  const std::uint8_t* const at = bytes.data() + from;
  if (form.size() > bytes.size() - from || !base::sameBytes(at, form.data(), front)) return false;
  work += form.size() / kFront;
  if (!base::sameBytes(at + front, form.data() + front, form.size() - front)) return false;
  return coding_ == nullptr || coding_->beginsUnit(bytes, from, work);
}

ByteNeedle::Match ByteNeedle::matchAt(Bytes bytes, std::size_t anchor, std::size_t& work,
                                      Match& compared) const {
  if (!exact_.empty()) {
    const std::size_t from = anchor - exactBefore_;
    if (anchor < exactBefore_ || !isAt(bytes, from, exact_, work)) return {};
    return {from, from + exact_.size()};
  }
  compared = {anchor, anchor};
  if (coding_ != nullptr) return compared = matchInCoding(bytes, anchor, work);
  if (base::isUtf8Follower(bytes[anchor])) return {};
  if (bytes[anchor] == '\n' && anchor > 0 && bytes[anchor - 1] == '\r') return {};
  for (std::size_t sign = anchor_; sign < signs_.size(); ++sign) {
    ++work;
    if (compared.to >= bytes.size()) return refusedAtAnEnd(compared);
    const Utf8Character character = utf8At(bytes, compared.to);
    compared.to += character.bytes;
    if (!is(character.point, sign)) return {};
  }
  for (std::size_t sign = anchor_; sign-- > 0;) {
    ++work;
    if (compared.from == 0) return refusedAtAnEnd(compared);
    compared.from = utf8Before(bytes, 0, compared.from);
    if (!is(utf8At(bytes, compared.from).point, sign)) return {};
  }
  return compared;
}

/// Bytes are compared on both sides of the anchor. The first of them tells whether all of them are units: of
/// two bytes the second may be any other unit's byte.
ByteNeedle::Match ByteNeedle::matchInCoding(Bytes bytes, std::size_t anchor, std::size_t& work) const {
  const std::string_view all(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  constexpr std::string_view kPair = "\r\n";
  if (all[anchor] == '\n' && anchor > 0 && all[anchor - 1] == '\r' && !coding_->isUtf16()) return {};
  std::size_t to = anchor;
  for (std::size_t sign = anchor_; sign < coded_.size(); ++sign) {
    ++work;
    const std::string_view rest = all.substr(to);
    const auto& forms = coded_[sign].forms;
    const auto form = std::find_if(forms.begin(), forms.end(),
                                   [&](const std::string& each) { return rest.starts_with(each); });
    if (form == forms.end()) return {};
    to += coded_[sign].isMark && rest.starts_with(kPair) ? kPair.size() : form->size();
  }
  std::size_t from = anchor;
  for (std::size_t sign = anchor_; sign-- > 0;) {
    ++work;
    const std::string_view front = all.substr(0, from);
    const auto& forms = coded_[sign].forms;
    // Of one byte and of two that end with it only one is a unit.
    const bool mayEndAlike = !coded_[sign].isMark && !coded_[sign].isFixed();
    const auto form = std::find_if(forms.begin(), forms.end(), [&](const std::string& each) {
      return front.ends_with(each) && (!mayEndAlike || coding_->beginsUnit(bytes, from - each.size(), work));
    });
    if (form == forms.end()) return {};
    from -= coded_[sign].isMark && front.ends_with(kPair) ? kPair.size() : form->size();
  }
  return coding_->beginsUnit(bytes, from, work) ? Match{from, to} : Match{};
}

ByteNeedle::Match ByteMatcher::matchAt(std::size_t anchor) {
  ByteNeedle::Match compared;
  if (!needle_->hasForms()) return needle_->matchAt(bytes_, anchor, work_, compared);
  for (const Compared& known : compared_) {
    const std::size_t from = anchor - known.before;
    if (known.bytes.empty() || anchor < known.before || !needle_->isAt(bytes_, from, known.bytes, work_))
      continue;
    return known.isMatch ? ByteNeedle::Match{from, from + known.bytes.size()} : ByteNeedle::Match{};
  }
  const ByteNeedle::Match match = needle_->matchAt(bytes_, anchor, work_, compared);
  const bool isMatch = match.from != ByteNeedle::kNone;
  constexpr std::size_t kFew = 4;  // told as quickly anew
  if (!isMatch && (!needle_->hasRefusals() || compared.to - compared.from <= kFew)) return match;
  const ByteNeedle::Bytes bytes = bytes_.subspan(compared.from, compared.to - compared.from);
  compared_[oldest_] = {std::string(bytes.begin(), bytes.end()), anchor - compared.from, isMatch};
  oldest_ = (oldest_ + 1) % compared_.size();
  return match;
}

ByteNeedle::Match ByteMatcher::next() {
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
      const ByteNeedle::Match match = matchAt(place);
      if (match.from != ByteNeedle::kNone) return match;
    }
    if (position_ >= places_) return {};
    hits_ = nextHits(bytes_.data(), position_, places_, *needle_->probes());
    position_ = std::min(hits_.start + kHitsWidth, places_);
  }
  return {};
}

}  // namespace pluvo::text
