#include "host/frmFAR.h"

#include "design.h"
#include "errors/clsErrorLogging.h"
#include "findpanel/choices.h"
#include "findpanel/execution.h"
#include "findpanel/preview.h"
#include "findpanel/text_boxes.h"
#include "links.h"
#include "lists.h"
#include "multifile/file_driver.h"
#include "multifile/files_page.h"
#include "multifile/frmDirectoryBrowser.h"
#include "options/options_file.h"
#include "status_line.h"

#include <utility>

namespace pluvo::host {

namespace {

constexpr const char16_t* kStopPreface =
    u"Find Execution has stopped.\r\n"
    u"If this issue persists contact support@pluvo.example\r\n"
    u"with the below information:\r\n\r\n";
constexpr forms::Color kPaleYellow = 0xDFFFFF;

/// The program's way to have a folder chosen.
class ProgramPicker final : public multifile::FolderPicker {
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

/// What the pages do, each part in its own room.
struct frmFAR::Pages {
  /// What of a run is told in the status line.
  Pages(frmFAR& form, const std::u16string& dataFolder, std::function<std::u16string()> told)
      : choices(form, form.context_, form.surroundings_.boxes, form.surroundings_.inputs),
        textBoxes(form, form.context_, form.surroundings_.boxes,
                  [&form]() -> word::Application& { return form.engine_->application(); }),
        preview(form, *form.engine_, choices),
        files(form, *form.engine_),
        execution(form, *form.engine_, form.surroundings_.clock, form.surroundings_.yielding,
                  {[this] { return files.LocateFilesForRun(); }, form.surroundings_.filesChosen}),
        options(form, form.context_, dataFolder),
        links(form, *form.engine_, form.surroundings_.launcher,
              {form.surroundings_.componentFolder, form.surroundings_.showDocument}),
        status(form, *form.folders_, execution, options, std::move(told)) {}

  findpanel::Choices choices;
  findpanel::TextBoxes textBoxes;
  findpanel::Preview preview;
  multifile::FilesPage files;
  findpanel::Execution execution;
  options::OptionsFile options;
  Links links;
  StatusLine status;
};

frmFAR::frmFAR(const Surroundings& surroundings)
    : Form(surroundings.forms, u"frmFAR", u"Pluvorama"),
      surroundings_(surroundings),
      reports_(surroundings.boxes) {
  build();
  Activated.handledBy([this] { UserForm_Activate(); });
  MultiPage1.Change.handledBy([this] { MultiPage1_Change(); });
  UserForm_Initialize();
}

frmFAR::~frmFAR() { Hide(); }

void frmFAR::build() {
  add(MultiPage1);
  for (const DesignedPage& designed : designedPages()) {
    forms::Page& page = MultiPage1.add(designed.name, designed.caption, designed.tip);
    for (const DesignedControl& control : designed.controls) {
      controls_.push_back(make(control));
      page.add(*controls_.back());
    }
    int index = 0;
    for (const char16_t* name : designed.tabOrder) get<forms::Control>(name).TabIndex(++index);
  }
}

void frmFAR::UserForm_Initialize() {
  constexpr std::u16string_view kTag = u"FF:41";
  errors::guarded(context_, kTag, [&] {
    createEngine();
    const std::u16string dataFolder = findDataFolder();
    createReporter(dataFolder);
    context_.stopPreface = kStopPreface;
    connectPages(dataFolder);
    setProductTips(*this);
    setNotice(*this);
    pages_->options.load();
    context_.locationTag = kTag;
    fillLists(*this);
    if (get<forms::CheckBox>(u"chkToolTips").Value()) showTip();
    SetFocus(get<forms::TextBox>(u"txtBeginText"));
  });
}

void frmFAR::createEngine() {
  engine_ = std::make_unique<dialog::clsProcessFind>(
      dialog::Surroundings{surroundings_.application, context_, surroundings_.boxes, surroundings_.forms});
  surroundings_.engineMade(*engine_);
}

std::u16string frmFAR::findDataFolder() {
  word::Application& application = engine_->application();
  const auto options = application.Options();
  if (options == nullptr) throw errors::objectNotSet();
  return options->DefaultFilePath(word::wdUserTemplatesPath) + application.PathSeparator() + u"PLUVO" +
         application.PathSeparator();
}

void frmFAR::createReporter(const std::u16string& dataFolder) {
  auto reporter = std::make_shared<errors::clsErrorLogging>(context_.currentFault, reports_);
  reporter->ErrorDetailLevel(3);
  reporter->ErrorTitleCaption(u"An error has occured in P.L.U.V.O.");
  reporter->SendErrors_ToScreen(true);
  reporter->SendErrors_ToTxtFile(dataFolder + u"errors.txt");
  context_.reporter = std::move(reporter);
}

void frmFAR::connectPages(const std::u16string& dataFolder) {
  const std::u16string separator = engine_->application().PathSeparator();
  folders_ = surroundings_.folders();
  const auto driver = std::make_shared<multifile::FileDriver>(
      surroundings_.folders(), [this, separator] { return makePicker(separator); });
  if (surroundings_.keepsOriginals)
    driver->keepOriginals(
        std::make_unique<multifile::Originals>(context_, surroundings_.boxes, dataFolder, separator));
  const auto stepper = surroundings_.runsOverFiles(driver);
  engine_->stepper(stepper);
  mirrorNotice(*this);
  pages_ = std::make_unique<Pages>(*this, dataFolder, [this, driver] {
    const std::u16string originals = engine_->MultiFileRun() ? driver->toldOfOriginals() : std::u16string();
    return originals.empty() ? surroundings_.notReached() : originals;
  });
  stepper->fileBegins = [this](const auto& path, std::size_t number, std::size_t count) {
    pages_->status.tellFile(path, number, count);
  };
}

std::unique_ptr<multifile::FolderPicker> frmFAR::makePicker(const std::u16string& separator) {
  if (!surroundings_.chooseFolder)
    return std::make_unique<multifile::frmDirectoryBrowser>(surroundings_.forms, *folders_, separator);
  const std::u16string& typed = get<forms::TextBox>(u"txtFilePath").Text();
  return std::make_unique<ProgramPicker>(surroundings_.chooseFolder,
                                         folders_->isFolder(typed) ? typed : std::u16string());
}

void frmFAR::showTip() {
  auto& display = get<forms::TextBox>(u"txtOperationDisplay");
  display.BackColor(kPaleYellow);
  display.Text(u"Usage Tips:\r\n\r\n" + usageTip(surroundings_.random));
}

void frmFAR::documentsChanged() {
  if (pages_) pages_->status.documentsChanged();
}

void frmFAR::listFiles(const std::vector<std::u16string>& files) {
  if (pages_) pages_->files.show(files);
}

void frmFAR::UserForm_Activate() { Repaint(); }

void frmFAR::MultiPage1_Change() {
  errors::guarded(context_, u"FF:29", [&] { Repaint(); });
}

}  // namespace pluvo::host
