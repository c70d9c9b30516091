#include "identifiers.h"

#include "fragment.h"
#include "names.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace pluvo::docx {

namespace {

constexpr std::array<std::string_view, 5> kNumbered = {"ins", "del", "moveFrom", "moveTo", "rPrChange"};

/// Ids are non-negative 32-bit numbers.
constexpr std::uint32_t kMost = 0x7FFFFFFE;

std::vector<std::uint32_t> idsIn(base::ByteSpan part, const std::string& partName) {
  std::vector<std::uint32_t> ids;
  xml::Scanner scanner(part, vocabulary(), partName);
  for (xml::Token token = scanner.next(); token != xml::Token::finish; token = scanner.next()) {
    if (token != xml::Token::start && token != xml::Token::empty) continue;
    const xml::Attribute* const found = attribute(scanner, Name::id);
    if (found == nullptr) continue;
    const std::string_view value = scanner.rawValue(*found);
    std::uint32_t id = 0;
    if (std::from_chars(value.data(), value.data() + value.size(), id).ec == std::errc()) ids.push_back(id);
  }
  std::sort(ids.begin(), ids.end());
  return ids;
}

}  // namespace

std::string Identifiers::withFreshIds(std::string_view markup) {
  std::string result;
  std::size_t copied = 0;
  for (std::size_t at = nextElement(markup, 0); at != std::string_view::npos;
       at = nextElement(markup, at + 1)) {
    const Fragment element = fragmentOf(markup.substr(at));
    if (std::find(kNumbered.begin(), kNumbered.end(), element.local()) == kNumbered.end()) continue;
    const std::string wanted = std::string(element.prefix()) + "id";
    forEachAttribute(element.startTag,
                     [&](std::string_view name, std::string_view value, std::size_t, std::size_t) {
                       if (name != wanted) return;
                       const auto valueAt = static_cast<std::size_t>(value.data() - markup.data());
                       result.append(markup.substr(copied, valueAt - copied)).append(std::to_string(fresh()));
                       copied = valueAt + value.size();
                     });
  }
  result.append(markup.substr(copied));
  return result;
}

std::uint32_t Identifiers::fresh() {
  if (others_ != nullptr) return others_->fresh();
  if (!last_) {
    used_ = idsIn(part_, partName_);
    last_ = used_.empty() ? 0 : used_.back();
  }
  std::uint32_t next = *last_ >= kMost ? 1 : *last_ + 1;
  for (auto at = std::lower_bound(used_.begin(), used_.end(), next); at != used_.end() && *at == next; ++at) {
    while (at + 1 != used_.end() && *(at + 1) == next) ++at;
    ++next;
  }
  last_ = next;
  return next;
}

}  // namespace pluvo::docx
