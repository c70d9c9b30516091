#include "preview.h"

#include "base/text.h"
#include "engine/request.h"
#include "errors/numbers.h"
#include "sample_text.h"

#include <array>
#include <optional>
#include <utility>
#include <vector>

namespace pluvo::dialog {

namespace {

constexpr const char16_t* kLineEnd = u"\r\n";
constexpr const char16_t* kGap = u"\r\n\r\n";
/// In one and the same unit.
constexpr std::int16_t kNearest = -1;

struct Searched {
  forms::TextBox FindPage::*box;
  const char16_t* title;
};
constexpr Searched kBegin = {&FindPage::txtBeginText, u"'Find Text that Begins with'"};
constexpr Searched kEnd = {&FindPage::txtEndText, u"'And Ends with'"};
constexpr Searched kInside = {&FindPage::txtInsideText1, u"'Inside Text'"};

/// The controls of the pages, as the engine would read them.
class Request {
 public:
  Request(const Pages& pages, const clsProcessFind& engine)
      : find(pages.pgFindAndReplace), files(pages.pgMultiFiles), options(pages.Options), engine_(engine) {}

  const FindPage& find;
  const FilesPage& files;
  const OptionsPage& options;

  const std::u16string& text(const Searched& searched) const { return (find.*searched.box).Text(); }
  engine::SearchedText searched(const Searched& searched) const { return engine_.searched(text(searched)); }
  bool keepsExtraSpace() const { return engine_.keepsExtraSpace(); }

 private:
  const clsProcessFind& engine_;
};

/// 0 where nothing is chosen.
std::int16_t codeOf(const forms::ComboBox& list) {
  const auto value = list.Value();
  return value ? errors::toInteger(*value) : std::int16_t{0};
}

/// The text whose place is operated on although it is not asked for; none where all is well.
const Searched* missingPlace(const Request& request) {
  if (codeOf(request.find.cboxProcOperation1) == engine::kNone) return nullptr;
  const std::int16_t place = codeOf(request.find.cboxProcSelection1);
  const Searched* text = place == engine::kEnding ? &kEnd : place == engine::kInsideText ? &kInside : nullptr;
  return text != nullptr && request.searched(*text).search.empty() ? text : nullptr;
}

std::u16string changesNothing(const Request& request) {
  const Searched* missing = missingPlace(request);
  if (missing == nullptr) return {};
  return u"  The operation will change nothing: it is on '" + request.find.cboxProcSelection1.Text() +
         u"', and " + missing->title + u" is not asked for.";
}

/// The distance as the engine reads it; nothing where it is none, or too large.
std::optional<std::int16_t> distanceOf(const Request& request) {
  const std::u16string& distance = request.find.cboxNumberDistanceApart.Text();
  if (distance == kSame) return std::int16_t{0};
  try {
    return errors::toInteger(distance);
  } catch (const errors::Fault&) {
    return std::nullopt;
  }
}

/// Why nothing can be found, and what to do; empty where something can.
std::u16string obstacle(const Request& request) {
  const std::u16string& begin = request.find.txtBeginText.Text();
  if (begin.empty()) {
    return u"There is nothing to find yet.  Type into 'Find Text that Begins with' the words that the text "
           u"you are looking for begins with; all the other boxes may stay empty.";
  }
  if (request.searched(kBegin).search.empty()) {
    return u"Nothing can be found: 'Find Text that Begins with' begins with an empty line.  Take the empty "
           u"line away, so that the box begins with words.";
  }
  for (const Searched& text : {kEnd, kInside}) {
    if (request.text(text).empty() || !request.searched(text).search.empty()) continue;
    return std::u16string(text.title) +
           u" begins with an empty line, and so it is not looked for.  Take the empty line away, so that the "
           u"box begins with words, or clear the box." +
           changesNothing(request);
  }
  if (!request.text(kInside).empty() && request.text(kEnd).empty()) {
    return std::u16string(u"Nothing can be found: 'Inside Text' holds a text") +
           (!request.find.txtInsideText1.Enabled() ? u", which counts although the box is greyed" : u"") +
           u".  It has to stand between a beginning and an ending.  Fill in 'And Ends with', and then clear "
           u"'Inside Text' if you do not need it.";
  }
  const bool bounded = !request.find.txtEndText.Text().empty() &&
                       codeOf(request.find.cboxUnitDistanceApart) < engine::kEntireDocument;
  const auto distance = distanceOf(request);
  if (!distance || (bounded && *distance < kNearest)) {
    return u"Nothing can be found: 'No farther apart than' has to be 'Same', or a number from 0 to 32767.";
  }
  return {};
}

std::u16string distanceSentence(const Request& request) {
  const std::int16_t unit = codeOf(request.find.cboxUnitDistanceApart);
  if (unit < engine::kWords || unit >= engine::kEntireDocument)
    return u"The ending may be anywhere after the beginning.";
  const std::u16string noun = std::array{u"word", u"sentence", u"paragraph"}[static_cast<std::size_t>(unit)];
  const std::int16_t distance = distanceOf(request).value_or(0);
  if (distance < 0) return u"The beginning and the ending are in the same " + noun + u'.';
  if (distance == 0)
    return u"The beginning and the ending are in the same " + noun + u", or in two that follow each other.";
  return u"Besides the " + noun + u"s that they stand in, there are no more than " + base::decimal(distance) +
         u' ' + noun + (distance == 1 ? u"" : u"s") + u" between the beginning and the ending.";
}

std::u16string joined(const std::vector<std::u16string>& sentences) {
  std::u16string text;
  for (const std::u16string& sentence : sentences) text += (text.empty() ? u"" : u"  ") + sentence;
  return text;
}

/// Sentences about texts that are not looked for as a whole.
void addCuts(const Request& request, std::vector<std::u16string>& sentences) {
  std::u16string cut;
  for (const Searched& text : {kBegin, kEnd, kInside}) {
    if (request.searched(text).cut()) cut += (cut.empty() ? u"" : u" and ") + std::u16string(text.title);
  }
  if (cut.empty()) return;
  sentences.push_back(u"Of " + cut +
                      u" the first line is looked for, or 255 characters.  Where that stands, "
                      u"the whole text has to stand letter for letter, capitals too.");
  if (request.options.chkMatchWholeWords.Value())
    sentences.push_back(u"Parts of words are found too, since a text is not looked for as a whole.");
  if (request.searched(kBegin).cut() && !request.text(kEnd).empty())
    sentences.push_back(
        u"The ending is looked for, and its distance counted, from the end of the first line, or "
        u"of the 255 characters, of the beginning.");
}

std::u16string findingSentences(const Request& request) {
  std::vector<std::u16string> sentences;
  if (!request.find.txtEndText.Text().empty()) sentences.push_back(distanceSentence(request));
  sentences.push_back(request.options.chkMatchCase.Value()
                          ? u"Capitals and small letters are told apart."
                          : u"Capitals and small letters are taken as the same.");
  const bool whole =
      !request.searched(kBegin).cut() && !request.searched(kEnd).cut() && !request.searched(kInside).cut();
  if (whole && request.options.chkMatchWholeWords.Value())
    sentences.push_back(u"Only whole words are found.");
  addCuts(request, sentences);
  if (request.options.chkShowFieldCodes.Value())
    sentences.push_back(u"Fields are searched by their codes, not by what they show.");
  const std::u16string& folder = request.files.txtFilePath.Text();
  if (!folder.empty()) {
    sentences.push_back(u"The files in " + folder + u" are searched, not the current document.");
  } else {
    sentences.push_back(request.options.chkStartFindsFromBeginning.Value()
                            ? u"The search starts at the beginning of the document."
                            : u"The search starts at the cursor.");
  }
  return joined(sentences);
}

SampleOperation operationOf(const Request& request) {
  SampleOperation what;
  what.operation = codeOf(request.find.cboxProcOperation1);
  what.location = codeOf(request.find.cboxProcSelection1);
  what.place = codeOf(request.find.cboxProcRelativePosition1);
  what.text = base::withParagraphMarks(request.find.txtTextToEnter.Text());
  if (request.options.chkExtraSpace.Value() || request.keepsExtraSpace()) what.space = u" ";
  if (codeOf(request.find.cboxHighlighters) != 0) what.colour = request.find.cboxHighlighters.Text();
  return what;
}

std::u16string makingSentences(const Request& request, const SampleOperation& what) {
  if (what.operation == engine::kNone)
    return u"Nothing is changed.  Choose an operation to have something done to the text.";
  std::vector<std::u16string> sentences;
  if (what.operation == engine::kInsert && what.text.empty()) {
    sentences.push_back(std::u16string(u"There is nothing to insert yet: 'with the following' is empty.") +
                        (what.space.empty() ? u"" : u"  Only the extra space is put in."));
  } else if (what.operation == engine::kInsert && !what.space.empty()) {
    sentences.push_back(u"A space is put between the new text and the text found.");
  }
  if (what.operation == engine::kInsert && !request.options.chkExtraSpace.Value() && !what.space.empty())
    sentences.push_back(u"That extra space was asked for before, and stays until the program is closed.");
  if (what.operation == engine::kReplace && what.text.empty())
    sentences.push_back(u"Since 'with the following' is empty, the text is taken away.");
  if (what.location == engine::kSelection && request.text(kEnd).empty() && request.searched(kBegin).cut())
    sentences.push_back(
        u"'Selection' may be no more than what is looked for.  Choose 'Beginning' to operate on "
        u"the whole text.");
  sentences.push_back(request.options.chkConfirmEach.Value() ? u"You are asked before each change."
                                                             : u"All of them are changed without asking.");
  return joined(sentences);
}

}  // namespace

std::u16string previewOf(const Pages& pages, const clsProcessFind& engine) {
  const Request request(pages, engine);
  if (std::u16string why = obstacle(request); !why.empty()) return why;
  const SampleText found(request.searched(kBegin).full, request.searched(kEnd).full,
                         request.searched(kInside).full);
  const SampleOperation what = operationOf(request);
  const std::u16string nothing = changesNothing(request);
  std::u16string made = nothing.empty() ? found.after(what).print() : found.print();
  if (made.empty()) made = u"{Nothing}";
  return std::u16string(u"Finding text that looks like:") + kLineEnd + found.print() + kGap +
         findingSentences(request) + kGap + u"And making it look like:" + kLineEnd + made + kGap +
         (nothing.empty() ? makingSentences(request, what) : nothing.substr(2));
}

Preview::Preview(Pages& pages, clsProcessFind& engine, Choices& choices)
    : pages_(pages),
      engine_(engine),
      choices_(choices),
      display_(pages.pgFindAndReplace.txtOperationDisplay) {
  pages_.pgFindAndReplace.cmdViewOperation.Click.handledBy([this] { cmdViewOperation_Click(); });
  display_.Change.handledBy([this] {
    shown_ = false;
    display_.BackStyle(forms::BackStyle::opaque);
  });
  handleChanges();
}

void Preview::handleChanges() {
  FindPage& find = pages_.pgFindAndReplace;
  OptionsPage& options = pages_.Options;
  const auto grey = [this] {
    if (shown_) display_.BackStyle(forms::BackStyle::transparent);
  };
  for (forms::TextBox* box : {&find.txtBeginText, &find.txtEndText, &find.txtInsideText1,
                              &find.txtTextToEnter, &pages_.pgMultiFiles.txtFilePath})
    box->Change.handledBy(grey);
  for (forms::ComboBox* list :
       {&find.cboxNumberDistanceApart, &find.cboxUnitDistanceApart, &find.cboxProcOperation1,
        &find.cboxProcRelativePosition1, &find.cboxProcSelection1, &find.cboxHighlighters})
    list->Change.handledBy(grey);
  for (forms::CheckBox* box :
       {&options.chkMatchCase, &options.chkMatchWholeWords, &options.chkShowFieldCodes,
        &options.chkExtraSpace, &options.chkStartFindsFromBeginning, &options.chkConfirmEach})
    box->Change.handledBy(grey);
}

void Preview::cmdViewOperation_Click() {
  errors::guarded(engine_.context(), u"FF:22", [&] {
    display_.BackColor(forms::kWhite);
    display_.Text({});
    if (!choices_.CheckBlockTexts()) return;
    display_.Text(previewOf(pages_, engine_));
    shown_ = true;
  });
}

}  // namespace pluvo::dialog
