#include "store/store.h"

#include "base/names.h"
#include "base/utf.h"
#include "document/same_document.h"
#include "errors/fault.h"
#include "files/reading.h"
#include "known_formats.h"
#include "word/faults.h"

#include <utility>

namespace pluvo::store {

using errors::DocumentError;
using errors::Problem;

namespace {

std::string_view nameIn(std::string_view path) { return path.substr(path.rfind('/') + 1); }

void requireWhole(const base::Bytes& bytes) {
  if (bytes.vanished())
    throw DocumentError(
        Problem::changed,
        "Part of the file could not be read any more: another program cut it short, or the disk "
        "failed. Nothing was written; open it again.");
}

/// Of a text that tells its encoding by how it reads.
DocumentError otherKind() {
  return {Problem::encoding,
          "Read back, the new version would not be the same text, because its kind or encoding "
          "could no longer be told; nothing was changed. Save the original as UTF-8 with a byte "
          "order mark, or as .docx, first."};
}

DocumentError notAsMeant(std::string_view what) {
  return {Problem::unsupported,
          "Read back, the new version would not have the same " + std::string(what) +
              " as was meant, so that nothing was changed. Make this change in a word processor, and please "
              "report what it was."};
}

formats::Opened readAgain(const formats::Format& format, const base::Bytes& written,
                          const formats::Hint& hint) {
  try {
    return format.read(written, hint);
  } catch (const DocumentError& unreadable) {
    if (unreadable.problem() == Problem::encoding) throw otherKind();
    throw;
  }
}

}  // namespace

std::optional<DocumentError> StoredDocument::obstacle() const {
  if (auto found = files::obstacleToSaving(*system_, path_)) return found;
  if (reserved_ == Reserved::byPassword) return reservedForChanging();
  if (isKeptToReading_)
    return DocumentError(Problem::readOnly,
                         "The document was opened to be read only, as it recommends; save it under another "
                         "name, or open it again to change it.");
  return std::nullopt;
}

void StoredDocument::reserve(formats::Reservation reservation) {
  reserved_ = reservation.isLiftedBy ? Reserved::byPassword : Reserved::recommended;
  reservation_ = std::move(reservation);
}

bool StoredDocument::release(const std::u16string& password) {
  if (!reservation_.obstacle.empty())
    throw errors::Fault(word::kNotAvailable, base::utf16(reservation_.obstacle)).with(Problem::unsupported);
  if (reserved_ != Reserved::byPassword || !reservation_.isLiftedBy(password)) return false;
  reserved_ = Reserved::no;
  return true;
}

void StoredDocument::protect(const formats::Protection& protection) {
  hashesForPassword_ = protection.hashes;
  auto check = protection.isLiftedBy;
  if (!protection.obstacle.empty()) {
    check = [obstacle = protection.obstacle](const std::u16string&) -> bool {
      throw errors::Fault(word::kNotAvailable, base::utf16(obstacle)).with(Problem::unsupported);
    };
  }
  document_->protect(protection.type, std::move(check));
}

bool StoredDocument::isAt(const std::string& path) const {
  return path == path_ || files::isSameFile(*system_, path, path_);
}

void StoredDocument::requireUnchangedFile() const {
  requireWhole(bytes_);
  files::requireUnchanged(*system_, path_, stamp_);
}

StoredDocument::Outcome StoredDocument::save(const SaveOptions& options) {
  const auto pending = beginSave(options);
  if (pending == nullptr) return {};
  files::Saved saved = pending->finish();
  if (!options.otherPath) {
    stamp_ = saved.stamp;
    document_->stories().saved();
  }
  return {true, std::move(saved.backup), saved.notKept};
}

std::unique_ptr<files::Pending> StoredDocument::beginSave(const SaveOptions& options) const {
  if (!document_->stories().changed()) return nullptr;
  const files::NewVersion version = newVersion(path_, options);
  if (!options.otherPath && path_ != readPath_) requireFileNotOverwritten();
  return options.otherPath
             ? files::beginCreatingFile(*system_, *options.otherPath, path_, stamp_, version,
                                        options.otherRoot)
             : files::beginReplacingFile(*system_, path_, stamp_, version, options.backupSuffix);
}

void StoredDocument::saveAs(const std::string& path) {
  requireFileNotOverwritten();
  stamp_ = files::writeElsewhere(*system_, path, path_, newVersion(path)).stamp;
  path_ = path;
  reserved_ = Reserved::no;  // the user who made the file may go on with it
  isKeptToReading_ = false;
  document_->stories().saved();
}

/// A large text lies in its file: one that was written over in place is no longer the text on screen.
void StoredDocument::requireFileNotOverwritten() const {
  if (bytes_.file == nullptr || !bytes_.file->overwritten()) return;
  throw DocumentError(Problem::changed,
                      "Another program wrote into the file while it was open here, and the text is no longer "
                      "known; nothing was written. Open the file again.");
}

files::NewVersion StoredDocument::newVersion(const std::string& path, const SaveOptions& options) const {
  return {[this](base::Output& out) {
            source_->write(document_->stories(), out);
            requireWhole(bytes_);
          },
          [this, meant = document_->stories().snapshot(),
           extension = std::string(formats::extensionOf(path))](const base::Bytes& written) {
            if (registry_->find(written.view, extension) != format_) throw otherKind();
            // So that never more than one of the two files is in memory.
            bytes_.release();
            const formats::Opened again = readAgain(*format_, written, again_);
            const auto release = [&] {
              bytes_.release();
              written.release();
            };
            release();
            if (const auto what = document::differenceOf(meant, again.stories, release); !what.empty())
              throw again.encoding.empty() ? notAsMeant(what) : otherKind();
          },
          options.beforeReplacing,
          std::nullopt,
          {},
          folderFlushes_,
          options.isFlushedDuringCheck};
}

Store::Store(files::FileSystem& system)
    : Store(system, std::make_shared<const formats::Registry>(knownFormats())) {}

errors::DocumentError protectedAgainstEditing() {
  return {Problem::protection,
          "The document is protected against editing; lift the protection in a word processor, or give its "
          "password with --password-file (an empty file where it has none)."};
}

errors::DocumentError reservedForChanging() {
  return {Problem::protection,
          "The document is reserved: changing it takes a password, without which one may only read it "
          "or save it under another name.",
          "Give the password with --password-file, or save the new version elsewhere with --output."};
}

std::unique_ptr<StoredDocument> Store::open(const std::string& path, const Also& also) const {
  const std::string_view name = nameIn(path);
  if (!also.temporaryFiles && name.starts_with('~'))
    throw DocumentError(
        Problem::temporary,
        "The name begins with \"~\": this is a word processor's temporary file. It was skipped; "
        "rename it if it is a document.");
  files::FileContent file = also.folderLength ? files::readFileBelow(*system_, path, *also.folderLength)
                                              : files::readFile(*system_, path);
  auto opened = std::unique_ptr<StoredDocument>(new StoredDocument);
  opened->system_ = system_;
  opened->registry_ = registry_;
  opened->folderFlushes_ = folderFlushes_;
  opened->format_ = &registry_->formatOf(file.bytes.view, formats::extensionOf(path));
  formats::Opened read = opened->format_->read(file.bytes, also.hint);
  if (also.forReading) read.protection.reset();
  if (read.protection && !read.protection->obstacle.empty() && !also.lockedForGood)
    throw DocumentError(Problem::unsupported, read.protection->obstacle);
  if (read.protection && !also.protectedDocuments) throw protectedAgainstEditing();
  opened->source_ = std::move(read.source);
  opened->encoding_ = std::move(read.encoding);
  opened->isEncodingGuessed_ = read.isEncodingGuessed;
  opened->isTemplate_ = read.isTemplate;
  opened->again_ = std::move(read.again);
  opened->document_ =
      memory::MemoryDocument::create(std::move(read.stories), opened->source_, base::nameText(name), path);
  if (read.protection) opened->protect(*read.protection);
  if (read.reservation) opened->reserve(*std::move(read.reservation));
  opened->path_ = opened->readPath_ = path;
  opened->stamp_ = file.stamp;
  opened->bytes_ = std::move(file.bytes);
  return opened;
}

}  // namespace pluvo::store
