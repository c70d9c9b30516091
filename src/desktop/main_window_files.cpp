#include "base/names.h"
#include "encoding_dialog.h"
#include "errors/context.h"
#include "main_window.h"
#include "question.h"
#include "recent.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QScopeGuard>
#include <QStatusBar>
#include <algorithm>
#include <filesystem>
#include <utility>

/// Opening, saving and closing documents.
namespace pluvo::desktop {

namespace {

QString qt(const std::u16string& text) { return QString::fromStdU16String(text); }

std::string absolute(const std::string& path) {
  std::error_code failure;
  const auto full = std::filesystem::absolute(path, failure);
  if (failure) return path;
  if (std::find(full.begin(), full.end(), "..") == full.end()) return full.lexically_normal().string();
  // Behind a link, "up" is not where the names say.
  const auto folder = std::filesystem::canonical(full.parent_path(), failure);
  return failure ? full.string() : (folder / full.filename()).string();
}

/// The path itself where nothing is there, else the first with a number that is free: "letter (2).docx".
QString freePath(const QString& path) {
  const QFileInfo file(path);
  const QString suffix = file.suffix().isEmpty() ? QString() : QLatin1Char('.') + file.suffix();
  const QString stem = path.chopped(suffix.size());
  QString free = path;
  for (int number = 2; QFileInfo::exists(free) || QFileInfo(free).isSymLink(); ++number)
    free = QStringLiteral("%1 (%2)%3").arg(stem).arg(number).arg(suffix);
  return free;
}

std::string bytesOf(const QString& path) { return QFile::encodeName(path).toStdString(); }

}  // namespace

void MainWindow::chooseAndOpen() {
  if (refusedNow()) return;
  const QString folder = current() != nullptr ? QFileInfo(current()->path()).path() : QString();
  std::vector<std::string> paths;
  for (const QString& path : choosers_.open(this, folder)) paths.push_back(bytesOf(path));
  open(paths);
}

void MainWindow::open(const std::vector<std::string>& paths) {
  if (paths.empty() || refusedNow()) return;
  for (const std::string& path : paths) {
    if (openOne(absolute(path))) rememberRecent(absolute(path));
  }
}

bool MainWindow::openOne(const std::string& path) {
  errors::Fault fault;
  opensForUser_ = true;
  encodingDeclined_ = false;
  const auto noLonger = qScopeGuard([this] { opensForUser_ = false; });
  try {
    const auto document = application_->open(path);
    wanted_ = document;
    syncTabs();
    if (current() != nullptr) current()->view()->setFocus();
    return true;
  } catch (...) {
    fault = errors::faultInFlight();
  }
  if (encodingDeclined_) return false;
  Question box(this, tr("The document could not be opened."), qt(fault.description));
  box.exec();
  return false;
}

std::optional<std::string> MainWindow::chooseEncoding(const std::string& path, const std::string& sentence) {
  const auto chosen = askForEncoding(this, path, QString::fromStdString(sentence), {});
  encodingDeclined_ = !chosen;
  return chosen;
}

/// For a text whose encoding was told wrongly: it goes to the file again.
void MainWindow::reopenInEncoding() {
  if (current() == nullptr || refusedNow()) return;
  const std::string path = current()->document()->path();
  const std::string encoding = current()->file().stored().encoding();
  std::optional<std::string> chosen;
  QString trouble;
  try {
    const QString asNow = tr("The text is now read as %1.").arg(QString::fromStdString(encoding));
    chosen = askForEncoding(this, path, asNow, encoding);
  } catch (const errors::DocumentError& unreadable) {
    trouble = QString::fromUtf8(unreadable.what());
  }
  if (!trouble.isEmpty()) Question(this, tr("The document could not be opened."), trouble).exec();
  if (!chosen || !closeDocument(*current())) return;
  opener_->readAs(*chosen);
  openOne(path);
  opener_->readAs({});
}

void MainWindow::saveCurrent() {
  if (current() != nullptr && !working_.breathing()) save(*current());
}

void MainWindow::saveCurrentAs() {
  if (current() != nullptr && !working_.breathing()) saveAs(*current());
}

void MainWindow::closeCurrent() {
  if (current() != nullptr && !refusedNow()) closeDocument(*current());
}

bool MainWindow::save(OpenDocument& document) {
  if (!document.changed()) return true;
  if (const auto obstacle = document.file().obstacle()) return tellNotSaved(document, *obstacle);
  return saveBy([&] { document.file().save(); }, document);
}

bool MainWindow::saveAs(OpenDocument& document) {
  const auto chosen = choosers_.saveAs(this, freePath(document.path()));
  if (!chosen) return false;
  QString path = *chosen;
  const QString suffix = QFileInfo(document.path()).suffix();
  const bool addsSuffix =
      !suffix.isEmpty() && QFileInfo(path).suffix().compare(suffix, Qt::CaseInsensitive) != 0;
  if (addsSuffix) path += QLatin1Char('.') + suffix;
  const std::string name = absolute(bytesOf(path));
  for (const auto& other : documents_) {
    if (other.get() == &document || !other->file().isAt(name)) continue;
    Question(this, tr("“%1” is open in another tab.").arg(path),
             tr("Close it there, or choose another name."))
        .exec();
    return false;
  }
  const bool takesPlaceOfOther = QFileInfo::exists(path) && !document.file().isAt(name);
  if (takesPlaceOfOther && !mayReplace(path, addsSuffix)) return false;
  const auto saving = [&] {
    document.file().saveAs(name);
    rememberRecent(document.document()->path());
  };
  return saveBy(saving, document);
}

bool MainWindow::saveBy(const std::function<void()>& saving, OpenDocument& document) {
  errors::Fault fault;
  try {
    saving();
    updateTitles();
    const QString lost = QString::fromStdString(document.file().notKept().words());
    statusBar()->showMessage(
        lost.isEmpty()
            ? tr("Saved: %1").arg(document.path())
            : tr("Saved: %1. You may not give the new version the %2 of the original; it has yours.")
                  .arg(document.path(), lost),
        kMessageTime);
    return true;
  } catch (...) {
    fault = errors::faultInFlight();
  }
  return tellNotSaved(document, fault);
}

bool MainWindow::mayReplace(const QString& path, bool keptExtension) {
  Question box(this, tr("“%1” exists already. Replace it?").arg(path),
               keptExtension ? tr("A document of this kind keeps its extension. What is in the file is lost.")
                             : tr("What is in the file is lost."));
  QAbstractButton* const replace = box.addButton(tr("&Replace"), QMessageBox::AcceptRole);
  box.setDefaultButton(box.addButton(QMessageBox::Cancel));
  box.exec();
  return box.clickedButton() == replace;
}

/// The text on screen is not lost: it can be saved elsewhere.
bool MainWindow::tellNotSaved(OpenDocument& document, const errors::Fault& fault) {
  Question box(this, tr("“%1” was not saved.").arg(document.name()), qt(fault.description));
  QAbstractButton* const elsewhere = box.addButton(tr("Save &As …"), QMessageBox::AcceptRole);
  box.addButton(QMessageBox::Cancel);
  box.exec();
  return box.clickedButton() == elsewhere && saveAs(document);
}

/// For a document of a run over files that may not be written; the name must be free.
std::optional<std::string> MainWindow::freeName(const std::string& path) {
  for (;;) {
    const auto chosen = choosers_.saveAs(this, freePath(QString::fromStdString(path)));
    if (!chosen) return std::nullopt;
    if (!QFileInfo::exists(*chosen)) return bytesOf(*chosen);
    Question(this, tr("“%1” exists already.").arg(*chosen), tr("Choose a name that is free.")).exec();
  }
}

bool MainWindow::goesOnAfterRefusal() {
  Question box(this, tr("Go on with the other blocks?"),
               tr("They may be refused for the same reason, and each refusal is told."));
  box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
  box.setDefaultButton(QMessageBox::No);
  return box.exec() == QMessageBox::Yes;
}

bool MainWindow::mayClose(OpenDocument& document) {
  if (!document.changed()) return true;
  if (document.view() != nullptr) tabs_->setCurrentWidget(document.view());
  Question box(this, tr("Save the changes to “%1”?").arg(document.name()),
               tr("Without saving, they are lost."));
  box.setStandardButtons(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
  box.setDefaultButton(QMessageBox::Save);
  switch (box.exec()) {
    case QMessageBox::Save:
      return save(document);
    case QMessageBox::Discard:
      return true;
    default:
      return false;
  }
}

bool MainWindow::closeDocument(OpenDocument& document) {
  if (!mayClose(document)) return false;
  const auto closed = document.document();
  application_->close(closed);
  syncTabs();
  return true;
}

void MainWindow::showHelp(const std::u16string& path) {
  auto& window = help_[path];
  if (window == nullptr) window = std::make_unique<HelpWindow>(base::nameBytes(path));
  window->show();
  window->raise();
  window->activateWindow();
}

void MainWindow::openInstructions() {
  errors::Fault fault;
  try {
    return showHelp(component_ + u"/Instructions.doc");
  } catch (...) {
    fault = errors::faultInFlight();
  }
  Question(this, tr("The instructions could not be opened."), qt(fault.description)).exec();
}

}  // namespace pluvo::desktop
