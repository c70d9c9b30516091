#include "memory/application.h"

#include "errors/fault.h"
#include "window.h"
#include "word/faults.h"

#include <algorithm>
#include <utility>

namespace pluvo::memory {

std::shared_ptr<word::Selection> MemoryApplication::Selection() {
  return std::make_shared<MemorySelection>(active());
}

void MemoryApplication::add(std::shared_ptr<MemoryDocument> document) {
  if (document == nullptr) throw errors::objectNotSet();
  documents_.push_back(std::move(document));
}

void MemoryApplication::activate(const std::shared_ptr<MemoryDocument>& document) {
  const auto kept = document;
  take(kept);
  documents_.push_back(kept);
}

void MemoryApplication::close(const std::shared_ptr<MemoryDocument>& document) {
  const auto kept = document;
  take(kept);
  kept->close();
}

std::shared_ptr<MemoryDocument> MemoryApplication::active() const {
  if (documents_.empty()) throw errors::Fault(word::kNoDocument, u"No document is open.");
  return documents_.back();
}

void MemoryApplication::take(const std::shared_ptr<MemoryDocument>& document) {
  if (document == nullptr) throw errors::objectNotSet();
  const auto found = std::find(documents_.begin(), documents_.end(), document);
  if (found == documents_.end()) {
    throw errors::Fault(word::kMemberMissing, u"The document is not open here.");
  }
  documents_.erase(found);
}

}  // namespace pluvo::memory
