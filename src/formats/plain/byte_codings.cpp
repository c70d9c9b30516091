#include "byte_codings.h"

#include <array>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace pluvo::plain {

using text::ByteCoding;

namespace {

std::unique_ptr<const ByteCoding> madeOfWindows1252() {
  std::array<char16_t, 256> singles{};
  for (unsigned value = 0; value < singles.size(); ++value) {
    const auto byte = static_cast<std::uint8_t>(value);
    const bool isAssigned = isAssignedInWindows1252(base::ByteSpan(&byte, 1));
    singles[value] = isAssigned ? unitOfWindows1252(byte) : ByteCoding::kNone;
  }
  return std::make_unique<const ByteCoding>(singles);
}

std::unique_ptr<const ByteCoding> madeOf(const CodePage& page) {
  std::array<char16_t, 256> singles{};
  std::vector<ByteCoding::Lead> leads;
  const auto unitOf = [&](base::ByteSpan bytes) {
    const Character character = page.first(bytes);
    const bool isUnit = character.valid && character.bytes == bytes.size() && character.codePoint <= 0xFFFF;
    return isUnit ? static_cast<char16_t>(character.codePoint) : ByteCoding::kNone;
  };
  for (unsigned first = 0; first < singles.size(); ++first) {
    std::array<std::uint8_t, 2> bytes = {static_cast<std::uint8_t>(first), 0};
    singles[first] = unitOf(base::ByteSpan(bytes).first(1));
    if (singles[first] != ByteCoding::kNone || page.isSingleByte()) continue;
    ByteCoding::Lead lead{bytes[0]};
    bool any = false;
    for (unsigned second = 0; second < lead.pairs.size(); ++second) {
      bytes[1] = static_cast<std::uint8_t>(second);
      lead.pairs[second] = unitOf(bytes);
      any = any || lead.pairs[second] != ByteCoding::kNone;
    }
    if (any) leads.push_back(lead);
  }
  return std::make_unique<const ByteCoding>(singles, leads);
}

}  // namespace

const ByteCoding* byteCodingOf(const Coding& coding) {
  static const ByteCoding kLittle(ByteCoding::Kind::littleUnits);
  static const ByteCoding kBig(ByteCoding::Kind::bigUnits);
  static std::mutex mutex;
  static std::map<const CodePage*, std::unique_ptr<const ByteCoding>> all;  // null: Windows-1252
  if (coding.encoding == Encoding::utf8 || (coding.page != nullptr && !coding.page->keepsAscii()))
    return nullptr;
  if (isUtf16(coding.encoding)) return coding.encoding == Encoding::utf16Little ? &kLittle : &kBig;
  const std::lock_guard lock(mutex);
  auto& made = all[coding.page];
  if (made == nullptr) made = coding.page == nullptr ? madeOfWindows1252() : madeOf(*coding.page);
  return made.get();
}

}  // namespace pluvo::plain
