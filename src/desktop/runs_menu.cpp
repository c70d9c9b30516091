#include "runs_menu.h"

#include "base/names.h"
#include "base/shown.h"
#include "errors/context.h"
#include "question.h"

#include <QDateTime>
#include <QFile>
#include <QLocale>
#include <QMessageBox>
#include <QTimeZone>
#include <algorithm>
#include <unordered_set>
#include <utility>

namespace pluvo::desktop {

namespace {

QString text(const std::string& bytes) { return QString::fromStdString(base::shown(bytes)); }

QString counted(std::size_t count) {
  return QString::fromStdString(base::counted(static_cast<std::int64_t>(count), "document"));
}

/// In the user's own time; a run is named after that of the world.
QString timeOf(const runs::PastRun& run) {
  QDateTime began = QDateTime::fromString(QString::fromStdString(run.name.substr(0, 15)),
                                          QStringLiteral("yyyyMMdd-HHmmss"));
  began.setTimeZone(QTimeZone::utc());
  return QLocale().toString(began.toLocalTime(), QLocale::ShortFormat);
}

/// The first of them, and how many more there are.
QString listed(const QStringList& lines) {
  constexpr qsizetype kMost = 10;
  if (lines.size() <= kMost) return lines.join(u'\n');
  return lines.mid(0, kMost).join(u'\n') + QObject::tr("\n… and %1 more").arg(lines.size() - kMost);
}

files::FileSystem& machine() { return files::machineFileSystem(); }

}  // namespace

RunsMenu::RunsMenu(QMenu& menu, Place place) : place_(std::move(place)) {
  const auto entry = [&](const QString& name, void (RunsMenu::*chosen)()) {
    QAction* const action = menu.addAction(name);
    connect(action, &QAction::triggered, this, chosen);
    return action;
  };
  undo_ = entry(tr("&Undo Last Run …"), &RunsMenu::undoLast);
  report_ = entry(tr("&Report of Last Run"), &RunsMenu::showReport);
  unfinished_ = entry(tr("Un&finished Documents …"), &RunsMenu::showUnfinished);
  connect(&menu, &QMenu::aboutToShow, this, [this] { look(); });
  look();
}

/// Other programs of the user make runs, too.
void RunsMenu::look() {
  canUndo_ = false;
  try {
    canUndo_ = runs::PastRuns(machine()).last() != nullptr;
  } catch (const std::exception&) {
    // Nothing is kept where it could be read.
  }
  hasReport_ = runs::lastReport(machine()).has_value();
  hasUnfinished_ = runs::hasUnfinished(machine());
  show();
}

void RunsMenu::show() {
  undo_->setEnabled(canUndo_ && !held_);
  report_->setEnabled(hasReport_);
  unfinished_->setEnabled(hasUnfinished_ && !held_);
}

void RunsMenu::update(bool held) {
  held_ = held;
  show();
}

void RunsMenu::tell(const QString& what, const QString& more) { Question(&place_.window, what, more).exec(); }

// Undo.

void RunsMenu::undoLast() {
  if (place_.refusedNow()) return;
  try {
    const auto past = std::make_shared<runs::PastRuns>(machine());
    const runs::PastRun* const last = past->last();
    if (last == nullptr) {
      tell(tr("There is no run to take back."), {});
    } else if (last->refused) {
      tell(tr("The last run cannot be taken back."),
           tr("Other users may write its originals, so PLUVO does not rely on them."));
    } else if (confirmsUndo(*last)) {
      takeBack(past, last->name);
    }
  } catch (...) {
    tell(tr("The last run cannot be taken back."),
         QString::fromStdU16String(errors::faultInFlight().description));
  }
  look();
}

bool RunsMenu::confirmsUndo(const runs::PastRun& run) {
  QString more = timeOf(run) + u'\n' + text(run.command);
  if (run.notKept > 0)
    more += tr("\n\n%1 more were changed, whose originals found no room; they stay as they are.")
                .arg(counted(run.notKept));
  Question box(&place_.window, tr("Take the last run back? It changed %1.").arg(counted(run.documents)),
               more);
  QAbstractButton* const undo = box.addButton(tr("&Undo Run"), QMessageBox::AcceptRole);
  box.setDefaultButton(box.addButton(QMessageBox::Cancel));
  box.exec();
  return box.clickedButton() == undo;
}

void RunsMenu::takeBack(const std::shared_ptr<runs::PastRuns>& past, const std::string& run) {
  struct Counts {
    std::size_t restored = 0;
    std::size_t asBefore = 0;
    QStringList left;
  };
  const auto counts = std::make_shared<Counts>();
  takesBack_ = true;
  const auto work = [this, past, run, counts] {
    past->takeBack(run, [&](const runs::TakenBack& taken) {
      place_.work.inWindow([&] {
        if (taken.failure) {
          counts->left += text(runs::failureLine(taken.path, *taken.failure));
        } else if (taken.asBefore) {
          ++counts->asBefore;
        } else {
          ++counts->restored;
          place_.changed(taken.path);
        }
      });
    });
  };
  place_.work.run(work, [this, counts](const std::exception_ptr& thrown) {
    takesBack_ = false;
    try {
      if (thrown) std::rethrow_exception(thrown);
      tellTakenBack(counts->restored, counts->asBefore, counts->left);
    } catch (...) {
      tell(tr("The last run cannot be taken back."),
           QString::fromStdU16String(errors::faultInFlight().description));
    }
    look();
  });
}

void RunsMenu::tellTakenBack(std::size_t restored, std::size_t asBefore, const QStringList& left) {
  QString line = tr("%1 put back").arg(counted(restored));
  if (asBefore > 0) line += tr(", %1 already as before").arg(asBefore);
  if (left.isEmpty()) return place_.note(line + u'.');
  tell(line + tr(", %1 left as they are.").arg(left.size()), listed(left));
}

// The report.

void RunsMenu::showReport() {
  try {
    if (const auto path = runs::lastReport(machine()))
      return place_.openFile(QFile::decodeName(QByteArray::fromStdString(*path)));
    tell(tr("There is no report."), tr("It is written by a run over files."));
  } catch (...) {
    tell(tr("The report could not be opened."),
         QString::fromStdU16String(errors::faultInFlight().description));
  }
  look();
}

// Unfinished documents.

void RunsMenu::showUnfinished() {
  if (place_.refusedNow()) return;
  try {
    const auto list = runs::lastUnfinished(machine());
    if (!list) return look();
    QStringList names;
    for (const std::string& path : list->documents) names += text(path);
    Question box(&place_.window,
                 tr("A run was ended before it came to %1.").arg(counted(list->documents.size())),
                 listed(names) + tr("\n\nTo go on with them, choose the operation in the dialog, and click "
                                    "Execute."));
    if (names.size() > 10) box.setDetailedText(names.join(u'\n'));
    QAbstractButton* const goingOn = box.addButton(tr("&Go On with Them"), QMessageBox::AcceptRole);
    QAbstractButton* const forgetting = box.addButton(tr("&Forget Them"), QMessageBox::DestructiveRole);
    box.setDefaultButton(box.addButton(QMessageBox::Cancel));
    box.exec();
    if (box.clickedButton() == goingOn) goOn(*list);
    if (box.clickedButton() == forgetting) runs::forget(machine(), *list);
  } catch (...) {
    tell(tr("The list of unfinished documents cannot be used."),
         QString::fromStdU16String(errors::faultInFlight().description));
  }
  look();
}

void RunsMenu::goOn(const runs::UnfinishedList& list) {
  if (std::ranges::any_of(list.documents, [](const std::string& path) { return path.front() != '/'; }))
    return tell(tr("These documents were named from a folder that is not known here."),
                tr("Go on with them on the command line, in the folder where the run was begun: "
                   "--null --files-from %1")
                    .arg(text(list.path)));
  std::vector<std::u16string> files;
  for (const std::string& path : list.documents) files.push_back(base::nameText(path));
  wanted_ = list;
  place_.listFiles(files);
  place_.note(tr("Execute goes on with %1.").arg(counted(files.size())));
}

/// A run over all documents of the list has come to its end, or left a list of its own.
void RunsMenu::forgetIfDone(const std::vector<std::string>& files) {
  if (!wanted_) return;
  const std::unordered_set<std::string> worked(files.begin(), files.end());
  if (!std::ranges::all_of(wanted_->documents, [&](const auto& path) { return worked.contains(path); }))
    return;
  try {
    runs::forget(machine(), *wanted_);
  } catch (const errors::DocumentError&) {
    // It is offered again.
  }
  wanted_.reset();
}

void RunsMenu::runEnded(const RunOverFiles& run, bool silently) {
  const runs::Ended& ended = run.ended;
  const std::size_t left = ended.unfinished ? ended.unfinished->documents : 0;
  const bool isListed = left == 0 || !ended.unfinished->list.empty();
  if (run.trouble.empty() && isListed) forgetIfDone(run.files);
  look();
  if (silently) return;
  QString what;
  QStringList more;
  if (!run.trouble.empty()) {
    what = run.isBegun ? tr("The run was stopped.") : tr("The run was not begun.");
    more += text(run.trouble);
  } else if (left > 0) {
    what = left == 1 ? tr("The run was ended; 1 document is left.")
                     : tr("The run was ended; %1 documents are left.").arg(left);
  }
  if (left > 0)
    more += isListed ? tr("Runs > Unfinished Documents goes on with them.")
                     : tr("There is no list of them: %1").arg(text(ended.unfinished->problem));
  if (ended.reportProblem) more += text(*ended.reportProblem);
  if (ended.notKept > 0)
    more += tr("%1 of the changed documents cannot be taken back: the originals would take more than 4 GiB.")
                .arg(ended.notKept);
  if (!what.isEmpty() || !more.isEmpty())
    tell(what.isEmpty() ? tr("The run has come to its end.") : what, more.join(u"\n\n"));
  if (!ended.undoName.empty())
    place_.note(tr("%1 changed. Runs > Undo Last Run takes that back.")
                    .arg(counted(static_cast<std::size_t>(ended.totals.changed))));
}

}  // namespace pluvo::desktop
