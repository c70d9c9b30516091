#include "word_objects.h"

namespace pluvo::stand_in {
namespace {

using text::Span;

constexpr std::size_t kLongestText = 255;

void setText(FindSettings& settings, const std::u16string& text) {
  if (text.size() > kLongestText) throw WordError{5854, u"String parameter too long"};
  settings.criteria.text = text;
}

using Flag = bool& (*)(FindSettings&);

void addFlag(std::vector<Member>& members, std::u16string_view name, Flag flagOf) {
  const auto settings = [](Object& object) -> FindSettings& {
    return static_cast<FindObject&>(object).settings();
  };
  members.push_back({Verb::get, name, {}, [=](Object& object, const Arguments&) -> Value {
                       return flagOf(settings(object));
                     }});
  members.push_back({Verb::put, name, {flag(u"Value")}, [=](Object& object, const Arguments& given) -> Value {
                       flagOf(settings(object)) = given.flag(0);
                       return {};
                     }});
}

/// Arguments of Execute set what they stand for, and stay.
Value executeWith(FindObject& object, const Arguments& given) {
  FindSettings& settings = object.settings();
  if (given.given(0)) setText(settings, given.text(0));
  bool* const flags[] = {&settings.criteria.matchCase, &settings.criteria.wholeWord, &settings.wildcards,
                         &settings.soundsLike,         &settings.wordForms,          &settings.forward};
  for (std::size_t i = 0; i < std::size(flags); ++i) {
    if (given.given(i + 1)) *flags[i] = given.flag(i + 1);
  }
  if (given.given(7)) settings.wrap = given.number(7);
  if (given.given(8)) settings.format = given.flag(8);
  const bool replaces = given.given(10) && given.number(10) != 0;
  if (replaces) throw Failure{E_NOTIMPL};
  return object.execute();
}

std::vector<Parameter> executeParameters() {
  std::vector<Parameter> parameters{optional(u"FindText", Type::text)};
  for (const auto* name : {u"MatchCase", u"MatchWholeWord", u"MatchWildcards", u"MatchSoundsLike",
                           u"MatchAllWordForms", u"Forward"}) {
    parameters.push_back(optional(name, Type::flag));
  }
  parameters.push_back(optional(u"Wrap", Type::number));
  parameters.push_back(optional(u"Format", Type::flag));
  parameters.push_back(optional(u"ReplaceWith", Type::text));
  parameters.push_back(optional(u"Replace", Type::number));
  for (const auto* name : {u"MatchKashida", u"MatchDiacritics", u"MatchAlefHamza", u"MatchControl"}) {
    parameters.push_back(optional(name, Type::flag));
  }
  return parameters;
}

}  // namespace

bool FindObject::execute() {
  FindSettings& settings = this->settings();
  if (!settings.possible()) throw Failure{E_NOTIMPL};
  OpenDocument& document = owner().open();
  if (document.file.protection == 2) {
    throw WordError{4605,
                    u"This method or property is not available because the object refers to a protected area "
                    u"of the document."};
  }
  const Pattern pattern(settings.criteria);
  const auto search = [&](Span span) {
    return pattern.find(document.model(), document.view, span, settings.forward);
  };
  const Span range = owner().span();
  const Span behind = settings.forward ? Span{range.to, document.length()} : Span{0, range.from};
  auto match = search(range.empty() ? behind : range);
  // A range that its own text matches is taken as found already: the search runs on beyond it.
  if (match && !range.empty() && *match == range) match = search(behind);
  constexpr std::int32_t kContinue = 1;
  if (!match && settings.wrap == kContinue) {
    match = search(behind);
    if (!match) match = search({0, document.length()});
  }
  if (match) owner().place().set(*match);
  settings.found = match.has_value();
  return settings.found;
}

const Interface& FindObject::members() {
  static const Interface kind = [] {
    Interface made{u"Find", {}};
    auto& all = made.members;
    all.push_back(member<FindObject>(
        Verb::get, u"Text", {}, [](auto& o, const auto&) -> Value { return o.settings().criteria.text; }));
    all.push_back(
        member<FindObject>(Verb::put, u"Text", {text(u"Value")}, [](auto& o, const auto& a) -> Value {
          setText(o.settings(), a.text(0));
          return {};
        }));
    addFlag(all, u"MatchCase", [](auto& s) -> bool& { return s.criteria.matchCase; });
    addFlag(all, u"MatchWholeWord", [](auto& s) -> bool& { return s.criteria.wholeWord; });
    addFlag(all, u"MatchPrefix", [](auto& s) -> bool& { return s.criteria.prefix; });
    addFlag(all, u"MatchSuffix", [](auto& s) -> bool& { return s.criteria.suffix; });
    addFlag(all, u"Forward", [](auto& s) -> bool& { return s.forward; });
    addFlag(all, u"MatchWildcards", [](auto& s) -> bool& { return s.wildcards; });
    addFlag(all, u"MatchSoundsLike", [](auto& s) -> bool& { return s.soundsLike; });
    addFlag(all, u"MatchAllWordForms", [](auto& s) -> bool& { return s.wordForms; });
    addFlag(all, u"Format", [](auto& s) -> bool& { return s.format; });
    addFlag(all, u"MatchPhrase", [](auto& s) -> bool& { return s.phrase; });
    addFlag(all, u"IgnoreSpace", [](auto& s) -> bool& { return s.ignoreSpace; });
    addFlag(all, u"IgnorePunct", [](auto& s) -> bool& { return s.ignorePunctuation; });
    addFlag(all, u"MatchFuzzy", [](auto& s) -> bool& { return s.fuzzy; });
    addFlag(all, u"MatchKashida", [](auto& s) -> bool& { return s.kashida; });
    addFlag(all, u"MatchDiacritics", [](auto& s) -> bool& { return s.diacritics; });
    addFlag(all, u"MatchAlefHamza", [](auto& s) -> bool& { return s.alefHamza; });
    addFlag(all, u"MatchControl", [](auto& s) -> bool& { return s.control; });
    addFlag(all, u"MatchByte", [](auto& s) -> bool& { return s.byte; });
    all.push_back(member<FindObject>(Verb::get, u"Wrap", {},
                                     [](auto& o, const auto&) -> Value { return o.settings().wrap; }));
    all.push_back(
        member<FindObject>(Verb::put, u"Wrap", {number(u"Value")}, [](auto& o, const auto& a) -> Value {
          if (a.number(0) < 0 || a.number(0) > 2) {
            throw WordError{4608, u"Value out of range"};
          }
          o.settings().wrap = a.number(0);
          return {};
        }));
    all.push_back(member<FindObject>(Verb::get, u"Found", {},
                                     [](auto& o, const auto&) -> Value { return o.settings().found; }));
    all.push_back(member<FindObject>(Verb::call, u"ClearFormatting", {}, [](auto& o, const auto&) -> Value {
      o.settings().format = false;
      return {};
    }));
    all.push_back(member<FindObject>(Verb::call, u"Execute", executeParameters(), executeWith));
    return made;
  }();
  return kind;
}

}  // namespace pluvo::stand_in
