#include "both_ways.h"
#include "engine/random_requests.h"

#include <gtest/gtest.h>

namespace pluvo::inside_word {
namespace {

using engine::Dice;

/// Another set of letters, in which Word's ways with quotes and codes show.
void inQuotes(std::u16string& text) {
  for (char16_t& unit : text) {
    unit = unit == u'b'    ? u'\''
           : unit == u'A'  ? u'\x2019'
           : unit == u'.'  ? u'^'
           : unit == u'\v' ? u'"'
                           : unit;
  }
}

TEST(AgreementOfWordAndMemory, AHundredRequests) {
  const WordSession word;
  Dice dice(9);
  std::size_t changed = 0;
  for (unsigned i = 0; i < 100; ++i) {
    Task task;
    task.asked = engine::randomRequest(dice);
    task.asked.liftLimits = dice.once(2);
    task.asked.confirmEach = dice.once(4);
    const bool quotes = dice.once(2);
    for (auto* text : {&task.asked.begin, &task.asked.end, &task.asked.inside, &task.asked.text}) {
      if (quotes) inQuotes(*text);
    }
    for (unsigned k = 0; k < 20; ++k) {
      task.seed = 20 * i + k;
      task.text = dice.text(u"aabbA . \r\v", 0, 60) + u"z";
      if (quotes) inQuotes(task.text);
      const Outcome wanted = inMemory(task);
      ASSERT_EQ(words(inWord(word, task)), words(wanted)) << words(task) << '\n' << WordSession::log();
      changed += wanted.text != task.text + u'\r' || !wanted.highlights.empty() ? 1 : 0;
    }
  }
  EXPECT_GT(changed, 300U) << "the requests change too little to tell";
}

TEST(AgreementOfWordAndMemory, TextsThatAreHardToFind) {
  const WordSession word;
  const std::u16string longText = std::u16string(200, u'x') + u"^" + std::u16string(100, u'y');
  const std::u16string carets(200, u'^');
  const std::u16string field = u"\x13 DATE \x14Monday\x15";
  struct Case {
    std::u16string text;
    engine::Request asked;
  };
  const Case cases[] = {
      {u"a " + longText + u" b " + longText, {.begin = longText, .operation = engine::kHighlight}},
      {carets + u" " + carets + u"z", {.begin = carets, .operation = engine::kReplace, .text = u"^p"}},
      {carets.substr(1) + u"q " + carets, {.begin = carets + u"q", .operation = engine::kDelete}},
      {u"^p ^^ ^13 \r", {.begin = u"^p", .operation = engine::kReplace, .text = u"^&"}},
      {u"a^b^c", {.begin = u"^", .end = u"^", .operation = engine::kHighlight}},
      {u"\"a\" \x201C"
       u"a\x201D \"a\"",
       {.begin = u"\x201C"
                 u"a",
        .end = u"\x201D",
        .operation = engine::kDelete}},
      {u"a\x00A0"
       u"b a b",
       {.begin = u"a b", .operation = engine::kDelete}},
      {u"on " + field + u" and " + field,
       {.begin = u"Monday", .operation = engine::kReplace, .text = u"Friday"}},
      {u"on " + field + u" and", {.begin = u"DATE", .operation = engine::kDelete}},
      {u"on " + field + u" and", {.begin = u"DATE", .operation = engine::kDelete, .showFieldCodes = true}},
      {u"on " + field + u" and", {.begin = u"on", .end = u"and", .operation = engine::kDelete}},
      {u"ab\x07"
       u"ab\x07\x07"
       u"ab",
       {.begin = u"a", .end = u"b", .operation = engine::kReplace, .text = u"c"}},
      {u"ab\x07"
       u"cb\x07\x07"
       u"ab",
       {.begin = u"a", .end = u"c", .operation = engine::kHighlight}},
      {u"John's John Johnny", {.begin = u"john", .operation = engine::kDelete, .wholeWords = true}},
      {u"xa\tb a\tbx a\tb", {.begin = u"a\tb", .operation = engine::kDelete, .wholeWords = true}},
      {u"ab\rabc ab\vabd\rab",
       {.begin = u"AB\rabd", .end = u"\r", .operation = engine::kReplace, .text = u"x"}},
      {longText + u"\r" + longText + u"\r" + longText + u"z",
       {.begin = longText + u"\r" + longText + u"z", .operation = engine::kDelete}},
      {u"a\r\rb\v\vc\r", {.begin = u"\r\r", .operation = engine::kReplace, .text = u" "}},
      {u"a\x07"
       u"a\rb\x07\x07"
       u"a\r",
       {.begin = u"a\r", .operation = engine::kHighlight}},
      {u"one two three, two. two", {.begin = u"two", .operation = engine::kDelete}},
      {u"ab", {.begin = u"ab", .end = u"b", .inside = u"a", .operation = engine::kHighlight}},
      {u"a b a b",
       {.begin = u"a",
        .end = u"b",
        .inside = u" ",
        .operation = engine::kDelete,
        .location = engine::kInsideText}},
      {u"a", {.begin = u"a", .operation = engine::kInsert, .place = engine::kAfter, .text = u"aa\r\na"}},
  };
  for (const Case& each : cases) {
    for (const bool lift : {false, true}) {
      Task task{each.text, each.asked};
      task.asked.liftLimits = lift;
      EXPECT_EQ(words(inWord(word, task)), words(inMemory(task))) << words(task) << '\n'
                                                                  << WordSession::log();
    }
  }
}

}  // namespace
}  // namespace pluvo::inside_word
