#include "document/content_builder.h"
#include "document/document.h"
#include "errors/fault.h"

#include <gtest/gtest.h>

#include <functional>

namespace pluvo::document {
namespace {

using text::View;

/// "ab{code|r}cd", where one of these characters, or the whole field, is restricted.
std::vector<Content> restricted(Restriction::Of of, std::u16string_view where) {
  ContentBuilder builder;
  const std::int8_t restriction = builder.addRestriction({of, "not here"});
  const auto look = [&](char16_t unit) {
    Look result;
    if (where.find(unit) != where.npos) result.restriction = restriction;
    return result;
  };
  const auto add = [&](std::u16string_view text) {
    for (const char16_t unit : text) builder.append(unit, look(unit));
  };
  add(u"ab");
  builder.beginField(look(u'{'));
  add(u"code");
  builder.separateField(look(u'{'));
  add(u"r");
  builder.endField(look(u'{'));
  add(u"xy\r");
  return {builder.finish()};
}

/// Positions: a 0, b 1, { 2, code 3-6, | 7, r 8, } 9, x 10, y 11.
TEST(Restrictions, RefuseWhatTheFileCannotHoldBeforeAnythingChanges) {
  using Of = Restriction::Of;
  struct Case {
    Of of;
    std::u16string_view where;
    std::function<void(Story&)> edit;
    bool refused;
  };
  const auto replace = [](text::Span span, std::u16string_view text, View view = View::results) {
    return [=](Story& story) { story.replace(span, text, view); };
  };
  const auto insert = [](text::Position position, bool after) {
    return [=](Story& story) {
      after ? story.insertBehind(position, u"new") : story.insertBefore(position, u"new");
    };
  };
  const auto highlight = [](text::Span span) { return [=](Story& story) { story.highlight(span, 7); }; };
  const std::u16string_view field = u"{coder";
  // The last is passed by.
  const Case cases[] = {{Of::removal, u"b", replace({0, 2}, u""), true},
                        {Of::removal, u"b", replace({0, 1}, u"z"), false},
                        {Of::removal, u"b", insert(1, false), false},
                        {Of::removal, u"b", highlight({0, 2}), false},
                        {Of::change, u"b", replace({1, 2}, u"z"), true},
                        {Of::change, u"b", insert(1, false), true},
                        {Of::change, u"b", insert(1, true), false},  // it takes after the character before
                        {Of::change, u"b", highlight({0, 2}), true},
                        {Of::change, u"b", highlight({0, 1}), false},
                        {Of::part, field, replace({8, 9}, u""), true},
                        {Of::part, field, replace({8, 9}, u"z"), true},
                        {Of::part, field, insert(8, true), true},
                        {Of::part, field, replace({4, 5}, u"z", View::codes), true},
                        {Of::part, field, replace({1, 11}, u""), false},
                        {Of::part, field, replace({2, 10}, u"z"), false},
                        {Of::part, field, insert(2, false), false},
                        {Of::part, field, insert(10, true), false},
                        {Of::part, field, highlight({0, 11}), false},
                        {Of::highlight, u"b", replace({0, 2}, u"z"), false},
                        {Of::highlight, u"b", highlight({1, 2}), false}};
  for (const Case& c : cases) {
    SCOPED_TRACE(&c - cases);
    Document document(restricted(c.of, c.where));
    std::string said;
    try {
      c.edit(document.mainText());
    } catch (const errors::Fault& fault) {
      said = std::string(fault.description.begin(), fault.description.end());
      EXPECT_EQ(fault.problem, errors::Problem::unsupported);
    }
    EXPECT_EQ(said, c.refused ? "not here" : "");
    const bool passedBy = &c == std::end(cases) - 1;
    EXPECT_EQ(document.changed(), !c.refused && !passedBy);
  }
}

}  // namespace
}  // namespace pluvo::document
