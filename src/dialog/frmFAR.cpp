#include "dialog/frmFAR.h"

#include "about_page/links.h"
#include "dialog/frmDirectoryBrowser.h"
#include "errors/clsErrorLogging.h"
#include "files_page/file_choice.h"
#include "find_page/choices.h"
#include "find_page/execution.h"
#include "find_page/preview.h"
#include "find_page/text_boxes.h"
#include "options_page/options_file.h"
#include "pages.h"
#include "status_line.h"

#include <utility>

namespace pluvo::dialog {

namespace {

constexpr const char16_t* kStopPreface =
    u"Find Execution has stopped.\r\n"
    u"If this issue persists contact support@pluvo.example\r\n"
    u"with the below information:\r\n\r\n";
constexpr forms::Color kPaleYellow = 0xDFFFFF;

/// The program's way to have a folder chosen.
class ProgramPicker final : public FolderPicker {
 public:
  using Choose = std::function<std::u16string(const std::u16string& folder)>;

  /// It begins at the folder preferred, if there is one.
  ProgramPicker(Choose choose, std::u16string preferred)
      : choose_(std::move(choose)), folder_(std::move(preferred)) {}

  void SetStartingDirectory(const std::u16string& folder) override {
    if (folder_.empty()) folder_ = folder;
  }
  void choose() override { chosen_ = choose_(folder_); }
  bool selected() const override { return !chosen_.empty(); }
  std::u16string path() const override { return chosen_; }

 private:
  Choose choose_;
  std::u16string folder_;
  std::u16string chosen_;
};

}  // namespace

/// The behaviour of the pages.
struct frmFAR::Rules {
  explicit Rules(frmFAR& form, const std::u16string& dataFolder)
      : choices(form.pages_->pgFindAndReplace, form.context_, form.services_.boxes, form.services_.inputs),
        textBoxes(*form.pages_, form.context_, form.services_.boxes,
                  [&form]() -> word::Application& {
                    return form.services_.shown ? form.services_.shown() : form.engine_->application();
                  }),
        preview(*form.pages_, *form.engine_, choices),
        files(form, form.pages_->pgMultiFiles, *form.engine_, form.context_),
        execution(form, *form.pages_, *form.engine_, form.services_.clock, form.services_.yielding,
                  {[this](const auto& then) { files.LocateFilesForRun(then); }, form.services_.filesChosen}),
        options(form.pages_->Options, form.context_, dataFolder),
        links(*form.pages_, *form.engine_, form.services_.launcher,
              {form.services_.componentFolder, form.services_.showDocument}),
        status(form, *form.pages_, form.MultiPage1, *form.folders_, files, execution, options,
               [&form](const auto& told) {
                 const std::u16string ofRun = form.engine_->MultiFileRun() && form.stepper_
                                                  ? form.stepper_->toldOfRun()
                                                  : std::u16string();
                 if (!ofRun.empty()) return told(ofRun);
                 form.services_.notReached(told);
               }) {}

  Choices choices;
  TextBoxes textBoxes;
  Preview preview;
  FileChoice files;
  Execution execution;
  OptionsFile options;
  Links links;
  StatusLine status;
};

frmFAR::frmFAR(const DialogServices& services)
    : Form(services.forms, kName, u"Pluvorama"),
      services_(services),
      pages_(std::make_unique<Pages>()),
      reports_(services.boxes) {
  add(MultiPage1);
  for (forms::Page* page : std::initializer_list<forms::Page*>{
           &pages_->pgFindAndReplace, &pages_->pgMultiFiles, &pages_->Options, &pages_->pgAbout})
    MultiPage1.add(*page);
  Help(pages_->Options.lblInstructions);
  Activated.handledBy([this] { UserForm_Activate(); });
  MultiPage1.Change.handledBy([this] { MultiPage1_Change(); });
  UserForm_Initialize();
}

frmFAR::~frmFAR() { Hide(); }

void frmFAR::UserForm_Initialize() {
  constexpr std::u16string_view kTag = u"FF:41";
  errors::guarded(context_, kTag, [&] {
    createEngine();
    const std::u16string dataFolder = findDataFolder();
    for (errors::Context* context : {&context_, &workContext_}) {
      createReporter(*context, dataFolder);
      context->stopPreface = kStopPreface;
    }
    connectRules(dataFolder);
    pages_->Options.setProductTips();
    pages_->pgAbout.setNotice();
    rules_->options.load();
    context_.locationTag = kTag;
    pages_->pgFindAndReplace.fillLists();
    pages_->pgMultiFiles.fillLists();
    if (pages_->Options.chkToolTips.Value()) showTip();
    goToBeginning();
  });
}

void frmFAR::createEngine() {
  const bool isElsewhere = services_.labour != nullptr && services_.labour->isElsewhere();
  engine_ = std::make_unique<clsProcessFind>(
      clsProcessFind::Services{services_.application, isElsewhere ? workContext_ : context_, services_.boxes,
                               services_.forms, services_.labour});
  services_.engineMade(*engine_);
}

std::u16string frmFAR::findDataFolder() {
  word::Application& application = engine_->application();
  const auto options = application.Options();
  if (options == nullptr) throw errors::objectNotSet();
  return options->DefaultFilePath(word::wdUserTemplatesPath) + application.PathSeparator() + u"PLUVO" +
         application.PathSeparator();
}

void frmFAR::createReporter(errors::Context& context, const std::u16string& dataFolder) {
  auto reporter = std::make_shared<errors::clsErrorLogging>(context.currentFault, reports_);
  reporter->ErrorDetailLevel(3);
  reporter->ErrorTitleCaption(u"An error has occured in P.L.U.V.O.");
  reporter->SendErrors_ToScreen(true);
  reporter->SendErrors_ToTxtFile(dataFolder + u"errors.txt");
  context.reporter = std::move(reporter);
}

void frmFAR::connectRules(const std::u16string& dataFolder) {
  folders_ = services_.folders();
  connectRuns(dataFolder, engine_->application().PathSeparator());
  // The find page shows the busy notice too, which the handlers know on the files page.
  forms::Label& notice = pages_->pgMultiFiles.lblPleaseWait;
  forms::Label& mirror = pages_->pgFindAndReplace.lblPleaseWait2;
  notice.changed.handledBy([&notice, &mirror] {
    mirror.Caption(notice.Caption());
    mirror.Visible(notice.Visible());
  });
  rules_ = std::make_unique<Rules>(*this, dataFolder);
}

void frmFAR::connectRuns(const std::u16string& dataFolder, const std::u16string& separator) {
  if (!services_.stepper) return;
  stepper_ = services_.stepper({context_, services_.boxes, dataFolder, separator, services_.folders,
                                [this, separator] { return makePicker(separator); }});
  engine_->stepper(stepper_);
  stepper_->fileBegins = [this](const auto& path, std::size_t number, std::size_t count) {
    rules_->status.tellFile(path, number, count);
  };
}

std::unique_ptr<FolderPicker> frmFAR::makePicker(const std::u16string& separator) {
  if (!services_.chooseFolder)
    return std::make_unique<frmDirectoryBrowser>(services_.forms, *folders_, separator);
  const std::u16string& typed = pages_->pgMultiFiles.txtFilePath.Text();
  return std::make_unique<ProgramPicker>(services_.chooseFolder,
                                         folders_->isFolder(typed) ? typed : std::u16string());
}

void frmFAR::showTip() {
  forms::TextBox& display = pages_->pgFindAndReplace.txtOperationDisplay;
  display.BackColor(kPaleYellow);
  display.Text(u"Usage Tips:\r\n\r\n" + usageTip(services_.random));
}

void frmFAR::documentsChanged() {
  if (rules_) rules_->status.documentsChanged();
}

void frmFAR::wordCloses() {
  if (engine_) engine_->CancelOperation(true);
  for (errors::Context* context : {&context_, &workContext_}) {
    if (context->reporter) context->reporter->SendErrors_ToTxtFile({});
  }
}

void frmFAR::listFiles(const std::vector<std::u16string>& files) {
  if (rules_) rules_->files.show(files);
}

void frmFAR::goToBeginning() { SetFocus(pages_->pgFindAndReplace.txtBeginText); }

void frmFAR::UserForm_Activate() { Repaint(); }

void frmFAR::MultiPage1_Change() {
  errors::guarded(context_, u"FF:29", [&] { Repaint(); });
}

}  // namespace pluvo::dialog
