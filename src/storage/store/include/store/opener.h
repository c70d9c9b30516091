#pragma once

#include "errors/fault.h"
#include "memory/opener.h"
#include "store/known_passwords.h"
#include "store/store.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace pluvo::store {

/// Asks where a document that may not be saved under its own path is to be saved; nothing when the user
/// changed their mind. The name must be free.
using SaveAsChooser = std::function<std::optional<std::string>(const std::string& path)>;

/// Asks in which encoding a plain text is, whose encoding is not known, or not the one that was said before;
/// the sentence says so. A name that encodingNamed takes, or nothing where the text is not to be opened.
using EncodingChooser =
    std::function<std::optional<std::string>(const std::string& path, const std::string& sentence)>;

/// Asks for the password of an encrypted document, or of a reserved one. Without it an encrypted document is
/// not opened, and a reserved one is opened to be read.
enum class PasswordFor : std::uint8_t { opening, changing };
using PasswordChooser =
    std::function<std::optional<base::SecretText>(const std::string& path, PasswordFor what)>;

/// Asks whether a document is opened to be read, as it recommends.
using ReadingChooser = std::function<bool(const std::string& path)>;

/// Does the work and returns when it is done, in another thread perhaps; the caller gets its exceptions. What
/// reads the document meanwhile must not change it.
using Running = std::function<void(const std::function<void()>& work)>;

/// The number that a word processor has for what keeps a document from being opened, or from being saved.
std::int32_t openingFault(errors::Problem problem);
std::int32_t savingFault(errors::Problem problem);

/// The stored document behind an open one. A failed save is a Fault: 5155 (may not be written)
/// and 5356 (could not be written). Its description says what to do.
class StoredFile : public memory::DocumentFile {
 public:
  StoredFile(std::shared_ptr<StoredDocument> stored, SaveAsChooser chooser, Running running);

  bool readOnly() const override { return obstacle().has_value(); }
  bool isAt(const std::string& path) const override { return stored_->isAt(path); }
  /// Why it may not be written under its name, as things are now: for the user.
  std::optional<errors::Fault> obstacle() const;
  void save() override;
  /// Saves under another path, in the place of the file there, and goes on under it. So the text can also be
  /// saved when its own file has gone.
  void saveAs(const std::string& path);

  const StoredDocument& stored() const { return *stored_; }
  /// The attributes of the original that the version saved last could not be given.
  files::NotKept notKept() const { return notKept_; }

 private:
  void run(const std::string& path, const std::function<void()>& work) const;

  std::shared_ptr<StoredDocument> stored_;
  files::NotKept notKept_;
  SaveAsChooser chooser_;
  Running running_;
};

/// Opens stored documents, with all their stories, for the word processor of documents in memory; the file of
/// each is a StoredFile. A file that cannot be opened is a Fault. 5174: no such file, or unreadable. 4605:
/// encrypted, and no chooser asks for the password. 4198: no password was given. 5408: it was wrong. 5792:
/// no sound document of a known kind. Its description says what to do.
class StoreOpener : public memory::DocumentOpener {
 public:
  StoreOpener(
      Store store, SaveAsChooser chooser, Running running = [](const auto& work) { work(); });
  /// Also opens temporary files and protected documents: the user is asked about them.
  memory::OpenedFile open(const std::string& path) override;

  /// Without one, texts of unknown encoding are not opened.
  void encodingChooser(EncodingChooser chooser) { encodingChooser_ = std::move(chooser); }
  /// Who is asked for the password of each encrypted or reserved document where none of the known ones is
  /// right. One that is right is known from then on. Without one, encrypted documents are not opened.
  void passwordChooser(PasswordChooser chooser) { passwordChooser_ = std::move(chooser); }
  /// Without one, documents that recommend to be read are opened to be changed.
  void readingChooser(ReadingChooser chooser) { readingChooser_ = std::move(chooser); }
  const std::shared_ptr<KnownPasswords>& passwords() const { return passwords_; }
  /// Files opened from now on are read in this encoding, unless they have a byte order mark; empty: as they
  /// tell.
  void readAs(std::string encoding) { readAs_ = std::move(encoding); }

 private:
  std::unique_ptr<StoredDocument> openStored(const std::string& path);
  void askAboutChanging(StoredDocument& stored) const;
  std::unique_ptr<StoredDocument> openBy(const base::SecretText& password, const std::string& path);
  std::unique_ptr<StoredDocument> opened(const std::string& path, const std::string& encoding,
                                         const formats::KeyFinder& findKey);

  Store store_;
  EncodingChooser encodingChooser_;
  PasswordChooser passwordChooser_;
  ReadingChooser readingChooser_;
  std::shared_ptr<KnownPasswords> passwords_ = std::make_shared<KnownPasswords>();
  std::string readAs_;
  SaveAsChooser chooser_;
  Running running_;
};

}  // namespace pluvo::store
