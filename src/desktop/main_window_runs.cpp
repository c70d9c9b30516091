#include "base/names.h"
#include "main_window.h"
#include "question.h"

#include <QStatusBar>
#include <algorithm>
#include <utility>

/// Runs over files, and the documents that the user has open meanwhile.
namespace pluvo::desktop {

void MainWindow::passBegins() {
  const auto document = application_->active();
  if (OpenDocument* const open = find(*document)) open->passBegins();
  notReached_.passBegins(document, watch_.request());
}

/// A run over files closes a document: it is looked through before it is saved.
void MainWindow::leaving(const memory::MemoryDocument& document) {
  const OpenDocument* const open = find(document);
  if (open != nullptr && notReached_.awaits(document)) notReached_.look(*open);
}

/// The run has ended; its last document is open where it was the only one, or was given up half-way.
std::u16string MainWindow::notReached() {
  const auto last = notReached_.awaited();
  const OpenDocument* const open = last != nullptr ? find(*last) : nullptr;
  if (open != nullptr) notReached_.look(*open);
  return notReached_.takeWords();
}

/// What is half done in a document is neither saved by a run nor lost: the user decides before it begins.
/// Whether it begins.
bool MainWindow::filesChosen(std::vector<std::u16string>& files) {
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

/// A run over files is done with the document. What it wrote to disk is not taken back here, nor is anything
/// from before it: that would look like it.
void MainWindow::leftByRun(const OpenDocument& document) {
  if (!watch_.runsOverFiles() || !document.passChanged() || document.changed()) return;
  filesChanged_ = true;
  for (const auto& open : documents_) open->forgetPasses();
}

void MainWindow::undo() {
  if (refusedNow()) return;
  if (current() == nullptr || !current()->canUndo()) {
    if (filesChanged_)
      statusBar()->showMessage(
          tr("Nothing was taken back: what the run over files changed on disk stays changed."), kMessageTime);
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
