#include "memory/application.h"

#include "documents.h"
#include "errors/fault.h"
#include "member.h"
#include "options.h"
#include "window.h"
#include "word/faults.h"

#include <algorithm>
#include <utility>

namespace pluvo::memory {

MemoryApplication::MemoryApplication(std::shared_ptr<DocumentOpener> opener) : opener_(std::move(opener)) {}

MemoryApplication::~MemoryApplication() {
  for (const OpenedFile& opened : open_) opened.document->application_ = nullptr;
}

std::shared_ptr<word::Document> MemoryApplication::ActiveDocument() {
  return member(u"Application.ActiveDocument", [&] { return active(); });
}

std::shared_ptr<word::Selection> MemoryApplication::Selection() {
  return member(u"Application.Selection", [&] { return std::make_shared<MemorySelection>(active()); });
}

std::shared_ptr<word::Documents> MemoryApplication::Documents() {
  return std::make_shared<MemoryDocuments>(*this);
}

std::shared_ptr<word::Options> MemoryApplication::Options() { return std::make_shared<MemoryOptions>(*this); }

const std::u16string& MemoryApplication::defaultFilePath(word::WdDefaultFilePath kind) const {
  const auto found = defaultFolders_.find(kind);
  if (found == defaultFolders_.end())
    throw errors::Fault(word::kNotAvailable, u"There is no default folder of this kind.");
  return found->second;
}

void MemoryApplication::add(std::shared_ptr<MemoryDocument> document, std::shared_ptr<DocumentFile> file) {
  if (document == nullptr) throw errors::objectNotSet();
  open_.push_back({std::move(document), std::move(file)});
  open_.back().document->application_ = this;
  if (observer_ != nullptr) observer_->opened(open_.back());
}

std::shared_ptr<MemoryDocument> MemoryApplication::open(const std::string& path) {
  for (const OpenedFile& opened : open_) {
    const bool isHere =
        opened.document->path() == path || (opened.file != nullptr && opened.file->isAt(path));
    if (!isHere) continue;
    auto document = opened.document;
    activate(document);
    return document;
  }
  if (!opener_) throw errors::Fault(word::kNotAvailable, u"No files can be opened here.");
  OpenedFile opened = opener_->open(path);
  add(opened.document, std::move(opened.file));
  return opened.document;
}

void MemoryApplication::activate(const std::shared_ptr<MemoryDocument>& document) {
  open_.push_back(take(document));
  open_.back().document->application_ = this;
  if (observer_ != nullptr) observer_->activated(document);
}

void MemoryApplication::save(const MemoryDocument& document) {
  DocumentFile* const file = fileOf(document);
  if (file == nullptr) throw errors::Fault(word::kNotAvailable, u"The document belongs to no file.");
  file->save();
}

void MemoryApplication::close(const std::shared_ptr<MemoryDocument>& document) { removed(document)->close(); }

void MemoryApplication::remove(const std::shared_ptr<MemoryDocument>& document) { (void)removed(document); }

/// The caller holds the document, since its owner may let go of it on closing.
std::shared_ptr<MemoryDocument> MemoryApplication::removed(const std::shared_ptr<MemoryDocument>& document) {
  OpenedFile taken = take(document);
  if (observer_ != nullptr) observer_->closing(taken.document);
  return std::move(taken.document);
}

bool MemoryApplication::isReadOnly(const MemoryDocument& document) const {
  const DocumentFile* const file = fileOf(document);
  return file != nullptr && file->readOnly();
}

std::shared_ptr<MemoryDocument> MemoryApplication::active() const {
  if (open_.empty()) throw errors::Fault(word::kNoDocument, u"No document is open.");
  return open_.back().document;
}

std::shared_ptr<MemoryDocument> MemoryApplication::document(std::int32_t index) const {
  if (index < 1 || index > count())
    throw errors::Fault(word::kMemberMissing, u"There is no open document of this number.");
  return open_[static_cast<std::size_t>(index) - 1].document;
}

OpenedFile MemoryApplication::take(const std::shared_ptr<MemoryDocument>& document) {
  if (document == nullptr) throw errors::objectNotSet();
  const auto found = std::find_if(open_.begin(), open_.end(),
                                  [&](const OpenedFile& opened) { return opened.document == document; });
  if (found == open_.end()) {
    throw errors::Fault(word::kMemberMissing, u"The document is not open here.");
  }
  OpenedFile taken = std::move(*found);
  open_.erase(found);
  taken.document->application_ = nullptr;
  return taken;
}

DocumentFile* MemoryApplication::fileOf(const MemoryDocument& document) const {
  const auto found = std::find_if(open_.begin(), open_.end(), [&](const OpenedFile& opened) {
    return opened.document.get() == &document;
  });
  return found == open_.end() ? nullptr : found->file.get();
}

}  // namespace pluvo::memory
