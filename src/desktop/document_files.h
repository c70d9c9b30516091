#pragma once

#include "choosers.h"
#include "documents.h"
#include "memory/application.h"
#include "store/opener.h"

#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pluvo::desktop {

/// The user opens, saves and closes documents, and is asked what that needs.
class DocumentFiles {
 public:
  /// The window's services. The window outlives it.
  struct Place {
    QWidget& window;
    Work& work;
    Documents& documents;
    std::shared_ptr<memory::MemoryApplication> application;
    std::shared_ptr<store::StoreOpener> opener;
    /// Whether a pass holds the documents, which the user is told.
    std::function<bool()> refusedNow;
    /// Shows a message for a while.
    std::function<void(const QString& message)> note;
    /// A password of a document; nothing where the user gives none.
    store::PasswordChooser password;
    /// The password was wrong: whether the user would give another.
    std::function<bool()> opensAgain;
    /// Whether a document is opened to be read, as it recommends.
    store::ReadingChooser opensToRead;
  };

  DocumentFiles(Choosers choosers, Place place);

  /// Opens documents by their paths, bytes as the file system has them.
  void open(const std::vector<std::string>& paths);
  void chooseAndOpen();
  /// For a text whose encoding was told wrongly: it goes to the file again.
  void reopenInEncoding();
  void saveCurrent();
  void saveCurrentAs();
  void closeCurrent();
  void close(OpenDocument& document);

  /// The continuation; called in the end.
  using Then = std::function<void(bool done)>;
  /// Whether it was saved, or had no changes.
  void save(OpenDocument& document, const Then& then);
  /// Whether all may be closed: the user is asked about unsaved changes, document by document.
  void mayCloseAll(const Then& then);
  /// For a document of a run over files that may not be written; the name must be free.
  std::optional<std::string> freeName(const std::string& path);
  const std::shared_ptr<store::KnownPasswords>& passwords() const { return place_.opener->passwords(); }
  QString chooseFolder(const QString& folder) { return choosers_.folder(&place_.window, folder); }

 private:
  void openOne(const std::string& path, const std::function<void()>& then);
  std::optional<std::string> chooseEncoding(const std::string& path, const std::string& sentence);
  void saveAs(OpenDocument& document, const Then& then);
  void saveBy(const std::function<void()>& saving, OpenDocument& document, const Then& then);
  bool mayReplace(const QString& path, bool keptExtension);
  void tellSaved(const OpenDocument& document);
  void tellNotSaved(OpenDocument& document, const errors::Fault& fault, const Then& then);
  void mayClose(OpenDocument& document, const Then& then);
  void mayClose(std::vector<std::shared_ptr<memory::MemoryDocument>> documents, const Then& then);
  void closeDocument(OpenDocument& document, const Then& then);
  OpenDocument* current() const { return place_.documents.current(); }

  Choosers choosers_;
  Place place_;
  /// Else a document is read again, and of it only its password for opening is asked for.
  bool opensForUser_ = false;
  bool encodingDeclined_ = false;
};

}  // namespace pluvo::desktop
