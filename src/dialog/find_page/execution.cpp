#include "execution.h"

#include "errors/numbers.h"

#include <utility>

namespace pluvo::dialog {

namespace {

using forms::ComboBox;

constexpr std::int32_t kNoPlace = 99;
constexpr float kSecondsOfADay = 86400;
constexpr const char16_t* kSummaryHead =
    u"Changes\t\tFile Name\r\n"
    u"-----------\t\t------------";

/// The value of a choice that must have been made.
std::u16string chosen(const ComboBox& list) {
  auto value = list.Value();
  if (!value) throw errors::invalidUseOfNull();
  return *std::move(value);
}

std::int16_t code(const ComboBox& list) { return errors::toInteger(chosen(list)); }

}  // namespace

Execution::Execution(forms::Form& form, Pages& pages, clsProcessFind& engine, forms::Clock& clock,
                     forms::Yielding& yielding, Files files)
    : form_(form),
      pages_(pages),
      engine_(engine),
      clock_(clock),
      yielding_(yielding),
      files_(std::move(files)) {
  pages_.pgFindAndReplace.cmdExecuteFAR.Click.handledBy([this] { cmdExecuteFAR_Click(); });
}

frmProcessing& Execution::confirmation() {
  if (!confirmation_) {
    confirmation_ = std::make_unique<frmProcessing>(engine_);
    // Nothing is left to be out of the way of.
    const auto ended = [this] {
      form_.WindowState(0);
      Confirmed.raise();
    };
    confirmation_->Finished.handledBy(ended);
    confirmation_->Closed.handledBy(ended);
  }
  return *confirmation_;
}

void Execution::cmdExecuteFAR_Click() {
  errors::guarded(engine_.context(), u"FF:21", [&] {
    if (pages_.pgMultiFiles.txtFilePath.Text().empty() && !documentIsReady()) return;
    if (pages_.Options.chkQuiteMode.Value() && !pages_.Options.chkConfirmEach.Value()) {
      showNotice(u"Non-Confirmation Quiet Mode.  Please Wait while your requests are processed...");
      pause();
    }
    RunFindRequest();
    form_.Repaint();
    pages_.pgMultiFiles.lblPleaseWait.Visible(false);
    form_.WindowState(confirmation().Visible() ? 1 : 0);
  });
}

/// Whether the document in front can be worked on; the user is told why it cannot, and what to know before.
bool Execution::documentIsReady() {
  const word::Obstacle obstacle = engine_.application().obstacle();
  const char16_t* const wrong =
      obstacle == word::Obstacle::protectedView
          ? u"Word shows this document in Protected View.  Click Enable Editing there, and try again."
      : obstacle == word::Obstacle::readingView
          ? u"Word shows this document in reading view, where it cannot be searched.  Choose another view, "
            u"and try again."
      : hasDocument() ? nullptr
                      : u"Open a document first";
  if (wrong == nullptr) {
    tellBefore();
    return true;
  }
  engine_.boxes().show(wrong, forms::Buttons::ok, u"Pluvorama");
  return false;
}

void Execution::tellBefore() {
  std::u16string notes;
  try {
    word::Application& word = engine_.application();
    if (word.ActiveDocument()->TrackRevisions())
      notes =
          u"Changes are tracked in this document.  What is deleted stays in the text, marked as deleted, "
          u"until "
          u"the changes are accepted.";
    if (!pages_.Options.chkStartFindsFromBeginning.Value() &&
        word.Selection()->StoryType() != word::wdMainTextStory)
      notes +=
          std::u16string(notes.empty() ? u"" : u"\r\n\r\n") +
          u"The insertion point is in a header, a footer, a note or a text box.  The search starts at the "
          u"top of the document.";
  } catch (const errors::Fault&) {
    return;  // whatever is wrong is met and told by the run itself
  }
  if (!notes.empty()) engine_.boxes().show(notes, forms::Buttons::ok, u"Pluvorama");
}

bool Execution::hasDocument() {
  const auto documents = engine_.application().Documents();
  if (documents == nullptr) throw errors::objectNotSet();
  return documents->Count() > 0;
}

void Execution::showNotice(const std::u16string& text) {
  auto& notice = pages_.pgMultiFiles.lblPleaseWait;
  notice.Caption(u"\r\n\r\n" + text);
  notice.Visible(true);
}

void Execution::pause() {
  const auto now = [&] { return static_cast<float>(clock_.secondsSinceMidnight()); };
  const float start = now();
  float over = start + 0.5F;
  float time = start;
  while (time <= over) {
    // No clock shows an end that lies beyond midnight: then it has to pass the start again.
    if (over >= kSecondsOfADay && time < start) over = start;
    yielding_.yield();
    time = now();
  }
}

void Execution::RunFindRequest() {
  errors::guarded(engine_.context(), u"FF:20", [&] {
    engine_.context().runSummary = kSummaryHead;
    if (pages_.Options.chkConfirmEach.Value()) form_.WindowState(1);
    copyRequest();
    if (pages_.pgMultiFiles.txtFilePath.Text().empty()) {
      runOverDocument();
    } else {
      runOverFiles();
    }
  });
}

void Execution::copyRequest() {
  const FindPage& find = pages_.pgFindAndReplace;
  const OptionsPage& options = pages_.Options;
  engine_.BeginBlock(find.txtBeginText.Text());
  engine_.EndBlock(find.txtEndText.Text());
  engine_.UnitsApart(chosen(find.cboxNumberDistanceApart));
  engine_.UnitsApartType(code(find.cboxUnitDistanceApart));
  engine_.InsideBlock(find.txtInsideText1.Text());
  engine_.Operation(code(find.cboxProcOperation1));
  const ComboBox& position = find.cboxProcRelativePosition1;
  engine_.BeforeOrAfter(position.Value() ? code(position) : kNoPlace);
  engine_.OperationLocation(code(find.cboxProcSelection1));
  engine_.ReplaceInsertTextString(find.txtTextToEnter.Text());
  engine_.MatchOnlyWholeWords(options.chkMatchWholeWords.Value());
  engine_.ExtraSpaceSetting(options.chkExtraSpace.Value());
  engine_.MatchTextCaseSetting(options.chkMatchCase.Value());
  engine_.StartFindsAtBeginningSetting(options.chkStartFindsFromBeginning.Value());
  engine_.HighlightColorSetting(code(find.cboxHighlighters));
  engine_.QuiteModeSetting(options.chkQuiteMode.Value());
  engine_.ConfirmEachOperationsetting(options.chkConfirmEach.Value());
  engine_.ShowFieldCodes(options.chkShowFieldCodes.Value());
}

void Execution::runOverDocument() {
  engine_.MultiFileRun(false);
  if (engine_.ConfirmEachOperationsetting()) {
    confirmation().SingleProcess();
  } else {
    engine_.GoGetEmFARBOT();
  }
}

void Execution::runOverFiles() {
  engine_.MultiFileRun(true);
  takeFilesToProcess();
  if (!files_.chosen(filesToProcess_)) return;
  if (engine_.ConfirmEachOperationsetting()) {
    confirmation().MultiProcess(filesToProcess_);
    return;
  }
  engine_.MultiPLUVO(filesToProcess_);
  auto& display = pages_.pgFindAndReplace.txtOperationDisplay;
  display.Text(engine_.context().runSummary);
  display.BackColor(forms::kWhite);
}

void Execution::takeFilesToProcess() {
  const auto& listed = pages_.pgMultiFiles.lbxPotentialFiles;
  if (listed.ListCount() == 0) {
    showNotice(u"Please wait while Locating files...");
    form_.Repaint();
    filesToProcess_ = files_.LocateFilesForRun();
    pages_.pgMultiFiles.lblPleaseWait.Visible(false);
    form_.Repaint();
    return;
  }
  filesToProcess_.clear();
  for (std::size_t row = 0; row < listed.ListCount(); ++row) filesToProcess_.push_back(listed.List(row));
}

}  // namespace pluvo::dialog
