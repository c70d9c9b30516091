#include "word/enums.h"
#include "word_objects.h"

#include <algorithm>

namespace pluvo::stand_in {
namespace {

using text::Position;
using text::Span;

model::Model& modelOf(const TextObject& object) { return object.open().model(); }

word::WdUnits unitOf(std::int32_t unit) {
  if (unit < word::wdCharacter || unit > word::wdParagraph) throw WordError{4120, u"Bad parameter"};
  return static_cast<word::WdUnits>(unit);
}

void setStart(TextObject& object, Position position) {
  object.open().requirePosition(position);
  object.place().set({position, std::max(position, object.span().to)});
}

void setEnd(TextObject& object, Position position) {
  object.open().requirePosition(position);
  object.place().set({std::min(position, object.span().from), position});
}

/// Moves one end, or both together, and returns by how many units.
std::int32_t move(TextObject& object, const Arguments& arguments, Position from,
                  void (*set)(TextObject&, Position)) {
  const auto unit = unitOf(arguments.number(0, word::wdCharacter));
  const auto moved = modelOf(object).move(from, unit, arguments.number(1, 1), object.open().view);
  set(object, moved.position);
  return moved.moved;
}

Value moveBoth(TextObject& object, const Arguments& arguments) {
  const Position from = arguments.number(1, 1) < 0 ? object.span().from : object.span().to;
  return move(object, arguments, from, [](TextObject& moved, Position position) {
    moved.place().set({position, position});
  });
}

/// Where smart cutting is on, whole words go with the blank that would be left over.
void takeLeftOverBlank(TextObject& object) {
  const Span span = object.span();
  if (!TextObject::world().smartCutPaste || span.empty()) return;
  const std::u16string all = object.open().allText();
  const auto at = [&](Position position) {
    const bool inside = position >= 0 && position < static_cast<Position>(all.size());
    return inside ? all[static_cast<std::size_t>(position)] : u'\r';
  };
  const auto isOfWord = [&](Position position) {
    return IsCharAlphaNumericW(static_cast<wchar_t>(at(position))) != 0;
  };
  if (!isOfWord(span.from) || !isOfWord(span.to - 1)) return;
  if (at(span.to) == u' ' && !isOfWord(span.from - 1)) {
    object.place().set({span.from, span.to + 1});
  } else if (at(span.from - 1) == u' ' && !isOfWord(span.to)) {
    object.place().set({span.from - 1, span.to});
  }
}

Value deleteUnits(TextObject& object, const Arguments& arguments) {
  OpenDocument& document = object.open();
  document.requireEditable();
  if (object.span().empty()) {
    // An insertion point takes what lies behind it, or before it.
    const auto unit = unitOf(arguments.number(0, word::wdCharacter));
    const Position at = object.span().from;
    const auto moved = document.model().move(at, unit, arguments.number(1, 1), document.view);
    object.place().set({std::min(at, moved.position), std::max(at, moved.position)});
  }
  if (object.span().empty()) return 0;
  takeLeftOverBlank(object);
  const Position before = document.length();
  document.replace(object.place(), {});
  return document.length() < before ? 1 : 0;
}

Value select(TextObject& object, const Arguments&) {
  OpenDocument& document = object.open();
  if (!TextObject::world().visible || !document.windowVisible) {
    throw WordError{4605, u"This method or property is not available because there is no window."};
  }
  document.selection().set(object.span());
  TextObject::world().show(document.name() + u": " + document.visibleText(object.span()));
  return {};
}

Value collapse(TextObject& object, const Arguments& arguments) {
  const bool toStart = arguments.number(0, 1) != 0;
  const Position last = object.open().length() - 1;
  const Position position = toStart ? object.span().from : std::min(object.span().to, last);
  object.place().set({position, position});
  return {};
}

template <std::int32_t unit>
Value units(TextObject& object, const Arguments&) {
  return make<UnitsObject>(Held<TextObject>(&object), unit);
}

}  // namespace

Held<TextObject> TextObject::range(const std::shared_ptr<OpenDocument>& document, Span span) {
  return make<TextObject>(rangeMembers(), document, std::make_unique<Place>(document, span));
}

Held<TextObject> TextObject::selection(const std::shared_ptr<OpenDocument>& document) {
  return make<TextObject>(selectionMembers(), document, nullptr);
}

Span TextObject::spoken() const {
  if (!isSelection() || !span().empty()) return span();
  return {span().from, open().model().move(span().from, word::wdCharacter, 1, open().view).position};
}

std::int32_t TextObject::count(std::int32_t unit) {
  const std::int32_t count = open().model().count(spoken(), unitOf(unit), open().view);
  return span().empty() ? std::max(count, 1) : count;
}

std::vector<Member> TextObject::common() {
  constexpr auto onUnits = [] {
    return std::vector{optional(u"Unit", Type::number), optional(u"Count", Type::number)};
  };
  return {
      member<TextObject>(Verb::get, u"Start", {},
                         [](auto& o, const auto&) -> Value { return o.span().from; }),
      member<TextObject>(Verb::put, u"Start", {number(u"Value")},
                         [](auto& o, const auto& a) -> Value { return setStart(o, a.number(0)), Value(); }),
      member<TextObject>(Verb::get, u"End", {}, [](auto& o, const auto&) -> Value { return o.span().to; }),
      member<TextObject>(Verb::put, u"End", {number(u"Value")},
                         [](auto& o, const auto& a) -> Value { return setEnd(o, a.number(0)), Value(); }),
      member<TextObject>(Verb::call, u"SetRange", {number(u"Start"), number(u"End")},
                         [](auto& o, const auto& a) -> Value {
                           o.open().requirePosition(a.number(0));
                           o.open().requirePosition(a.number(1));
                           o.place().set({std::min(a.number(0), a.number(1)), a.number(1)});
                           return {};
                         }),
      member<TextObject>(Verb::get, u"Text", {},
                         [](auto& o, const auto&) -> Value { return o.open().visibleText(o.spoken()); }),
      member<TextObject>(Verb::put, u"Text", {text(u"Value")},
                         [](auto& o, const auto& a) -> Value {
                           o.open().requireEditable();
                           if (a.text(0).empty()) takeLeftOverBlank(o);
                           o.open().replace(o.place(), a.text(0));
                           return {};
                         }),
      member<TextObject>(Verb::call, u"InsertBefore", {text(u"Text")},
                         [](auto& o, const auto& a) -> Value {
                           o.open().insertBefore(o.place(), a.text(0));
                           return {};
                         }),
      member<TextObject>(Verb::call, u"InsertAfter", {text(u"Text")},
                         [](auto& o, const auto& a) -> Value {
                           o.open().insertAfter(o.place(), a.text(0));
                           return {};
                         }),
      member<TextObject>(Verb::call, u"Delete", onUnits(), deleteUnits),
      member<TextObject>(Verb::call, u"Move", onUnits(), moveBoth),
      member<TextObject>(Verb::call, u"MoveStart", onUnits(),
                         [](auto& o, const auto& a) -> Value { return move(o, a, o.span().from, setStart); }),
      member<TextObject>(Verb::call, u"MoveEnd", onUnits(),
                         [](auto& o, const auto& a) -> Value { return move(o, a, o.span().to, setEnd); }),
      member<TextObject>(Verb::call, u"Collapse", {optional(u"Direction", Type::number)}, collapse),
      member<TextObject>(Verb::call, u"Select", {}, select),
      member<TextObject>(Verb::get, u"Characters", {}, units<word::wdCharacter>),
      member<TextObject>(Verb::get, u"Words", {}, units<word::wdWord>),
      member<TextObject>(Verb::get, u"Sentences", {}, units<word::wdSentence>),
      member<TextObject>(Verb::get, u"Paragraphs", {}, units<word::wdParagraph>),
      member<TextObject>(Verb::get, u"StoryType", {}, [](auto&, const auto&) -> Value { return 1; }),
      member<TextObject>(Verb::get, u"StoryLength", {},
                         [](auto& o, const auto&) -> Value { return o.open().length(); }),
      member<TextObject>(Verb::get, u"Document", {},
                         [](auto& o, const auto&) -> Value { return make<DocumentObject>(o.document()); }),
      member<TextObject>(Verb::get, u"Application", {},
                         [](auto&, const auto&) -> Value { return ApplicationObject::instance(); }),
      member<TextObject>(
          Verb::get, u"Find", {},
          [](auto& o, const auto&) -> Value { return make<FindObject>(Held<TextObject>(&o)); }),
  };
}

const Interface& TextObject::rangeMembers() {
  static const Interface kind = [] {
    Interface made{u"Range", common(), u"Text"};
    made.members.push_back(
        member<TextObject>(Verb::get, u"HighlightColorIndex", {},
                           [](auto& o, const auto&) -> Value { return o.open().highlightOf(o.span()); }));
    made.members.push_back(member<TextObject>(Verb::put, u"HighlightColorIndex", {number(u"Value")},
                                              [](auto& o, const auto& a) -> Value {
                                                o.open().highlight(o.span(), a.number(0));
                                                return {};
                                              }));
    made.members.push_back(member<TextObject>(Verb::get, u"Duplicate", {}, [](auto& o, const auto&) -> Value {
      return range(o.document(), o.span());
    }));
    return made;
  }();
  return kind;
}

const Interface& TextObject::selectionMembers() {
  static const Interface kind = [] {
    Interface made{u"Selection", common(), u"Text"};
    made.members.push_back(member<TextObject>(Verb::get, u"Range", {}, [](auto& o, const auto&) -> Value {
      return range(o.document(), o.span());
    }));
    made.members.push_back(member<TextObject>(
        Verb::get, u"Type", {}, [](auto& o, const auto&) -> Value { return o.span().empty() ? 1 : 2; }));
    return made;
  }();
  return kind;
}

const Interface& UnitsObject::kind(std::int32_t unit) {
  static const auto members = [] {
    return std::vector{member<UnitsObject>(
        Verb::get, u"Count", {}, [](auto& o, const auto&) -> Value { return o.owner().count(o.unit()); })};
  };
  static const Interface kinds[] = {{u"Characters", members()},
                                    {u"Words", members()},
                                    {u"Sentences", members()},
                                    {u"Paragraphs", members()}};
  return kinds[unit - word::wdCharacter];
}

}  // namespace pluvo::stand_in
