#include "beside_runs.h"

#include "base/names.h"
#include "question.h"

#include <algorithm>
#include <utility>

namespace pluvo::desktop {

BesideRuns::BesideRuns(Place place) : place_(std::move(place)), notReached_(place_.working) {
  place_.watch.goesOnAfterRefusal = [this] { return goesOnAfterRefusal(); };
  place_.watch.takeBack = [this] {
    OpenDocument* document = place_.documents.find(*place_.application->active());
    if (document != nullptr && document->passChanged()) document->undo();
  };
}

FolderRun::Place BesideRuns::placeOfRuns() {
  return {.application = place_.application,
          .working = place_.working,
          .watch = place_.watch,
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
    // What is not saved stays; saving it will say that the file has changed.
    if (!open.changed()) place_.documents.reload(open);
    return;
  }
}

/// The document is the user's from now on. What the user had of it is its file.
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

std::u16string BesideRuns::notReached() {
  const auto last = notReached_.awaited();
  const OpenDocument* const open = last != nullptr ? place_.documents.find(*last) : nullptr;
  if (open != nullptr) notReached_.look(*open);
  return notReached_.takeWords();
}

bool BesideRuns::filesChosen(std::vector<std::u16string>& files) {
  std::vector<OpenDocument*> unsaved;
  std::vector<bool> isUnsaved(files.size(), false);
  for (const auto& document : place_.documents.all()) {
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
        return place_.files.save(*document) && document->document()->path() == path;
      });
    case AboutUnsaved::leaveOut: {
      std::size_t at = 0;
      std::erase_if(files, [&](const std::u16string&) { return isUnsaved[at++]; });
      return true;
    }
    case AboutUnsaved::stop:
      break;
  }
  place_.note(QObject::tr("The run was not begun."));
  return false;
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
