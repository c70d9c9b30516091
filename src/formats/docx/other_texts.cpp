#include "other_texts.h"

#include "asides.h"
#include "budget.h"
#include "cfb/compound_file.h"
#include "imported_text.h"
#include "part_kinds.h"
#include "part_texts.h"
#include "retold.h"
#include "story_teller.h"
#include "xml/encoding.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <optional>
#include <set>

namespace pluvo::docx {

namespace {

bool isZip(base::ByteSpan bytes) {
  return bytes.size() >= 4 && bytes[0] == 'P' && bytes[1] == 'K' && bytes[2] == 3 && bytes[3] == 4;
}

/// How far packages in packages are gone into.
enum class Depth : bool { outer, inner };

void tellPackage(const ReadDocument& document, const document::Story& story, formats::OtherTexts& texts,
                 Budget& budget, Depth depth);

/// A Word document in another one; throws where it is none.
void tellDocument(const Package& package, formats::OtherTexts& texts, Budget& budget) {
  const Styles styles;  // whether a text is hidden makes no difference
  const zip::Member* const main = package.archive.find(package.mainPart);
  budget.take(main->size);
  const xml::Utf8Part part = xml::toUtf8(package.archive.read(*main), package.mainPart);
  ReadBody body = readBody(part.utf8.view, package.mainPart, styles, document::Purpose::search);
  const document::Story story(std::move(body.content));
  texts.unreached(Unreached::embedded, story.text().original().stretch(0, story.length()));
  tellPackage({package, part.utf8.view, body.map, styles}, story, texts, budget, Depth::inner);
}

/// Whatever markup a package of another kind holds.
void tellMarkup(const zip::Archive& archive, formats::OtherTexts& texts, Budget& budget) {
  Pieces pieces(Unreached::embedded, texts);
  for (const zip::Member& member : archive.members()) {
    const std::string name(member.name);
    const bool isMarkup = name.ends_with(".xml") && !name.starts_with("[");
    if (!isMarkup || name.find("/theme/") != std::string::npos) continue;
    const bool isOfValues = name.starts_with("docProps/") || name.find('/') == std::string::npos;
    try {
      budget.take(member.size);
      const xml::Utf8Part part = xml::toUtf8(archive.read(member), name);
      (isOfValues ? addValues : addRuns)(part.utf8.view, name, pieces);
    } catch (const errors::DocumentError& error) {
      texts.damaged(name, error.what());
      if (budget.spent()) break;
    }
  }
  pieces.tell();
}

/// Goes through a package from relationship to relationship.
class PackageTeller {
 public:
  PackageTeller(const Package& package, const Telling& telling, Budget& budget, Depth depth)
      : package_(package), telling_(telling), budget_(budget), depth_(depth) {}

  void tell() {
    seen_.insert(package_.archive.find(package_.mainPart));
    for (const Relationship& relationship : package_.mainRelationships) add(relationship, false);
    for (const Relationship& relationship : package_.rootRelationships) add(relationship, false);
    while (!budget_.spent() && !(next_.empty() && last_.empty())) {
      std::deque<Part>& queue = next_.empty() ? last_ : next_;
      const Part part = queue.front();
      queue.pop_front();
      guarded(part.member->name, [&] { tell(part); });
    }
  }

 private:
  struct Part {
    PartKind kind;
    const zip::Member* member;
    bool inGlossary;
  };

  void add(const Relationship& relationship, bool inGlossary) {
    const std::optional<PartKind> kind = kindOf(relationship);
    if (!kind) return;
    const zip::Member* const member = package_.archive.find(relationship.part);
    if (member == nullptr || !seen_.insert(member).second) return;
    (comesLast(*kind) ? last_ : next_).push_back({*kind, member, inGlossary});
  }

  base::Bytes read(const zip::Member& member) {
    budget_.take(member.size);
    return package_.archive.read(member);
  }

  std::vector<Relationship> relationshipsOf(std::string_view part) {
    const zip::Member* const member = package_.archive.find(relationshipPartOf(part));
    if (member != nullptr) budget_.take(member->size);
    return relationshipsIn(package_.archive, part);
  }

  void addPartsOf(const Part& part) {
    const bool inGlossary = part.inGlossary || part.kind == PartKind::glossary;
    for (const Relationship& relationship : relationshipsOf(part.member->name)) add(relationship, inGlossary);
  }

  template <class Work>
  void guarded(std::string_view part, Work work) {
    try {
      work();
    } catch (const errors::DocumentError& error) {
      telling_.texts.damaged(part, error.what());
    }
  }

  void tell(const Part& part) {
    AsOneKind glossary(Unreached::glossary, telling_.texts);
    formats::OtherTexts& texts = part.kind == PartKind::glossary || part.inGlossary
                                     ? static_cast<formats::OtherTexts&>(glossary)
                                     : telling_.texts;
    switch (part.kind) {
      case PartKind::chunk:
        return tellFile(part, Unreached::chunks, texts);
      case PartKind::package:
      case PartKind::object:
        return tellFile(part, Unreached::embedded, texts);
      case PartKind::picture:
        return texts.notLookedInto(Opaque::pictures);
      case PartKind::macros:
        return texts.notLookedInto(Opaque::macros);
      case PartKind::thumbnail:
        return texts.notLookedInto(Opaque::thumbnail);
      default:
        return tellMarkupOf(part, texts);
    }
  }

  void tellMarkupOf(const Part& part, formats::OtherTexts& texts) {
    const std::string name(part.member->name);
    const xml::Utf8Part markup = xml::toUtf8(read(*part.member), name);
    const base::ByteSpan bytes = markup.utf8.view;
    switch (part.kind) {
      case PartKind::chart:
        addPartsOf(part);
        return tellPieces(Unreached::charts, texts, [&](Pieces& pieces) { addRuns(bytes, name, pieces); });
      case PartKind::diagram:
      case PartKind::diagramDrawing:
        return tellDiagram(part.kind, bytes, name, texts);
      case PartKind::settings:
        return tellPieces(Unreached::variables, texts,
                          [&](Pieces& pieces) { addVariables(bytes, name, pieces); });
      case PartKind::people:
        return tellPieces(Unreached::people, texts, [&](Pieces& pieces) { addPeople(bytes, name, pieces); });
      case PartKind::core:
      case PartKind::extended:
      case PartKind::properties:
        if (part.kind != PartKind::properties)
          telling_.bindings.tellOtherwise(
              bytes, name, part.kind == PartKind::core ? kCoreProperties : kExtendedProperties, texts);
        return tellPieces(Unreached::properties, texts,
                          [&](Pieces& pieces) { addValues(bytes, name, pieces); });
      case PartKind::data:
        if (!telling_.bindings.empty()) telling_.bindings.tellOtherwise(bytes, name, storeOf(name), texts);
        return tellPieces(Unreached::customXml, texts,
                          [&](Pieces& pieces) { addValues(bytes, name, pieces); });
      default:
        addPartsOf(part);
        return tellStories(part, bytes, name, texts);
    }
  }

  void tellStories(const Part& part, base::ByteSpan bytes, const std::string& name,
                   formats::OtherTexts& texts) {
    if (part.kind != PartKind::glossary && !part.inGlossary)
      return StoryTeller(bytes, name, telling_).tellPart();
    DataBindings bindings;
    StoryTeller(bytes, name, {texts, telling_.styles, bindings}).tellPart();
  }

  template <class Add>
  static void tellPieces(Unreached kind, formats::OtherTexts& texts, Add add) {
    Pieces pieces(kind, texts);
    try {
      add(pieces);
    } catch (const errors::DocumentError&) {
      pieces.tell();
      throw;
    }
    pieces.tell();
  }

  /// The drawing of a diagram holds the texts of its data once more. What only the drawing holds is told.
  void tellDiagram(PartKind kind, base::ByteSpan bytes, const std::string& name, formats::OtherTexts& texts) {
    Gathered gathered;
    tellPieces(Unreached::smartArt, gathered, [&](Pieces& pieces) { addRuns(bytes, name, pieces); });
    tellPieces(Unreached::smartArt, texts, [&](Pieces& pieces) {
      std::u16string_view left = gathered.text();
      while (!left.empty()) {
        const std::u16string_view piece = left.substr(0, left.find(text::kCellMark));
        left.remove_prefix(std::min(piece.size() + 1, left.size()));
        const std::size_t hash = std::hash<std::u16string_view>()(piece);
        if (kind == PartKind::diagram) inDiagrams_.insert(hash);
        if (kind == PartKind::diagramDrawing && inDiagrams_.contains(hash)) continue;
        pieces.units() += piece;
        pieces.end();
      }
    });
  }

  /// By which controls name a part of custom XML.
  std::string storeOf(std::string_view part) {
    std::string id;
    for (const Relationship& relationship : relationshipsOf(part)) {
      const zip::Member* const member = package_.archive.find(relationship.part);
      if (relationship.kind() != "customXmlProps" || member == nullptr) continue;
      const std::string name(member->name);
      const xml::Utf8Part properties = xml::toUtf8(read(*member), name);
      xml::Scanner scanner(properties.utf8.view, vocabulary(), name);
      for (xml::Token token = scanner.next(); token != xml::Token::finish; token = scanner.next()) {
        if (opens(token) && nameOf(scanner) == Name::dataItem) id = valueOf(scanner, Name::itemId);
      }
    }
    return id;
  }

  void tellFile(const Part& part, Unreached kind, formats::OtherTexts& texts) {
    const base::Bytes file = read(*part.member);
    if (isZip(file.view)) {
      if (depth_ == Depth::inner) return texts.notLookedInto(Opaque::objects);
      AsOneKind inner(kind, texts, part.member->name);
      return tellPackageIn(file, inner);
    }
    if (kind != Unreached::chunks || cfb::isCompoundFile(file.view))
      return texts.notLookedInto(Opaque::objects);
    texts.unreached(kind, importedText(file.view));
  }

  void tellPackageIn(const base::Bytes& file, formats::OtherTexts& texts) {
    const zip::Archive archive = zip::Archive::open(file);
    for (const zip::Member& member : archive.members())
      if (member.name.ends_with(".rels") || member.name.starts_with("[")) budget_.take(member.size);
    std::optional<Package> package;
    try {
      package.emplace(openPackage(archive, packages_));
    } catch (const errors::DocumentError&) {
      return tellMarkup(archive, texts, budget_);
    }
    tellDocument(*package, texts, budget_);
  }

  const Package& package_;
  Telling telling_;
  Budget& budget_;
  Depth depth_;
  PackageMemory packages_;
  std::set<const zip::Member*> seen_;
  std::deque<Part> next_;
  std::deque<Part> last_;
  std::set<std::size_t> inDiagrams_;
};

void tellPackage(const ReadDocument& document, const document::Story& story, formats::OtherTexts& texts,
                 Budget& budget, Depth depth) {
  std::optional<DepartedNotes> departed;
  if (story.wasEdited() && !document.map.references.empty()) {
    NoteFates fates;
    fates.add(document.map, document::Dropped(document::EditScript(story)));
    departed = fates.departed();
  }
  DataBindings bindings;
  const Telling telling{texts, document.styles, bindings, departed ? &*departed : nullptr};
  const std::vector<Offset> places = placesWithText(document.mainPart, document.map);
  if (!places.empty()) {
    try {
      StoryTeller(document.mainPart, document.package.mainPart, telling, xml::Swept::yes)
          .tellBesideMainText(document.map, places, story);
    } catch (const errors::DocumentError& error) {
      texts.damaged(document.package.mainPart, error.what());
    }
  }
  PackageTeller(document.package, telling, budget, depth).tell();
}

}  // namespace

void tellOtherTexts(const ReadDocument& document, const document::Story& story, formats::OtherTexts& texts) {
  Budget budget(document.package.archive.bytes().size());
  tellPackage(document, story, texts, budget, Depth::outer);
}

}  // namespace pluvo::docx
