#include "shifts.h"

#include "errors/document_error.h"
#include "names.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace pluvo::plain {

namespace {

constexpr char kEscape = 0x1B;

bool isOneOf(char c, std::string_view all) { return all.find(c) != std::string_view::npos; }

/// The choice of a set of characters of two bytes, or of Japanese ones of one byte. Terminals choose other
/// sets by such sequences too, and colours by others.
bool choosesSet(std::string_view sequence) {
  if (sequence.size() < 3) return false;
  if (sequence[1] == '(') return sequence[2] == 'I';
  if (sequence[1] != '$') return false;
  if (isOneOf(sequence[2], "@AB")) return true;
  return sequence.size() > 3 && isOneOf(sequence[2], "()*+") && sequence[3] >= '@' && sequence[3] <= 'M';
}

/// "~{", pairs of bytes, "~}", in one line.
bool isChineseInHz(std::string_view sequence) {
  std::size_t at = 2;
  if (sequence.size() < at || sequence[1] != '{') return false;
  while (at + 1 < sequence.size() && sequence[at] >= 0x21 && sequence[at] <= 0x77 &&
         sequence[at + 1] >= 0x21 && sequence[at + 1] <= 0x7E)
    at += 2;
  return at > 2 && sequence.substr(at).starts_with("~}");
}

bool any(std::string_view text, char first, bool (*holds)(std::string_view)) {
  for (std::size_t at = text.find(first); at != std::string_view::npos; at = text.find(first, at + 1))
    if (holds(text.substr(at))) return true;
  return false;
}

}  // namespace

void requireNoShifts(base::ByteSpan bytes) {
  constexpr std::size_t kLookedAt = std::size_t{1024} * 1024;
  const base::ByteSpan front = bytes.first(std::min(bytes.size(), kLookedAt));
  const std::string_view text(reinterpret_cast<const char*>(front.data()), front.size());
  if (any(text, kEscape, choosesSet)) throw statefulEncoding("ISO-2022");
  if (any(text, '~', isChineseInHz)) throw statefulEncoding("HZ");
}

}  // namespace pluvo::plain
