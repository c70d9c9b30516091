#pragma once

#include "errors/document_error.h"
#include "files/file_system.h"
#include "files/saving.h"
#include "formats/registry.h"
#include "memory/document.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pluvo::store {

/// Where a save goes, and what becomes of the old version.
struct SaveOptions {
  /// Keeps the old version beside the new one, under its name and this; see files::replaceFile.
  std::optional<std::string> backupSuffix;
  /// Leaves the original alone and writes a new file; the name must be free.
  std::optional<std::string> otherPath;
  /// The folder that the new file's path begins with, if folders below it are to be made; see
  /// files::beginCreatingFile.
  std::string otherRoot = {};
  /// See files::NewVersion; not called for a new file.
  std::function<std::unique_ptr<files::Keeping>(const files::Replacement&)> beforeReplacing = {};
  bool isFlushedDuringCheck = false;  ///< see files::NewVersion
};

/// A document's request before it is changed under its own name; see formats::Reservation.
enum class Reserved : std::uint8_t {
  no,
  recommended,  ///< it would rather be read, but nobody needs a password to change it
  byPassword,
};

/// A document in memory with the file it came from. Keeps what saving needs; the document itself knows no
/// file.
class StoredDocument {
 public:
  const std::shared_ptr<memory::MemoryDocument>& document() const { return document_; }
  const std::string& path() const { return path_; }
  /// Whether its file is encrypted.
  bool isEncrypted() const { return again_.key != nullptr; }
  /// By which a plain text was read; empty for other formats.
  const std::string& encoding() const { return encoding_; }
  /// Whether that was told from how the text reads.
  bool isEncodingGuessed() const { return isEncodingGuessed_; }

  /// Whether new documents are made from it, as its file says.
  bool isTemplate() const { return isTemplate_; }

  /// Whether the path leads to the document's file, under whatever name.
  bool isAt(const std::string& path) const;

  /// The request that still stands.
  Reserved reserved() const { return reserved_; }
  /// How many hashes each password costs that is tried on that.
  std::uint64_t hashesForChanging() const { return reservation_.hashes; }
  /// Whether this is the password for changing it; it may be saved then. Throws errors::Fault where none can
  /// be tried.
  bool release(const std::u16string& password);
  /// From now on it is not saved under its name.
  void keepToReading() { isKeptToReading_ = true; }

  /// Why a save in place would be refused, as things are now.
  std::optional<errors::DocumentError> obstacle() const;

  /// Throws DocumentError changed when the file is no longer as it was when it was opened. A large text lies
  /// in its file, so readers ask this before relying on their findings.
  void requireUnchangedFile() const;

  /// Saves the document, which must be open. A document without changes is not written. Returns where the old
  /// version is kept, if it is. Afterwards the document counts as saved, except when only a copy elsewhere
  /// was written; it may be edited and saved again. Throws DocumentError; then the original is untouched and
  /// there is no new file.
  struct Outcome {
    bool written = false;
    std::string backup;
    files::NotKept notKept = {};
  };
  Outcome save(const SaveOptions& options = {});

  /// The same up to where the new version is written, and that of a large document checked. The document may
  /// be gone when the result is finished. Null for a document without changes. It does not count as saved.
  std::unique_ptr<files::Pending> beginSave(const SaveOptions& options) const;

  /// Saves the document, changed or not, under another path, in the place of the file there, and goes on
  /// under that path. Its own file may have changed or gone. Throws DocumentError; then nothing has happened.
  void saveAs(const std::string& path);

  /// How many hashes each password costs that is tried on its protection; 0 where it has none.
  std::uint64_t hashesForPassword() const { return hashesForPassword_; }

  /// The looks of the document besides its text and highlight.
  const formats::Source& source() const { return *source_; }

 private:
  friend class Store;
  StoredDocument() = default;

  files::NewVersion newVersion(const std::string& path, const SaveOptions& options = {}) const;
  void requireFileNotOverwritten() const;
  void protect(const formats::Protection& protection);
  void reserve(formats::Reservation reservation);

  files::FileSystem* system_ = nullptr;
  std::shared_ptr<const formats::Registry> registry_;
  const formats::Format* format_ = nullptr;
  std::shared_ptr<const formats::Source> source_;
  std::shared_ptr<memory::MemoryDocument> document_;
  std::string encoding_;
  bool isEncodingGuessed_ = false;
  bool isTemplate_ = false;
  formats::Hint again_;  ///< for reading a new version back
  std::uint64_t hashesForPassword_ = 0;
  formats::Reservation reservation_;
  Reserved reserved_ = Reserved::no;
  bool isKeptToReading_ = false;
  std::shared_ptr<files::FolderFlushes> folderFlushes_;
  std::string path_;
  files::Stamp stamp_;
  /// The file that was read, and may be mapped still.
  std::string readPath_;
  base::Bytes bytes_;
};

/// Which documents are opened besides those that anybody may edit, and facts known of them.
struct Also {
  /// A name that begins with "~" belongs to a word processor at work.
  bool temporaryFiles = false;
  /// Documents protected against editing. They refuse every edit until the protection is lifted.
  bool protectedDocuments = false;
  /// Among them those that no password can lift, to be looked at. Else they are unsupported.
  bool lockedForGood = false;
  /// The same without their protection, to be read only: everybody may read them.
  bool forReading = false;
  /// Its encoding is a name that encodingNamed gave, or empty.
  formats::Hint hint = {};
  /// Of the folder that was looked through for it; see files::readFileBelow.
  std::optional<std::size_t> folderLength = std::nullopt;
};

/// The extensions that any known format goes by, "" for none among them.
std::vector<std::string_view> knownExtensions();

/// The problem of a document whose protection is not lifted, or whose password for changing is not given.
errors::DocumentError protectedAgainstEditing();
errors::DocumentError reservedForChanging();

/// Opens documents of every known format, told by their content. May be used from several threads.
class Store {
 public:
  explicit Store(files::FileSystem& system = files::machineFileSystem());
  /// Of other formats than those known here.
  Store(files::FileSystem& system, std::shared_ptr<const formats::Registry> registry)
      : system_(&system),
        registry_(std::move(registry)),
        folderFlushes_(std::make_shared<files::FolderFlushes>()) {}

  /// Throws errors::DocumentError; temporary and protected for those that are not also opened. A file that
  /// may not be written opens all the same.
  std::unique_ptr<StoredDocument> open(const std::string& path, const Also& also = {}) const;

 private:
  files::FileSystem* system_;
  std::shared_ptr<const formats::Registry> registry_;
  std::shared_ptr<files::FolderFlushes> folderFlushes_;
};

}  // namespace pluvo::store
