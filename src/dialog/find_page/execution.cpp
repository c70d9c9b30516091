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
    confirmation_->Finished.handledBy([this] {
      form_.WindowState(0);
      Confirmed.raise();
    });
  }
  return *confirmation_;
}

void Execution::cmdExecuteFAR_Click() {
  bool begins = false;
  bool waits = false;
  errors::guarded(engine_.context(), u"FF:21", [&] {
    if (pages_.pgMultiFiles.txtFilePath.Text().empty() && !documentIsReady()) return;
    waits = pages_.Options.chkQuiteMode.Value() && !pages_.Options.chkConfirmEach.Value();
    if (waits) showNotice(u"Non-Confirmation Quiet Mode.  Please Wait while your requests are processed...");
    begins = true;
  });
  if (!begins) return Executed.raise();
  if (!waits) return RunFindRequest();
  engine_.labour().run([this] { pause(); },
                       [this](const std::exception_ptr& thrown) {
                         if (!went([] {}, thrown)) return Executed.raise();
                         RunFindRequest();
                       });
}

/// Whether the step went well, and the work before it; its fault is reported.
bool Execution::went(const std::function<void()>& step, const std::exception_ptr& thrown) {
  bool well = false;
  errors::guardedOn(engine_.context(), [&] {
    if (thrown) std::rethrow_exception(thrown);
    step();
    well = true;
  });
  return well;
}

void Execution::finish() {
  went([this] {
    form_.Repaint();
    pages_.pgMultiFiles.lblPleaseWait.Visible(false);
    form_.WindowState(confirmation().Visible() ? 1 : 0);
  });
  Executed.raise();
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
        (word::kindsOf(word.Selection()->StoryType()) & engine_.request().stories) == 0) {
      const bool inMainText = engine_.request().stories == word::kMainTextAlone;
      notes +=
          std::u16string(notes.empty() ? u"" : u"\r\n\r\n") +
          (inMainText ? u"The insertion point is in a header, a footer, a note or a text box.  The search "
                        u"starts at the top of the document."
                      : u"The insertion point is in no place where the run works.  The search starts at the "
                        u"first of them.");
    }
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
  bool begins = false;
  errors::guarded(engine_.context(), u"FF:20", [&] {
    engine_.context().runSummary = kSummaryHead;
    if (pages_.Options.chkConfirmEach.Value()) form_.WindowState(1);
    copyRequest();
    begins = true;
  });
  if (!begins) return finish();
  if (pages_.pgMultiFiles.txtFilePath.Text().empty()) {
    runOverDocument();
  } else {
    runOverFiles();
  }
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
    if (!went([this] { confirmation().SingleProcess([this] { finish(); }); })) finish();
    return;
  }
  engine_.labour().run([this] { engine_.GoGetEmFARBOT(); },
                       [this](const std::exception_ptr& thrown) {
                         went([] {}, thrown);
                         finish();
                       });
}

void Execution::runOverFiles() {
  engine_.MultiFileRun(true);
  takeFilesToProcess([this] {
    files_.chosen(filesToProcess_, [this](bool begins) {
      if (!begins) return finish();
      MultiRun();
    });
  });
}

void Execution::MultiRun() {
  if (engine_.ConfirmEachOperationsetting()) {
    if (!went([this] { confirmation().MultiProcess(filesToProcess_, [this] { finish(); }); })) finish();
    return;
  }
  engine_.labour().run([this] { engine_.MultiPLUVO(filesToProcess_); },
                       [this](const std::exception_ptr& thrown) {
                         const auto show = [this] {
                           forms::TextBox& display = pages_.pgFindAndReplace.txtOperationDisplay;
                           display.Text(engine_.context().runSummary);
                           display.BackColor(forms::kWhite);
                         };
                         went(show, thrown);
                         finish();
                       });
}

void Execution::takeFilesToProcess(const std::function<void()>& then) {
  const forms::ListBox& listed = pages_.pgMultiFiles.lbxPotentialFiles;
  if (listed.ListCount() == 0) {
    const auto showSearch = [this] {
      showNotice(u"Please wait while Locating files...");
      form_.Repaint();
    };
    if (!went(showSearch)) return finish();
    return files_.LocateFilesForRun([this, then](std::vector<std::u16string> files) {
      filesToProcess_ = std::move(files);
      const auto showEnd = [this] {
        pages_.pgMultiFiles.lblPleaseWait.Visible(false);
        form_.Repaint();
      };
      if (!went(showEnd)) return finish();
      then();
    });
  }
  filesToProcess_.clear();
  for (std::size_t row = 0; row < listed.ListCount(); ++row) filesToProcess_.push_back(listed.List(row));
  then();
}

}  // namespace pluvo::dialog
