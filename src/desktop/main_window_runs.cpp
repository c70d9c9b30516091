#include "base/names.h"
#include "main_window.h"
#include "question.h"

#include <QStatusBar>
#include <algorithm>
#include <utility>

/// Runs over files, and the documents that the user has open meanwhile.
namespace pluvo::desktop {

FolderRun::Place MainWindow::placeOfRuns() {
  return {.application = application_,
          .working = working_,
          .watch = watch_,
          .freeName = [this](const std::string& path) { return freeName(path); },
          .goesOnWithoutOriginals = [this](const std::string& why) { return goesOnWithoutOriginals(why); },
          .told =
              [this](const runs::Outcome& outcome) {
                notReached_.add(base::nameText(outcome.path.substr(outcome.path.rfind('/') + 1)),
                                outcome.elsewhere);
              },
          .saved = [this](const std::string& path) { savedByRun(path); },
          .leftOpen = [this](const std::string& path) { leftOpenByRun(path); },
          .ended = [this](const RunOverFiles& run) { runEnded(run); }};
}

bool MainWindow::goesOnWithoutOriginals(const std::string& why) {
  Question box(this, tr("The run cannot be taken back. Run all the same?"), QString::fromStdString(why));
  QAbstractButton* const run = box.addButton(tr("&Run without an Undo"), QMessageBox::DestructiveRole);
  box.setDefaultButton(box.addButton(QMessageBox::Cancel));
  box.exec();
  return box.clickedButton() == run;
}

/// Passes from before the run are taken back no more: that would look like an undo of the run.
void MainWindow::savedByRun(const std::string& path) {
  filesChanged_ = true;
  for (const auto& open : documents_) open->forgetPasses();
  fileChanged(path);
}

void MainWindow::fileChanged(const std::string& path) {
  for (std::size_t i = 0; i < documents_.size(); ++i) {
    OpenDocument& open = *documents_[i];
    if (dialog_->runWorks(*open.document()) || open.view() == nullptr || !open.file().isAt(path)) continue;
    // What is not saved stays; saving it will say that the file has changed.
    if (!open.changed()) reload(open);
    return;
  }
}

/// The document is the user's from now on. What the user had of it is its file.
void MainWindow::leftOpenByRun(const std::string& path) {
  const auto left = application_->active();
  for (std::size_t i = 0; i < documents_.size(); ++i) {
    OpenDocument& open = *documents_[i];
    if (open.document() == left || open.changed() || !open.file().isAt(path)) continue;
    application_->close(open.document());
    break;
  }
}

void MainWindow::runEnded(const RunOverFiles& run) { runs_->runEnded(run, closing_ || closeWanted_); }

void MainWindow::passBegins() {
  const auto document = application_->active();
  if (OpenDocument* const open = find(*document)) open->passBegins();
  if (!watch_.runsOverFiles()) notReached_.passBegins(document, watch_.request());
}

/// A run over one document has ended, or one over files.
std::u16string MainWindow::notReached() {
  const auto last = notReached_.awaited();
  const OpenDocument* const open = last != nullptr ? find(*last) : nullptr;
  if (open != nullptr) notReached_.look(*open);
  return notReached_.takeWords();
}

/// What is half done in a document is neither saved by a run nor lost: the user decides before it begins.
/// Whether it begins.
bool MainWindow::filesChosen(std::vector<std::u16string>& files) {
  if (closeWanted_) return false;  // the window was closed in the pause before the run
  std::vector<OpenDocument*> unsaved;
  std::vector<bool> isUnsaved(files.size(), false);
  for (const auto& document : documents_) {
    if (!document->changed()) continue;
    for (std::size_t i = 0; i < files.size(); ++i) {
      if (!document->file().isAt(base::nameBytes(files[i]))) continue;
      isUnsaved[i] = true;
      if (unsaved.empty() || unsaved.back() != document.get()) unsaved.push_back(document.get());
    }
  }
  if (unsaved.empty()) return true;
  switch (askAboutUnsaved(unsaved)) {
    case AboutUnsaved::save:
      // One that was saved elsewhere is not what the file holds.
      return std::all_of(unsaved.begin(), unsaved.end(), [this](OpenDocument* document) {
        const std::string path = document->document()->path();
        return save(*document) && document->document()->path() == path;
      });
    case AboutUnsaved::leaveOut: {
      std::size_t at = 0;
      std::erase_if(files, [&](const std::u16string&) { return isUnsaved[at++]; });
      return true;
    }
    case AboutUnsaved::stop:
      break;
  }
  statusBar()->showMessage(tr("The run was not begun."), kMessageTime);
  return false;
}

MainWindow::AboutUnsaved MainWindow::askAboutUnsaved(const std::vector<OpenDocument*>& unsaved) {
  constexpr std::size_t kMostNamed = 10;
  QStringList names;
  for (const OpenDocument* document : unsaved) {
    if (names.size() == kMostNamed) {
      names += tr("… and %1 more").arg(unsaved.size() - kMostNamed);
      break;
    }
    names += document->path();
  }
  Question box(this,
               unsaved.size() == 1 ? tr("A document of this run is open with changes that are not saved.")
                                   : tr("Documents of this run are open with changes that are not saved."),
               names.join(u'\n'));
  QAbstractButton* const save = box.addButton(tr("&Save and Run"), QMessageBox::AcceptRole);
  QAbstractButton* const leave = box.addButton(tr("&Leave Out"), QMessageBox::DestructiveRole);
  box.setDefaultButton(box.addButton(QMessageBox::Cancel));
  box.exec();
  if (box.clickedButton() == save) return AboutUnsaved::save;
  return box.clickedButton() == leave ? AboutUnsaved::leaveOut : AboutUnsaved::stop;
}

void MainWindow::undo() {
  if (refusedNow()) return;
  if (current() == nullptr || !current()->canUndo()) {
    if (filesChanged_)
      statusBar()->showMessage(tr("Nothing was taken back. What the run over files changed is taken back by "
                                  "Runs > Undo Last Run."),
                               kMessageTime);
    return;
  }
  current()->undo();
  updateTitles();
  statusBar()->showMessage(tr("The last pass was taken back."), kMessageTime);
}

void MainWindow::redo() {
  if (current() == nullptr || refusedNow() || !current()->canRedo()) return;
  current()->redo();
  updateTitles();
  statusBar()->showMessage(tr("The pass was made again."), kMessageTime);
}

}  // namespace pluvo::desktop
