#include "findpanel/preview.h"

#include "engine/request.h"
#include "errors/text.h"
#include "sample_text.h"

#include <array>
#include <optional>
#include <utility>
#include <vector>

namespace pluvo::findpanel {

namespace {

constexpr const char16_t* kLineEnd = u"\r\n";
constexpr const char16_t* kGap = u"\r\n\r\n";
/// In one and the same unit.
constexpr std::int16_t kNearest = -1;

/// The controls of the find page, as the preview reads them.
class Request {
 public:
  explicit Request(const forms::Form& form) : form_(form) {}

  const std::u16string& text(const char16_t* name) const { return form_.get<forms::TextBox>(name).Text(); }
  const std::u16string& choice(const char16_t* name) const { return form_.get<forms::ComboBox>(name).Text(); }
  bool ticked(const char16_t* name) const { return form_.get<forms::CheckBox>(name).Value(); }
  /// 0 where nothing is chosen.
  std::int16_t code(const char16_t* name) const {
    const auto value = form_.get<forms::ComboBox>(name).Value();
    return value ? errors::toInteger(*value) : std::int16_t{0};
  }

 private:
  const forms::Form& form_;
};

bool beginsWithLineEnd(const std::u16string& text) { return text.find_first_of(u"\r\n\v") == 0; }

/// What the engine makes of the distance; nothing where it is none, or too large.
std::optional<std::int16_t> distanceOf(const Request& request) {
  const std::u16string& distance = request.choice(u"cboxNumberDistanceApart");
  if (distance == engine::kSame) return std::int16_t{0};
  try {
    return errors::toInteger(distance);
  } catch (const errors::Fault&) {
    return std::nullopt;
  }
}

/// Why nothing can be found, and what to do; empty where something can.
std::u16string obstacle(const Request& request) {
  const std::u16string& begin = request.text(u"txtBeginText");
  if (begin.empty()) {
    return u"There is nothing to find yet.  Type into 'Find Text that Begins with' the words that the text "
           u"you are looking for begins with; all the other boxes may stay empty.";
  }
  if (beginsWithLineEnd(begin)) {
    return u"Nothing can be found: 'Find Text that Begins with' begins with an empty line.  Take the empty "
           u"line away, so that the box begins with words.";
  }
  for (const auto& [name, title] :
       {std::pair{u"txtEndText", u"'And Ends with'"}, std::pair{u"txtInsideText1", u"'Inside Text'"}}) {
    if (!beginsWithLineEnd(request.text(name))) continue;
    return std::u16string(title) +
           u" begins with an empty line, and so it is not looked for.  Take the empty line away, so that the "
           u"box begins with words, or clear the box.";
  }
  if (!request.text(u"txtInsideText1").empty() && request.text(u"txtEndText").empty()) {
    return u"Nothing can be found: 'Inside Text' has to stand between a beginning and an ending.  Fill in "
           u"'And Ends with', and then clear 'Inside Text' if you do not need it.";
  }
  const bool bounded = !request.text(u"txtEndText").empty() &&
                       request.code(u"cboxUnitDistanceApart") < engine::kEntireDocument;
  const auto distance = distanceOf(request);
  if (!distance || (bounded && *distance < kNearest)) {
    return u"Nothing can be found: 'No farther apart than' has to be 'Same', or a number from 0 to 32767.";
  }
  return {};
}

std::u16string distanceSentence(const Request& request) {
  const std::int16_t unit = request.code(u"cboxUnitDistanceApart");
  if (unit < engine::kWords || unit >= engine::kEntireDocument)
    return u"The ending may be anywhere behind the beginning.";
  const std::u16string noun = std::array{u"word", u"sentence", u"paragraph"}[static_cast<std::size_t>(unit)];
  const std::int16_t distance = distanceOf(request).value_or(0);
  if (distance < 0) return u"The beginning and the ending are in the same " + noun + u'.';
  if (distance == 0)
    return u"The beginning and the ending are in the same " + noun + u", or in two that follow each other.";
  return u"Besides the " + noun + u"s that they stand in, there are no more than " +
         errors::decimal(distance) + u' ' + noun + (distance == 1 ? u"" : u"s") +
         u" between the beginning and the ending.";
}

std::u16string joined(const std::vector<std::u16string>& sentences) {
  std::u16string text;
  for (const std::u16string& sentence : sentences) text += (text.empty() ? u"" : u"  ") + sentence;
  return text;
}

std::u16string findingSentences(const Request& request) {
  std::vector<std::u16string> sentences;
  if (!request.text(u"txtEndText").empty()) sentences.push_back(distanceSentence(request));
  sentences.push_back(request.ticked(u"chkMatchCase") ? u"Capitals and small letters are told apart."
                                                      : u"Capitals and small letters are taken as the same.");
  if (request.ticked(u"chkMatchWholeWords")) sentences.push_back(u"Only whole words are found.");
  if (request.ticked(u"chkShowFieldCodes"))
    sentences.push_back(u"Fields are searched by their codes, not by what they show.");
  const std::u16string& folder = request.text(u"txtFilePath");
  if (!folder.empty()) {
    sentences.push_back(u"The files in " + folder + u" are searched, not the current document.");
  } else {
    sentences.push_back(request.ticked(u"chkStartFindsFromBeginning")
                            ? u"The search starts at the beginning of the document."
                            : u"The search starts at the cursor.");
  }
  return joined(sentences);
}

SampleOperation operationOf(const Request& request) {
  SampleOperation what;
  what.operation = request.code(u"cboxProcOperation1");
  what.location = request.code(u"cboxProcSelection1");
  what.place = request.code(u"cboxProcRelativePosition1");
  what.text = request.text(u"txtTextToEnter");
  if (request.ticked(u"chkExtraSpace")) what.space = u" ";
  if (request.code(u"cboxHighlighters") != 0) what.colour = request.choice(u"cboxHighlighters");
  return what;
}

std::u16string makingSentences(const Request& request, const SampleOperation& what) {
  if (what.operation == engine::kNone)
    return u"Nothing is changed.  Choose an operation to have something done to the text.";
  std::vector<std::u16string> sentences;
  const bool takesText = what.operation == engine::kInsert || what.operation == engine::kReplace;
  if (takesText && what.text.empty()) {
    sentences.push_back(what.operation == engine::kInsert
                            ? u"There is nothing to insert yet: 'with the following' is empty."
                            : u"Since 'with the following' is empty, the text is taken away.");
  }
  if (what.operation == engine::kInsert && !what.space.empty())
    sentences.push_back(u"A space is put between the new text and the text found.");
  sentences.push_back(request.ticked(u"chkConfirmEach") ? u"You are asked before each change."
                                                        : u"All of them are changed without asking.");
  return joined(sentences);
}

}  // namespace

std::u16string previewOf(const forms::Form& form) {
  const Request request(form);
  if (std::u16string why = obstacle(request); !why.empty()) return why;
  const SampleText found(request.text(u"txtBeginText"), request.text(u"txtEndText"),
                         request.text(u"txtInsideText1"));
  const SampleOperation what = operationOf(request);
  std::u16string made = found.after(what).print();
  if (made.empty()) made = u"{Nothing}";
  return std::u16string(u"Finding text that looks like:") + kLineEnd + found.print() + kGap +
         findingSentences(request) + kGap + u"And making it look like:" + kLineEnd + made + kGap +
         makingSentences(request, what);
}

Preview::Preview(forms::Form& form, errors::Context& context, Choices& choices)
    : form_(form), context_(context), choices_(choices) {
  form.get<forms::CommandButton>(u"cmdViewOperation").Click.handledBy([this] { cmdViewOperation_Click(); });
}

void Preview::cmdViewOperation_Click() {
  errors::guarded(context_, u"FF:22", [&] {
    auto& display = form_.get<forms::TextBox>(u"txtOperationDisplay");
    display.BackColor(forms::kWhite);
    display.Text({});
    if (choices_.CheckBlockTexts()) display.Text(previewOf(form_));
  });
}

}  // namespace pluvo::findpanel
