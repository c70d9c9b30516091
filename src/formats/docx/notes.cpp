#include "notes.h"

#include "xml/encoding.h"

#include <functional>

namespace pluvo::docx {

using xml::Token;
using Ids = std::set<std::string>;

namespace {

/// What becomes of an element directly in a part's root.
enum class Fate : std::uint8_t { stays, goes, losesParent };

/// Walks the elements in a part's root; inside(scanner) sees every element within one that goes.
class PartFilter {
 public:
  PartFilter(const Package& package, Role role) : member_(package.member(role)) {
    if (member_ != nullptr) part_ = xml::toUtf8(package.archive.read(*member_), std::string(member_->name));
  }

  bool exists() const { return member_ != nullptr; }

  void filter(const std::function<Fate(const xml::Scanner&)>& decide,
              const std::function<void(const xml::Scanner&)>& inside, std::vector<ChangedPart>& changed) {
    if (!exists()) return;
    xml::Scanner scanner(part_.utf8.view, vocabulary(), std::string(member_->name));
    for (Token token = scanner.next(); token != Token::finish; token = scanner.next()) {
      if (token != Token::start && token != Token::empty) continue;
      const bool isChild = scanner.depth() == (token == Token::start ? 2U : 1U);
      if (!isChild) continue;
      const Fate fate = decide(scanner);
      if (fate == Fate::losesParent) cutParent(scanner);
      if (fate == Fate::goes) cutElement(scanner, token, inside);
    }
    if (cuts_.empty()) return;
    changed.push_back({std::string(member_->name), xml::fromUtf8(rest(), part_.encoding)});
  }

 private:
  void cutElement(xml::Scanner& scanner, Token token,
                  const std::function<void(const xml::Scanner&)>& inside) {
    const Offset begin = scanner.begin();
    if (token == Token::start) {
      while (scanner.next() != Token::end || scanner.depth() >= 2) {
        if (inside) inside(scanner);
      }
    }
    cuts_.push_back({begin, scanner.end()});
  }

  void cutParent(const xml::Scanner& scanner) {
    const xml::Attribute* const parent = attribute(scanner, Name::exParaIdParent);
    if (parent != nullptr) cuts_.push_back({parent->nameBegin - 1, parent->valueEnd + 1});
  }

  std::vector<std::uint8_t> rest() const {
    std::vector<std::uint8_t> result;
    const auto bytes = part_.utf8.view;
    std::size_t copied = 0;
    for (const Extent& cut : cuts_) {
      result.insert(result.end(), bytes.begin() + static_cast<std::ptrdiff_t>(copied),
                    bytes.begin() + cut.begin);
      copied = cut.end;
    }
    result.insert(result.end(), bytes.begin() + static_cast<std::ptrdiff_t>(copied), bytes.end());
    return result;
  }

  const zip::Member* member_;
  xml::Utf8Part part_;
  std::vector<Extent> cuts_;
};

void removeNotes(const Package& package, Role role, Name element, const Ids& ids,
                 std::vector<ChangedPart>& changed) {
  if (ids.empty()) return;
  PartFilter(package, role)
      .filter(
          [&](const xml::Scanner& scanner) {
            const bool goes = nameOf(scanner) == element && ids.contains(valueOf(scanner, Name::id));
            return goes ? Fate::goes : Fate::stays;
          },
          nullptr, changed);
}

void removeComments(const Package& package, const Ids& ids, std::vector<ChangedPart>& changed) {
  if (ids.empty()) return;
  Ids paragraphs;
  Ids durable;
  const auto isAmong = [](const xml::Scanner& scanner, Name name, const Ids& among) {
    const std::string value = valueOf(scanner, name);
    return !value.empty() && among.contains(value);
  };
  PartFilter(package, Role::comments)
      .filter(
          [&](const xml::Scanner& scanner) {
            const bool goes = nameOf(scanner) == Name::comment && isAmong(scanner, Name::id, ids);
            return goes ? Fate::goes : Fate::stays;
          },
          [&](const xml::Scanner& scanner) {
            if (nameOf(scanner) == Name::p) paragraphs.insert(valueOf(scanner, Name::paraId));
          },
          changed);
  PartFilter(package, Role::commentsExtended)
      .filter(
          [&](const xml::Scanner& scanner) {
            if (isAmong(scanner, Name::exParaId, paragraphs)) return Fate::goes;
            return isAmong(scanner, Name::exParaIdParent, paragraphs) ? Fate::losesParent : Fate::stays;
          },
          nullptr, changed);
  PartFilter(package, Role::commentsIds)
      .filter(
          [&](const xml::Scanner& scanner) {
            if (!isAmong(scanner, Name::idParaId, paragraphs)) return Fate::stays;
            durable.insert(valueOf(scanner, Name::idDurableId));
            return Fate::goes;
          },
          nullptr, changed);
  PartFilter(package, Role::commentsExtensible)
      .filter(
          [&](const xml::Scanner& scanner) {
            return isAmong(scanner, Name::extensibleDurableId, durable) ? Fate::goes : Fate::stays;
          },
          nullptr, changed);
}

}  // namespace

std::vector<ChangedPart> partsWithoutDeparted(const Package& package, const Departed& departed) {
  std::vector<ChangedPart> changed;
  removeNotes(package, Role::footnotes, Name::footnote, departed.footnotes(), changed);
  removeNotes(package, Role::endnotes, Name::endnote, departed.endnotes(), changed);
  removeComments(package, departed.comments(), changed);
  return changed;
}

}  // namespace pluvo::docx
