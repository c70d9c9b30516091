#include "notes.h"

#include <functional>
#include <vector>

namespace pluvo::docx {

using xml::Token;
using Ids = std::set<std::string>;

namespace {

/// The fate of an element directly in a part's root.
enum class Fate : std::uint8_t { stays, goes, losesParent };

/// Walks the elements in a part's root; inside(scanner) sees every element within one that goes.
class PartFilter {
 public:
  PartFilter(const Package& package, Role role, ChangedParts& changed) : changed_(changed) {
    const zip::Member* const member = package.member(role);
    if (member == nullptr) return;
    name_ = member->name;
    const auto known = changed.find(name_);
    if (known != changed.end()) {
      utf8_ = known->second.utf8;
      encoding_ = known->second.encoding;
      return;
    }
    const xml::Utf8Part part = xml::toUtf8(package.archive.read(*member), name_);
    utf8_.assign(part.utf8.view.begin(), part.utf8.view.end());
    encoding_ = part.encoding;
  }

  void filter(const std::function<Fate(const xml::Scanner&)>& decide,
              const std::function<void(const xml::Scanner&)>& inside) {
    if (name_.empty()) return;
    xml::Scanner scanner(base::ByteSpan(reinterpret_cast<const std::uint8_t*>(utf8_.data()), utf8_.size()),
                         vocabulary(), name_);
    for (Token token = scanner.next(); token != Token::finish; token = scanner.next()) {
      if (token != Token::start && token != Token::empty) continue;
      const bool isChild = scanner.depth() == (token == Token::start ? 2U : 1U);
      if (!isChild) continue;
      const Fate fate = decide(scanner);
      if (fate == Fate::losesParent) cutParent(scanner);
      if (fate == Fate::goes) cutElement(scanner, token, inside);
    }
    if (cuts_.empty()) return;
    changed_[name_] = {rest(), encoding_};
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

  std::string rest() const {
    std::string result;
    std::size_t copied = 0;
    for (const Extent& cut : cuts_) {
      result.append(utf8_, copied, cut.begin - copied);
      copied = cut.end;
    }
    return result.append(utf8_, copied);
  }

  ChangedParts& changed_;
  std::string name_;  ///< empty where there is no such part
  std::string utf8_;
  xml::Encoding encoding_;
  std::vector<Extent> cuts_;
};

void removeNotes(const Package& package, Role role, Name element, const Ids& ids, ChangedParts& changed) {
  if (ids.empty()) return;
  PartFilter(package, role, changed)
      .filter(
          [&](const xml::Scanner& scanner) {
            const bool goes = nameOf(scanner) == element && ids.contains(valueOf(scanner, Name::id));
            return goes ? Fate::goes : Fate::stays;
          },
          nullptr);
}

void removeComments(const Package& package, const Ids& ids, ChangedParts& changed) {
  if (ids.empty()) return;
  Ids paragraphs;
  Ids durable;
  const auto isAmong = [](const xml::Scanner& scanner, Name name, const Ids& among) {
    const std::string value = valueOf(scanner, name);
    return !value.empty() && among.contains(value);
  };
  PartFilter(package, Role::comments, changed)
      .filter(
          [&](const xml::Scanner& scanner) {
            const bool goes = nameOf(scanner) == Name::comment && isAmong(scanner, Name::id, ids);
            return goes ? Fate::goes : Fate::stays;
          },
          [&](const xml::Scanner& scanner) {
            if (nameOf(scanner) == Name::p) paragraphs.insert(valueOf(scanner, Name::paraId));
          });
  PartFilter(package, Role::commentsExtended, changed)
      .filter(
          [&](const xml::Scanner& scanner) {
            if (isAmong(scanner, Name::exParaId, paragraphs)) return Fate::goes;
            return isAmong(scanner, Name::exParaIdParent, paragraphs) ? Fate::losesParent : Fate::stays;
          },
          nullptr);
  PartFilter(package, Role::commentsIds, changed)
      .filter(
          [&](const xml::Scanner& scanner) {
            if (!isAmong(scanner, Name::idParaId, paragraphs)) return Fate::stays;
            durable.insert(valueOf(scanner, Name::idDurableId));
            return Fate::goes;
          },
          nullptr);
  PartFilter(package, Role::commentsExtensible, changed)
      .filter(
          [&](const xml::Scanner& scanner) {
            return isAmong(scanner, Name::extensibleDurableId, durable) ? Fate::goes : Fate::stays;
          },
          nullptr);
}

}  // namespace

void removeDeparted(const Package& package, const DepartedNotes& notes, ChangedParts& changed) {
  removeNotes(package, Role::footnotes, Name::footnote, notes.footnotes, changed);
  removeNotes(package, Role::endnotes, Name::endnote, notes.endnotes, changed);
  removeComments(package, notes.comments, changed);
}

}  // namespace pluvo::docx
