#include "document_files.h"

#include "encoding_dialog.h"
#include "errors/context.h"
#include "question.h"
#include "recent.h"
#include "word/faults.h"

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
  // After a link, "up" is not where the names say.
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

errors::Fault faultOf(const std::exception_ptr& thrown) {
  try {
    std::rethrow_exception(thrown);
  } catch (...) {
    return errors::faultInFlight();
  }
}

}  // namespace

DocumentFiles::DocumentFiles(Choosers choosers, Place place)
    : choosers_(std::move(choosers)), place_(std::move(place)) {
  place_.opener->encodingChooser([this](const std::string& path, const std::string& sentence) {
    std::optional<std::string> chosen;
    if (opensForUser_) place_.work.inWindow([&] { chosen = chooseEncoding(path, sentence); });
    return chosen;
  });
  place_.opener->passwordChooser([this](const std::string& path, store::PasswordFor what) {
    std::optional<base::SecretText> password;
    if (what == store::PasswordFor::changing && !opensForUser_) return password;
    place_.work.inWindow([&] { password = place_.password(path, what); });
    return password;
  });
  place_.opener->readingChooser([this](const std::string& path) {
    bool reads = false;
    if (opensForUser_) place_.work.inWindow([&] { reads = place_.opensToRead(path); });
    return reads;
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
  openOne(absolute(paths.front()),
          [this, rest = std::vector(paths.begin() + 1, paths.end())] { open(rest); });
}

void DocumentFiles::openOne(const std::string& path, const std::function<void()>& then) {
  const auto comesToFront = [this, path, then] {
    rememberRecent(path);
    place_.documents.sync();
    if (current() != nullptr) current()->view()->setFocus();
    then();
  };
  for (const auto& open : place_.documents.all()) {
    if (!open->file().isAt(path)) continue;
    place_.application->activate(open->document());
    return comesToFront();
  }
  opensForUser_ = true;
  encodingDeclined_ = false;
  const auto opened = std::make_shared<std::unique_ptr<OpenDocument>>();
  place_.work.run(
      [this, opened, path] {
        *opened = std::make_unique<OpenDocument>(place_.opener->open(path));
        (*opened)->prepare();
      },
      [this, path, opened, comesToFront, then](const std::exception_ptr& thrown) {
        opensForUser_ = false;
        place_.opener->readAs({});
        if (!thrown) {
          place_.documents.add(std::move(*opened));
          return comesToFront();
        }
        const errors::Fault fault = faultOf(thrown);
        if (fault.number == word::kOpenPasswordWrong && place_.opensAgain()) return openOne(path, then);
        if (!encodingDeclined_ && fault.number != word::kCommandFailed &&
            fault.number != word::kOpenPasswordWrong) {
          Question(&place_.window, QObject::tr("The document could not be opened."), qt(fault.description))
              .exec();
        }
        then();
      });
}

std::optional<std::string> DocumentFiles::chooseEncoding(const std::string& path,
                                                         const std::string& sentence) {
  auto chosen = askForEncoding(&place_.window, path, QString::fromStdString(sentence), {});
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
  if (!chosen) return;
  closeDocument(*current(), [this, path, encoding = *chosen](bool closed) {
    if (!closed) return;
    place_.opener->readAs(encoding);
    openOne(path, [] {});
  });
}

void DocumentFiles::saveCurrent() {
  if (current() != nullptr && !place_.work.underWay()) save(*current(), [](bool) {});
}

void DocumentFiles::saveCurrentAs() {
  if (current() != nullptr && !place_.work.underWay()) saveAs(*current(), [](bool) {});
}

void DocumentFiles::closeCurrent() {
  if (current() != nullptr) close(*current());
}

void DocumentFiles::save(OpenDocument& document, const Then& then) {
  document.refresh();
  if (!document.changed()) return then(true);
  saveBy(
      [file = document.sharedFile()] {
        if (const auto obstacle = file->obstacle()) throw errors::Fault(*obstacle);
        file->save();
      },
      document, then);
}

void DocumentFiles::saveAs(OpenDocument& document, const Then& then) {
  const auto chosen = choosers_.saveAs(&place_.window, freePath(document.path()));
  if (!chosen) return then(false);
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
    return then(false);
  }
  const bool takesPlaceOfOther = QFileInfo::exists(path) && !document.file().isAt(name);
  if (takesPlaceOfOther && !mayReplace(path, addsSuffix)) return then(false);
  saveBy([file = document.sharedFile(), name] { file->saveAs(name); }, document,
         [name, then](bool saved) {
           if (saved) rememberRecent(name);
           then(saved);
         });
}

void DocumentFiles::saveBy(const std::function<void()>& saving, OpenDocument& document, const Then& then) {
  place_.work.run(saving, [this, saved = document.document(), then](const std::exception_ptr& thrown) {
    OpenDocument& open = *place_.documents.find(*saved);
    if (thrown) return tellNotSaved(open, faultOf(thrown), then);
    tellSaved(open);
    then(true);
  });
}

void DocumentFiles::tellSaved(const OpenDocument& document) {
  place_.documents.updateTitles();
  const QString lost = QString::fromStdString(document.file().notKept().words());
  place_.note(
      lost.isEmpty()
          ? QObject::tr("Saved: %1").arg(document.path())
          : QObject::tr("Saved: %1. You may not give the new version the %2 of the original; it has yours.")
                .arg(document.path(), lost));
}

bool DocumentFiles::mayReplace(const QString& path, bool keptExtension) {
  Question box(
      &place_.window, QObject::tr("“%1” exists already. Replace it?").arg(path),
      keptExtension
          ? QObject::tr("A document of this kind keeps its extension. The contents of the file are lost.")
          : QObject::tr("The contents of the file are lost."));
  QAbstractButton* const replace = box.addButton(QObject::tr("&Replace"), QMessageBox::AcceptRole);
  box.setDefaultButton(box.addButton(QMessageBox::Cancel));
  box.exec();
  return box.clickedButton() == replace;
}

/// The text on screen is not lost: it can be saved elsewhere.
void DocumentFiles::tellNotSaved(OpenDocument& document, const errors::Fault& fault, const Then& then) {
  Question box(&place_.window, QObject::tr("“%1” was not saved.").arg(document.name()),
               qt(fault.description));
  QAbstractButton* const elsewhere = box.addButton(QObject::tr("Save &As …"), QMessageBox::AcceptRole);
  box.addButton(QMessageBox::Cancel);
  box.exec();
  if (box.clickedButton() != elsewhere) return then(false);
  saveAs(document, then);
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

void DocumentFiles::mayClose(OpenDocument& document, const Then& then) {
  document.refresh();
  if (!document.changed()) return then(true);
  if (document.view() != nullptr) place_.documents.bringToFront(document);
  Question box(&place_.window, QObject::tr("Save the changes to “%1”?").arg(document.name()),
               QObject::tr("Without saving, they are lost."));
  box.setStandardButtons(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
  box.setDefaultButton(QMessageBox::Save);
  switch (box.exec()) {
    case QMessageBox::Save:
      return save(document, then);
    case QMessageBox::Discard:
      return then(true);
    default:
      return then(false);
  }
}

void DocumentFiles::mayCloseAll(const Then& then) {
  std::vector<std::shared_ptr<memory::MemoryDocument>> documents;
  for (const auto& open : place_.documents.all()) documents.push_back(open->document());
  mayClose(std::move(documents), then);
}

void DocumentFiles::mayClose(std::vector<std::shared_ptr<memory::MemoryDocument>> documents,
                             const Then& then) {
  if (documents.empty()) return then(true);
  OpenDocument& first = *place_.documents.find(*documents.front());
  documents.erase(documents.begin());
  mayClose(first, [this, rest = std::move(documents), then](bool may) {
    if (!may) return then(false);
    mayClose(rest, then);
  });
}

void DocumentFiles::close(OpenDocument& document) {
  if (!place_.refusedNow()) closeDocument(document, [](bool) {});
}

void DocumentFiles::closeDocument(OpenDocument& document, const Then& then) {
  mayClose(document, [this, closed = document.document(), then](bool may) {
    if (may) place_.application->close(closed);
    if (may) place_.documents.sync();
    then(may);
  });
}

}  // namespace pluvo::desktop
