#include "dialog.h"

#include "base/names.h"
#include "cancelled_folders.h"
#include "dialog/frmProcessing.h"
#include "errors/context.h"
#include "forms/unreported.h"
#include "multifile/file_driver.h"

#include <QFileDialog>
#include <QGuiApplication>
#include <QMessageBox>
#include <QScreen>
#include <algorithm>
#include <utility>

namespace pluvo::desktop {

namespace {

constexpr std::u16string_view kDialog = dialog::frmFAR::kName;
constexpr std::u16string_view kConfirmation = dialog::frmProcessing::kName;

std::u16string nameIn(const std::string& path) { return base::nameText(path.substr(path.rfind('/') + 1)); }

}  // namespace

Dialog::Dialog(const std::shared_ptr<memory::MemoryApplication>& application, Work& work, PassWatch& watch,
               const Places& places, DialogPlace place)
    : work_(work),
      place_(std::move(place)),
      qtBoxes_({.owner = [this] { return &place_.window; }, .placing = {}}),
      boxes_(work, qtBoxes_),
      inputs_({.owner = [this] { return &place_.window; }, .placing = {}}),
      qtForms_(qtBoxes_),
      forms_(qtForms_),
      opener_(dialog::DialogServices{
          .application = [application] { return application; },
          .forms = forms_,
          .boxes = boxes_,
          .inputs = inputs_,
          .clock = *clock_,
          .yielding = yielding_,
          .launcher = launcher_,
          .random = *random_,
          .componentFolder = places.component,
          .folders = [&work] { return std::make_unique<CancelledFolders>(work); },
          .chooseFolder = place_.chooseFolder,
          .engineMade =
              [this, &watch](dialog::clsProcessFind& engine) {
                engine.LiftLimitsSetting(true);
                engine.StoriesSetting(stories_);
                engine.observer(&watch);
                watch.engine(&engine);
                engine_ = &engine;
              },
          .stepper =
              [this](const dialog::RunPlace& runs) {
                auto driver = std::make_shared<multifile::FileDriver>(runs.folders(), runs.makePicker);
                run_ = std::make_shared<FolderRun>(std::move(driver), place_.run);
                return run_;
              },
          .filesChosen = place_.filesChosen,
          .notReached = place_.notReached,
          .shown = [this]() -> word::Application& { return place_.shown(); },
          .labour = &work,
          .showDocument = place_.showDocument,
      }) {
  application->defaultFilePath(word::wdDocumentsPath, places.documents);
  application->defaultFilePath(word::wdUserTemplatesPath, places.templates);
  qtForms_.owner(&place_.window);
  qtForms_.standsIn(std::u16string(kDialog), place_.container);
  qtForms_.leavesOthersUsable(std::u16string(kConfirmation));
  qtForms_.admits = [this](const forms::Form& form, const forms::Control* control) {
    return admits(form, control);
  };
  qtForms_.placing = [this](const forms::Form& form, QWidget& window) { placeWindow(form, window); };
  // The dialog stands beside the document and covers nothing.
  qtForms_.windowStateChanged = [](const forms::Form&) {};
  forms_.isWorking = [this] { return work_.underWay(); };
  forms_.blockAwaits = [this] { place_.blockAwaits(); };
  forms_.confirmingChanged = [this] { place_.confirmingChanged(); };
  work_.guarded = [this](const auto& doing) { forms::userDid(qtBoxes_, doing); };
  work_.cancelled = [this] {
    if (engine_ != nullptr) engine_->CancelOperation(true);
    if (run_) run_->cancel();
  };
}

Dialog::~Dialog() {
  close();
  work_.cancelled = [] {};
  work_.guarded = [](const auto& doing) { doing(); };
}

void Dialog::open() {
  std::u16string trouble;
  try {
    return opener_.OpenPLUVO();
  } catch (...) {
    trouble = errors::faultInFlight().description;
  }
  boxes_.show(u"The dialog could not be started: " + trouble, forms::Buttons::ok, std::nullopt);
}

void Dialog::close() { forms_.end(); }

void Dialog::worksIn(word::StoryKinds stories) {
  stories_ = stories;
  if (engine_ != nullptr) engine_->StoriesSetting(stories);
}

std::optional<base::SecretText> Dialog::passwordFor(store::PasswordFor what, const std::string& path) {
  dialog::frmPassword prompt(context_, forms_);
  std::u16string password;
  const auto ask =
      what == store::PasswordFor::opening ? multifile::passwordToOpen : multifile::passwordToModify;
  if (!ask(prompt, nameIn(path), password)) return std::nullopt;
  return base::SecretText(std::move(password));
}

bool Dialog::opensToRead(const std::string& path) { return multifile::openToRead(boxes_, nameIn(path)); }

void Dialog::listFiles(const std::vector<std::u16string>& files) { opener_.listFiles(files); }

/// While something is under way the dialog can be typed into, and presses nothing.
bool Dialog::admits(const forms::Form& form, const forms::Control* control) {
  const bool closes = control == nullptr;
  if (form.Name() == kConfirmation) {
    if (closes) work_.cancel();
    return !work_.underWay();
  }
  if (form.Name() != kDialog) return true;
  if (closes) place_.left();
  return !closes && !work_.underWay() && !confirming();
}

void Dialog::workChanged() {
  qtForms_.admissionChanged();
  forms_.endFinishedConfirmation();
}

/// The confirmation stands near its block and not over it; other windows stand where they would.
void Dialog::placeWindow(const forms::Form& form, QWidget& window) const {
  constexpr int kGap = 14;
  const QRect around = place_.window.geometry();
  const QSize size = window.frameGeometry().size().expandedTo(window.sizeHint());
  if (form.Name() != kConfirmation) {
    if (!window.isVisible()) window.move(around.center() - QPoint(size.width() / 2, size.height() / 2));
    return;
  }
  const QRect block = place_.blockRect();
  const bool stands = window.isVisible() && !window.frameGeometry().intersects(block);
  if (stands || block.isEmpty()) return;
  const QRect screen = place_.window.screen()->availableGeometry();
  const int x = std::clamp(block.center().x() - size.width() / 2, around.left() + kGap,
                           std::max(around.right() - size.width() - kGap, around.left() + kGap));
  int y = block.bottom() + 3 * kGap;
  if (y + size.height() > std::min(around.bottom(), screen.bottom()))
    y = block.top() - size.height() - 4 * kGap;
  window.move(x, std::max(y, screen.top()));
}

}  // namespace pluvo::desktop
