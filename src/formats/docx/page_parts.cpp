#include "page_parts.h"

#include <algorithm>
#include <map>
#include <optional>
#include <tuple>
#include <utility>

namespace pluvo::docx {

namespace {

constexpr std::string_view kSign = "erReference";

/// A reference of a section: the tag of a w:headerReference or w:footerReference.
struct Reference {
  bool isHeader = false;
  std::string_view id;
  std::string_view pages;
};

/// Takes a tag's attributes apart; false where this is no tag, as in a comment.
bool readAttributes(std::string_view rest, Reference& reference) {
  constexpr std::string_view kBlanks = " \t\r\n";
  while (true) {
    const std::size_t begin = rest.find_first_not_of(kBlanks);
    if (begin == rest.npos) return false;
    if (rest[begin] == '/' || rest[begin] == '>') return true;
    const std::size_t equals = rest.find('=', begin);
    const std::size_t quote = equals == rest.npos ? rest.npos : rest.find_first_not_of(kBlanks, equals + 1);
    if (quote == rest.npos || (rest[quote] != '"' && rest[quote] != '\'')) return false;
    const std::size_t close = rest.find(rest[quote], quote + 1);
    if (close == rest.npos || rest.substr(0, close).find('<') != rest.npos) return false;
    std::string_view name = rest.substr(begin, equals - begin);
    name = name.substr(0, name.find_last_not_of(kBlanks) + 1);
    name = name.substr(name.find(':') + 1);
    const std::string_view value = rest.substr(quote + 1, close - quote - 1);
    if (name == "id") reference.id = value;
    if (name == "type") reference.pages = value;
    rest.remove_prefix(close + 1);
  }
}

/// The reference whose name holds the sign there; none where that is something else. Looks at few bytes
/// beside it, since a hostile part may hold the sign anywhere and often.
std::optional<Reference> referenceAt(std::string_view bytes, std::size_t sign) {
  constexpr std::size_t kLongestPrefix = 256;
  constexpr std::size_t kLongestTag = 4096;
  constexpr std::size_t kStem = 4;
  if (sign < kStem + 1) return std::nullopt;
  const std::string_view stem = bytes.substr(sign - kStem, kStem);
  if (stem != "head" && stem != "foot") return std::nullopt;
  std::size_t begin = sign - kStem - 1;
  if (bytes[begin] == ':') {
    const std::size_t from = begin - std::min(begin, kLongestPrefix);
    const std::size_t open = bytes.substr(from, begin - from).find_last_of("<: \t\r\n/>\"'");
    if (open == std::string_view::npos) return std::nullopt;
    begin = from + open;
  }
  if (bytes[begin] != '<') return std::nullopt;
  Reference reference{stem == "head", {}, {}};
  const bool isTag = readAttributes(bytes.substr(sign + kSign.size(), kLongestTag), reference);
  return isTag ? std::optional(reference) : std::nullopt;
}

/// Where in the document a part is used first.
struct Use {
  std::size_t section = 0;
  int rank = 0;
  document::PageUse use;
  auto order() const { return std::tie(section, rank); }
};

struct UsedPart {
  std::string part;
  std::vector<Use> uses;

  bool comesBefore(const UsedPart& other) const {
    if (!uses.empty() && !other.uses.empty() && uses.front().order() != other.uses.front().order())
      return uses.front().order() < other.uses.front().order();
    return std::tuple(uses.empty(), part.size(), std::string_view(part)) <
           std::tuple(other.uses.empty(), other.part.size(), std::string_view(other.part));
  }
};

int rankOf(std::string_view pages) { return pages == "first" ? 0 : pages == "even" ? 2 : 1; }

}  // namespace

word::WdStoryType kindOnPages(bool isHeader, std::string_view pages) {
  const bool first = pages == "first";
  const bool even = pages == "even";
  if (isHeader)
    return first  ? word::wdFirstPageHeaderStory
           : even ? word::wdEvenPagesHeaderStory
                  : word::wdPrimaryHeaderStory;
  return first  ? word::wdFirstPageFooterStory
         : even ? word::wdEvenPagesFooterStory
                : word::wdPrimaryFooterStory;
}

std::vector<PagePart> pageParts(const Package& package, base::ByteSpan mainPart, const BodyMap& map) {
  std::vector<UsedPart> found;
  std::map<std::string, std::size_t> byName;
  std::map<std::string, std::size_t, std::less<>> byId;
  for (const Relationship& relationship : package.mainRelationships) {
    if (relationship.kind() != "header" && relationship.kind() != "footer") continue;
    const auto [known, isNew] = byName.emplace(relationship.part, found.size());
    byId[relationship.id] = known->second;
    if (isNew) found.push_back({relationship.part, {}});
  }
  if (found.empty()) return {};
  const std::string_view bytes(reinterpret_cast<const char*>(mainPart.data()), mainPart.size());
  for (std::size_t at = bytes.find(kSign); at != bytes.npos; at = bytes.find(kSign, at + 1)) {
    const std::optional<Reference> reference = referenceAt(bytes, at);
    const auto part = reference ? byId.find(reference->id) : byId.end();
    if (part == byId.end()) continue;
    const auto mark = std::upper_bound(
        map.sectionMarks.begin(), map.sectionMarks.end(), at,
        [](std::size_t place, const BodyMap::SectionMark& each) { return place < each.propertiesEnd; });
    const bool isLast = mark == map.sectionMarks.end();
    found[part->second].uses.push_back(
        {static_cast<std::size_t>(mark - map.sectionMarks.begin()),
         rankOf(reference->pages),
         {isLast ? text::kMaxLength : mark->position, kindOnPages(reference->isHeader, reference->pages)}});
  }
  for (UsedPart& part : found)
    std::stable_sort(part.uses.begin(), part.uses.end(),
                     [](const Use& a, const Use& b) { return a.order() < b.order(); });
  std::sort(found.begin(), found.end(),
            [](const UsedPart& a, const UsedPart& b) { return a.comesBefore(b); });
  std::vector<PagePart> parts;
  for (UsedPart& part : found) {
    parts.push_back({std::move(part.part), {}});
    for (const Use& use : part.uses) parts.back().uses.push_back(use.use);
  }
  return parts;
}

}  // namespace pluvo::docx
