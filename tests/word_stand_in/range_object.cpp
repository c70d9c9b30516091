#include "objects.h"
#include "word/enums.h"
#include "word/faults.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace pluvo::stand_in {
namespace {

using text::Position;
using text::Span;

word::WdUnits unitOf(std::int32_t unit) {
  constexpr std::int32_t kBadParameter = 4120;
  if (unit < word::wdCharacter || unit > word::wdParagraph) throw refusal(kBadParameter);
  return static_cast<word::WdUnits>(unit);
}

/// What a range or the selection is: a stretch of a document, and what its find was told.
struct Stretch {
  Document document;
  std::unique_ptr<Place> own;  ///< none for the selection, which is the document's
  FindSettings find = world().dialogFind;

  OpenDocument& open() const { return document->mainText(), *document; }
  Place& place() const { return own ? *own : open().selection(); }
  Span span() const { return place().span(); }
  void set(Span span) const { place().set(span); }

  void setStart(Position position) const {
    open().requirePosition(position);
    const Position start = snapped(position);
    set({start, std::max(start, span().to)});
  }
  /// Before the field that the position is in, where this Word does so.
  Position snapped(Position position) const {
    if (!ways().snapsOutOfFields) return position;
    const std::u16string all = open().allText();
    std::vector<Position> fields;
    for (Position at = 0; at < position; ++at) {
      const char16_t unit = all[static_cast<std::size_t>(at)];
      if (unit == text::kFieldBegin) fields.push_back(at);
      if (unit == text::kFieldEnd && !fields.empty()) fields.pop_back();
    }
    return fields.empty() ? position : fields.front();
  }
  void setEnd(Position position) const {
    open().requirePosition(position);
    set({std::min(position, span().from), position});
  }
  text::Move moved(Position from, std::int32_t unit, std::int32_t count) const {
    return open().mainText().move(from, unitOf(unit), count, open().view);
  }

  /// The span that the selection's text and counts speak of: an insertion point's is the character after it.
  Span spoken() const {
    if (own || !span().empty()) return span();
    return {span().from, moved(span().from, word::wdCharacter, 1).position};
  }
  std::int32_t count(word::WdUnits unit) const {
    const std::int32_t count = open().mainText().count(spoken(), unit, open().view);
    return span().empty() ? std::max(count, 1) : count;
  }

  void takeLeftOverBlank() const;
  std::int32_t remove() const;
  void select() const;
  bool execute() const;
};

/// Where smart cutting is on, whole words go with the blank that would be left over.
void Stretch::takeLeftOverBlank() const {
  const Span cut = span();
  if (!world().smartCutPaste || cut.empty()) return;
  const std::u16string all = open().allText();
  const auto at = [&](Position position) {
    const auto i = static_cast<std::size_t>(position);
    return i < all.size() ? all[i] : u'\r';
  };
  const auto isOfWord = [&](Position position) {
    return IsCharAlphaNumericW(static_cast<wchar_t>(at(position))) != 0;
  };
  if (!isOfWord(cut.from) || !isOfWord(cut.to - 1)) return;
  if (at(cut.to) == u' ' && !isOfWord(cut.from - 1)) {
    set({cut.from, cut.to + 1});
  } else if (at(cut.from - 1) == u' ' && !isOfWord(cut.to)) {
    set({cut.from - 1, cut.to});
  }
}

/// An insertion point takes what lies after it.
std::int32_t Stretch::remove() const {
  open().requireEditable();
  set({span().from, spoken().to});
  if (span().empty()) set({span().from, moved(span().from, word::wdCharacter, 1).position});
  if (span().empty()) return 0;
  takeLeftOverBlank();
  const Position before = document->length();
  document->replace(place(), {});
  return document->length() < before ? 1 : 0;
}

void Stretch::select() const {
  open().selection().set(span());
  world().show(document->name() + u": " + document->visibleText(span()));
}

bool Stretch::execute() const {
  const FindSettings literal;
  for (const auto& [name, value] : find.flags) {
    const bool isOfText = name == u"MatchCase" || name == u"MatchWholeWord" || name == u"MatchWildcards";
    if (!isOfText && literal.flags.at(name) != value) throw Failure{E_NOTIMPL};
  }
  if (find.wrap != word::wdFindStop) throw Failure{E_NOTIMPL};
  if (open().file.protection == word::wdAllowOnlyFormFields) throw refusal(word::kNotAvailable);
  const Span range = span();
  const Span after{range.to, document->length()};
  auto match = stand_in::find(*document, find, range.empty() ? after : range);
  // A range that its own text matches is taken as found already: the search runs on beyond it.
  if (match && !range.empty() && *match == range) match = stand_in::find(*document, find, after);
  if (match) set(*match);
  return match.has_value();
}

Handle findObject(const std::shared_ptr<Stretch>& owner) {
  std::vector<Member> members = {
      {u"put Text",
       [=](const Arguments& given) {
         constexpr std::size_t kLongest = 255;
         if (given.text(0).size() > kLongest) throw refusal(word::kStringTooLong);
         owner->find.text = given.text(0);
       }},
      {u"put Wrap", [=](const Arguments& given) { owner->find.wrap = given.number(0); }},
      {u"call ClearFormatting", [=] { owner->find.flags[u"Format"] = false; }},
      {u"call Execute", [=] { return owner->execute(); }},
  };
  for (const auto& flag : owner->find.flags) {
    const std::u16string name = flag.first;
    members.emplace_back(u"get " + name, [=] { return owner->find.flags[name]; });
    members.emplace_back(u"put " + name,
                         [=](const Arguments& given) { owner->find.flags[name] = given.flag(0); });
  }
  return object(u"Find", std::move(members));
}

Handle stretchObject(std::u16string_view name, const std::shared_ptr<Stretch>& on) {
  std::vector<Member> members = {
      {u"get Start", [=] { return on->span().from; }},
      {u"put Start", [=](const Arguments& given) { on->setStart(given.number(0)); }},
      {u"get End", [=] { return on->span().to; }},
      {u"put End", [=](const Arguments& given) { on->setEnd(given.number(0)); }},
      {u"call SetRange",
       [=](const Arguments& given) {
         on->open().requirePosition(given.number(0));
         on->open().requirePosition(given.number(1));
         on->set({on->snapped(std::min(given.number(0), given.number(1))), given.number(1)});
       }},
      {u"get Text", [=] { return on->open().visibleText(on->spoken()); }},
      {u"get StoryType", [=] { return ways().story; }},
      {u"put Text",
       [=](const Arguments& given) {
         on->open().requireEditable();
         if (given.text(0).empty() && !ways().keepsDeleted) on->takeLeftOverBlank();
         on->open().replace(on->place(), given.text(0));
       }},
      {u"call InsertBefore",
       [=](const Arguments& given) { on->open().insertBefore(on->place(), given.text(0)); }},
      {u"call InsertAfter",
       [=](const Arguments& given) { on->open().insertAfter(on->place(), given.text(0)); }},
      {u"call Delete", [=] { return on->remove(); }},
      {u"call MoveStart",
       [=](const Arguments& given) {
         const auto moved = on->moved(on->span().from, given.number(0), given.number(1));
         on->setStart(moved.position);
         return moved.moved;
       }},
      {u"call MoveEnd",
       [=](const Arguments& given) {
         const auto moved = on->moved(on->span().to, given.number(0), given.number(1));
         on->setEnd(moved.position);
         return moved.moved;
       }},
      {u"call Select", [=] { on->select(); }},
      {u"put HighlightColorIndex",
       [=](const Arguments& given) { on->open().highlight(on->span(), given.number(0)); }},
      {u"get Find", [=] { return findObject(on); }},
      {u"get StoryType", [] { return std::int32_t{word::wdMainTextStory}; }},
      {u"get NextStoryRange", [] { return Handle(); }},
  };
  constexpr std::pair<const char16_t*, word::WdUnits> kUnits[] = {{u"Characters", word::wdCharacter},
                                                                  {u"Words", word::wdWord},
                                                                  {u"Sentences", word::wdSentence},
                                                                  {u"Paragraphs", word::wdParagraph}};
  for (const auto& [units, unit] : kUnits) {
    members.emplace_back(std::u16string(u"get ") + units, [=, units = units, unit = unit] {
      return object(units, {{u"get Count", [=] { return on->count(unit); }}});
    });
  }
  return object(name, std::move(members));
}

}  // namespace

Handle rangeObject(const Document& document, Span span) {
  auto own = std::make_unique<Place>(*document, span);
  return stretchObject(u"Range", std::shared_ptr<Stretch>(new Stretch{document, std::move(own)}));
}

Handle selectionObject(const Document& document) {
  return stretchObject(u"Selection", std::shared_ptr<Stretch>(new Stretch{document, nullptr}));
}

}  // namespace pluvo::stand_in
