#include "document_files.h"

#include "encoding_dialog.h"
#include "errors/context.h"
#include "question.h"
#include "recent.h"

#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QScopeGuard>
#include <algorithm>
#include <filesystem>
#include <utility>

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

DocumentFiles::DocumentFiles(Choosers choosers, Place place)
    : choosers_(std::move(choosers)), place_(std::move(place)) {
  place_.opener->encodingChooser([this](const std::string& path, const std::string& sentence) {
    return opensForUser_ ? chooseEncoding(path, sentence) : std::nullopt;
  });
}

void DocumentFiles::chooseAndOpen() {
  if (place_.refusedNow()) return;
  const QString folder = current() != nullptr ? QFileInfo(current()->path()).path() : QString();
  std::vector<std::string> paths;
  for (const QString& path : choosers_.open(&place_.window, folder)) paths.push_back(bytesOf(path));
  open(paths);
}

void DocumentFiles::open(const std::vector<std::string>& paths) {
  if (paths.empty() || place_.refusedNow()) return;
  for (const std::string& path : paths) {
    if (openOne(absolute(path))) rememberRecent(absolute(path));
  }
}

bool DocumentFiles::openOne(const std::string& path) {
  errors::Fault fault;
  opensForUser_ = true;
  encodingDeclined_ = false;
  const auto noLonger = qScopeGuard([this] { opensForUser_ = false; });
  try {
    const auto document = place_.application->open(path);
    place_.documents.want(document);
    place_.documents.sync();
    if (current() != nullptr) current()->view()->setFocus();
    return true;
  } catch (...) {
    fault = errors::faultInFlight();
  }
  if (encodingDeclined_) return false;
  Question box(&place_.window, QObject::tr("The document could not be opened."), qt(fault.description));
  box.exec();
  return false;
}

std::optional<std::string> DocumentFiles::chooseEncoding(const std::string& path,
                                                         const std::string& sentence) {
  const auto chosen = askForEncoding(&place_.window, path, QString::fromStdString(sentence), {});
  encodingDeclined_ = !chosen;
  return chosen;
}

/// For a text whose encoding was told wrongly: it goes to the file again.
void DocumentFiles::reopenInEncoding() {
  if (current() == nullptr || place_.refusedNow()) return;
  const std::string path = current()->document()->path();
  const std::string encoding = current()->file().stored().encoding();
  std::optional<std::string> chosen;
  QString trouble;
  try {
    const QString asNow = QObject::tr("The text is now read as %1.").arg(QString::fromStdString(encoding));
    chosen = askForEncoding(&place_.window, path, asNow, encoding);
  } catch (const errors::DocumentError& unreadable) {
    trouble = QString::fromUtf8(unreadable.what());
  }
  if (!trouble.isEmpty())
    Question(&place_.window, QObject::tr("The document could not be opened."), trouble).exec();
  if (!chosen || !closeDocument(*current())) return;
  place_.opener->readAs(*chosen);
  openOne(path);
  place_.opener->readAs({});
}

void DocumentFiles::saveCurrent() {
  if (current() != nullptr && !place_.working.breathing()) save(*current());
}

void DocumentFiles::saveCurrentAs() {
  if (current() != nullptr && !place_.working.breathing()) saveAs(*current());
}

void DocumentFiles::closeCurrent() {
  if (current() != nullptr) close(*current());
}

bool DocumentFiles::save(OpenDocument& document) {
  if (!document.changed()) return true;
  if (const auto obstacle = document.file().obstacle()) return tellNotSaved(document, *obstacle);
  return saveBy([&] { document.file().save(); }, document);
}

bool DocumentFiles::saveAs(OpenDocument& document) {
  const auto chosen = choosers_.saveAs(&place_.window, freePath(document.path()));
  if (!chosen) return false;
  QString path = *chosen;
  const QString suffix = QFileInfo(document.path()).suffix();
  const bool addsSuffix =
      !suffix.isEmpty() && QFileInfo(path).suffix().compare(suffix, Qt::CaseInsensitive) != 0;
  if (addsSuffix) path += QLatin1Char('.') + suffix;
  const std::string name = absolute(bytesOf(path));
  for (const auto& other : place_.documents.all()) {
    if (other.get() == &document || !other->file().isAt(name)) continue;
    Question(&place_.window, QObject::tr("“%1” is open in another tab.").arg(path),
             QObject::tr("Close it there, or choose another name."))
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

bool DocumentFiles::saveBy(const std::function<void()>& saving, OpenDocument& document) {
  errors::Fault fault;
  try {
    saving();
    place_.documents.updateTitles();
    const QString lost = QString::fromStdString(document.file().notKept().words());
    place_.note(
        lost.isEmpty()
            ? QObject::tr("Saved: %1").arg(document.path())
            : QObject::tr("Saved: %1. You may not give the new version the %2 of the original; it has yours.")
                  .arg(document.path(), lost));
    return true;
  } catch (...) {
    fault = errors::faultInFlight();
  }
  return tellNotSaved(document, fault);
}

bool DocumentFiles::mayReplace(const QString& path, bool keptExtension) {
  Question box(&place_.window, QObject::tr("“%1” exists already. Replace it?").arg(path),
               keptExtension
                   ? QObject::tr("A document of this kind keeps its extension. What is in the file is lost.")
                   : QObject::tr("What is in the file is lost."));
  QAbstractButton* const replace = box.addButton(QObject::tr("&Replace"), QMessageBox::AcceptRole);
  box.setDefaultButton(box.addButton(QMessageBox::Cancel));
  box.exec();
  return box.clickedButton() == replace;
}

/// The text on screen is not lost: it can be saved elsewhere.
bool DocumentFiles::tellNotSaved(OpenDocument& document, const errors::Fault& fault) {
  Question box(&place_.window, QObject::tr("“%1” was not saved.").arg(document.name()),
               qt(fault.description));
  QAbstractButton* const elsewhere = box.addButton(QObject::tr("Save &As …"), QMessageBox::AcceptRole);
  box.addButton(QMessageBox::Cancel);
  box.exec();
  return box.clickedButton() == elsewhere && saveAs(document);
}

/// For a document of a run over files that may not be written; the name must be free.
std::optional<std::string> DocumentFiles::freeName(const std::string& path) {
  for (;;) {
    const auto chosen = choosers_.saveAs(&place_.window, freePath(QString::fromStdString(path)));
    if (!chosen) return std::nullopt;
    if (!QFileInfo::exists(*chosen)) return bytesOf(*chosen);
    Question(&place_.window, QObject::tr("“%1” exists already.").arg(*chosen),
             QObject::tr("Choose a name that is free."))
        .exec();
  }
}

bool DocumentFiles::mayClose(OpenDocument& document) {
  if (!document.changed()) return true;
  if (document.view() != nullptr) place_.documents.bringToFront(document);
  Question box(&place_.window, QObject::tr("Save the changes to “%1”?").arg(document.name()),
               QObject::tr("Without saving, they are lost."));
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

void DocumentFiles::close(OpenDocument& document) {
  if (!place_.refusedNow()) closeDocument(document);
}

bool DocumentFiles::closeDocument(OpenDocument& document) {
  if (!mayClose(document)) return false;
  const auto closed = document.document();
  place_.application->close(closed);
  place_.documents.sync();
  return true;
}

}  // namespace pluvo::desktop
