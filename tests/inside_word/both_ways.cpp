#include "both_ways.h"

#include "base/utf.h"
#include "engine/random_requests.h"

#include <deque>
#include <utility>

namespace pluvo::inside_word {
namespace {

std::deque<forms::Answer> answers(unsigned seed) {
  engine::Dice dice(seed);
  std::deque<forms::Answer> all;
  for (int i = 0; i < 500; ++i) all.push_back(dice.once(3) ? forms::Answer::no : forms::Answer::yes);
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

}  // namespace

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

}  // namespace pluvo::inside_word
