#include "base/utf.h"
#include "dialog/workplace.h"
#include "engine/random_requests.h"
#include "word_stand_in/word_session.h"

#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// One and the same pass over a document in memory, and over one in Word.
namespace pluvo::inside_word {
namespace {

using engine::Dice;
using stand_in::WordSession;

struct Task {
  std::u16string text;
  engine::Request asked;
  /// Tells the answers to the calls.
  unsigned seed = 0;
};

/// What a pass leaves: the text, the highlights, and all that was said.
struct Outcome {
  std::u16string text;
  std::u16string highlights;
  std::vector<std::u16string> said;
};

std::deque<forms::BoxAnswer> answers(unsigned seed) {
  engine::Dice dice(seed);
  std::deque<forms::BoxAnswer> all;
  for (int i = 0; i < 500; ++i) all.push_back(dice.once(3) ? forms::BoxAnswer::no : forms::BoxAnswer::yes);
  return all;
}

/// Makes the pass and returns all that was said.
std::vector<std::u16string> pass(const std::shared_ptr<word::Application>& application, const Task& task) {
  dialog::Workplace place(application);
  std::vector<std::u16string> said;
  place.forms.user = [&](forms::Form& form) {
    said.push_back(form.Caption() + u": " + form.get<forms::Label>(u"lblStats").Caption());
    forms::press(form, u"cmdContinue");
  };
  place.boxes.answers = answers(task.seed);
  place.engine.QuiteModeSetting(false);
  place.pass(task.asked);
  for (const auto& box : place.boxes.shown) said.push_back(box.title.value_or(u"") + u": " + box.text);
  for (const std::string& report : place.reports) said.push_back(base::utf16(report));
  said.push_back(place.context.runSummary);
  return said;
}

/// What the user's last search may have left: everything as a literal search does not want it.
stand_in::FindSettings leftBehind() {
  stand_in::FindSettings left;
  left.text = u"left";
  left.wrap = word::wdFindContinue;
  for (auto& flag : left.flags) flag.second = !flag.second;
  return left;
}

Outcome inMemory(const Task& task) {
  const auto document =
      memory::MemoryDocument::create(stand_in::documentContent(task.text), nullptr, u"document.txt");
  const auto application = std::make_shared<memory::MemoryApplication>();
  application->add(document);
  auto said = pass(application, task);
  const document::Story& model = document->mainText();
  return {model.text().substring(0, model.length()), stand_in::highlights(model), std::move(said)};
}

Outcome inWord(const WordSession& word, const Task& task) {
  WordSession::world().calls.clear();
  WordSession::world().dialogFind = leftBehind();
  const auto document = WordSession::document(task.text);
  auto said = pass(word.word(), task);
  Outcome outcome{document->allText(), document->highlights(), std::move(said)};
  WordSession::world().close(document);
  return outcome;
}

std::string words(const Outcome& outcome) {
  std::string all = base::utf8(outcome.text) + "\n" + base::utf8(outcome.highlights);
  for (const auto& line : outcome.said) all += "\n" + base::utf8(line);
  return all;
}

std::string words(const Task& task) {
  const engine::Request& asked = task.asked;
  return base::utf8(task.text) + '\n' + engine::words(asked) + "words " + std::to_string(asked.wholeWords) +
         " case " + std::to_string(asked.matchCase) + " lift " + std::to_string(asked.liftLimits) +
         " confirm " + std::to_string(asked.confirmEach) + " seed " + std::to_string(task.seed);
}

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
