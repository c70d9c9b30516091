#include "beside_runs.h"

#include "base/names.h"
#include "question.h"

#include <algorithm>
#include <utility>

namespace pluvo::desktop {

BesideRuns::BesideRuns(Place place) : place_(std::move(place)), notReached_(place_.work) {
  place_.watch.comesOn = [this] { place_.documents.progress(); };
  place_.watch.goesOnAfterRefusal = [this] { return goesOnAfterRefusal(); };
  place_.watch.takeBack = [this] {
    OpenDocument* document = place_.documents.find(*place_.application->active());
    if (document == nullptr) return;
    document->refresh();
    if (document->passChanged()) document->undoNow();
  };
}

FolderRun::Place BesideRuns::placeOfRuns() {
  return {.application = place_.application,
          .work = place_.work,
          .watch = place_.watch,
          .passwords = place_.files.passwords(),
          .freeName = [this](const std::string& path) { return place_.files.freeName(path); },
          .goesOnWithoutOriginals = [this](const std::string& why) { return goesOnWithoutOriginals(why); },
          .told =
              [this](const runs::Outcome& outcome) {
                notReached_.add(base::nameText(outcome.path.substr(outcome.path.rfind('/') + 1)),
                                outcome.elsewhere);
              },
          .saved = [this](const std::string& path) { saved(path); },
          .leftOpen = [this](const std::string& path) { leftOpen(path); },
          .ended = [this](const RunOverFiles& run) { place_.ended(run); }};
}

bool BesideRuns::goesOnAfterRefusal() {
  Question box(&place_.window, QObject::tr("Go on with the other blocks?"),
               QObject::tr("They may be refused for the same reason, and each refusal is told."));
  box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
  box.setDefaultButton(QMessageBox::No);
  return box.exec() == QMessageBox::Yes;
}

bool BesideRuns::goesOnWithoutOriginals(const std::string& why) {
  Question box(&place_.window, QObject::tr("The run cannot be taken back. Run all the same?"),
               QString::fromStdString(why));
  QAbstractButton* const run =
      box.addButton(QObject::tr("&Run without an Undo"), QMessageBox::DestructiveRole);
  box.setDefaultButton(box.addButton(QMessageBox::Cancel));
  box.exec();
  return box.clickedButton() == run;
}

/// Passes from before the run are taken back no more: that would look like an undo of the run.
void BesideRuns::saved(const std::string& path) {
  filesChanged_ = true;
  for (const auto& open : place_.documents.all()) open->forgetPasses();
  fileChanged(path);
}

void BesideRuns::fileChanged(const std::string& path) {
  for (std::size_t i = 0; i < place_.documents.all().size(); ++i) {
    OpenDocument& open = *place_.documents.all()[i];
    if (place_.documents.runWorks(*open.document()) || open.view() == nullptr || !open.file().isAt(path))
      continue;
    // Unsaved changes stay; saving them will say that the file has changed.
    if (!open.changed()) place_.documents.reload(open);
    return;
  }
}

/// The document is the user's from now on. Its file is the user's earlier version.
void BesideRuns::leftOpen(const std::string& path) {
  const auto left = place_.application->active();
  for (std::size_t i = 0; i < place_.documents.all().size(); ++i) {
    OpenDocument& open = *place_.documents.all()[i];
    if (open.document() == left || open.changed() || !open.file().isAt(path)) continue;
    place_.application->close(open.document());
    break;
  }
}

void BesideRuns::passBegins() {
  const auto document = place_.application->active();
  if (OpenDocument* const open = place_.documents.find(*document)) open->passBegins();
  if (!place_.watch.runsOverFiles()) notReached_.passBegins(document, place_.watch.request());
}

void BesideRuns::notReached(const std::function<void(const std::u16string& sentence)>& told) {
  const auto last = notReached_.awaited();
  const OpenDocument* const open = last != nullptr ? place_.documents.find(*last) : nullptr;
  const auto tell = [this, told] { told(notReached_.takeWords()); };
  if (open == nullptr) return tell();
  notReached_.look(*open, tell);
}

void BesideRuns::filesChosen(std::vector<std::u16string>& files, const DocumentFiles::Then& then) {
  std::vector<OpenDocument*> unsaved;
  std::vector<bool> isUnsaved(files.size(), false);
  for (const auto& document : place_.documents.all()) {
    document->refresh();
    if (!document->changed()) continue;
    for (std::size_t i = 0; i < files.size(); ++i) {
      if (!document->file().isAt(base::nameBytes(files[i]))) continue;
      isUnsaved[i] = true;
      if (unsaved.empty() || unsaved.back() != document.get()) unsaved.push_back(document.get());
    }
  }
  if (unsaved.empty()) return then(true);
  std::vector<std::shared_ptr<memory::MemoryDocument>> documents;
  switch (askAboutUnsaved(unsaved)) {
    case AboutUnsaved::save:
      for (const OpenDocument* document : unsaved) documents.insert(documents.begin(), document->document());
      return saveAll(std::move(documents), then);
    case AboutUnsaved::leaveOut: {
      std::size_t at = 0;
      std::erase_if(files, [&](const std::u16string&) { return isUnsaved[at++]; });
      return then(true);
    }
    case AboutUnsaved::stop:
      place_.note(QObject::tr("The run was not begun."));
      then(false);
  }
}

/// Whether all were saved where they were; one that was saved elsewhere is not what the file holds.
void BesideRuns::saveAll(std::vector<std::shared_ptr<memory::MemoryDocument>> unsaved,
                         const DocumentFiles::Then& then) {
  if (unsaved.empty()) return then(true);
  const auto document = unsaved.back();
  unsaved.pop_back();
  place_.files.save(*place_.documents.find(*document),
                    [this, document, path = document->path(), rest = std::move(unsaved), then](bool saved) {
                      if (!saved || document->path() != path) return then(false);
                      saveAll(rest, then);
                    });
}

BesideRuns::AboutUnsaved BesideRuns::askAboutUnsaved(const std::vector<OpenDocument*>& unsaved) {
  constexpr std::size_t kMostNamed = 10;
  QStringList names;
  for (const OpenDocument* document : unsaved) {
    if (names.size() == kMostNamed) {
      names += QObject::tr("… and %1 more").arg(unsaved.size() - kMostNamed);
      break;
    }
    names += document->path();
  }
  Question box(&place_.window,
               unsaved.size() == 1
                   ? QObject::tr("A document of this run is open with changes that are not saved.")
                   : QObject::tr("Documents of this run are open with changes that are not saved."),
               names.join(u'\n'));
  QAbstractButton* const save = box.addButton(QObject::tr("&Save and Run"), QMessageBox::AcceptRole);
  QAbstractButton* const leave = box.addButton(QObject::tr("&Leave Out"), QMessageBox::DestructiveRole);
  box.setDefaultButton(box.addButton(QMessageBox::Cancel));
  box.exec();
  if (box.clickedButton() == save) return AboutUnsaved::save;
  return box.clickedButton() == leave ? AboutUnsaved::leaveOut : AboutUnsaved::stop;
}

}  // namespace pluvo::desktop
