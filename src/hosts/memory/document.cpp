#include "memory/document.h"

#include "base/names.h"
#include "base/secret_text.h"
#include "base/utf.h"
#include "errors/fault.h"
#include "member.h"
#include "memory/application.h"
#include "range.h"
#include "window.h"
#include "word/faults.h"

#include <algorithm>
#include <utility>

namespace pluvo::memory {

using errors::Fault;

std::shared_ptr<MemoryDocument> MemoryDocument::create(document::Content content,
                                                       std::shared_ptr<const document::Medium> medium,
                                                       std::u16string name, std::string path) {
  std::shared_ptr<MemoryDocument> document(new MemoryDocument());
  document->open_.emplace(std::move(content));
  document->medium_ = std::move(medium);
  document->name_ = std::move(name);
  document->path_ = std::move(path);
  return document;
}

std::shared_ptr<word::Range> MemoryDocument::Range(std::int32_t start, std::int32_t end) {
  return member(u"Document.Range",
                [&] { return std::make_shared<MemoryRange>(shared_from_this(), spanOf(start, end)); });
}

std::shared_ptr<word::Window> MemoryDocument::ActiveWindow() {
  return std::make_shared<MemoryWindow>(shared_from_this());
}

std::u16string MemoryDocument::Path() {
  const std::size_t separator = path_.rfind('/');
  if (separator == std::string::npos) return {};
  return base::nameText(path_.substr(0, std::max<std::size_t>(separator, 1)));
}

void MemoryDocument::Activate() {
  member(u"Document.Activate", [&] { application().activate(shared_from_this()); });
}

bool MemoryDocument::ReadOnly() {
  return member(u"Document.ReadOnly",
                [&] { return application_ != nullptr && application_->isReadOnly(*this); });
}

void MemoryDocument::WritePassword(const std::u16string& password) {
  member(u"Document.WritePassword", [&] {
    open();
    if (password.empty()) return;
    throw Fault(word::kNotAvailable, u"A document of this kind has no place for a password for changing it.");
  });
}

word::WdProtectionType MemoryDocument::ProtectionType() {
  return member(u"Document.ProtectionType", [&] {
    open();
    return protection_;
  });
}

void MemoryDocument::Unprotect(const std::u16string& password) {
  member(u"Document.Unprotect", [&] {
    open();
    if (protection_ == word::wdNoProtection)
      throw Fault(word::kNotAvailable, u"The document is not protected.");
    if (!unprotect(password)) throw Fault(word::kProtectionPasswordWrong, u"The password is incorrect.");
  });
}

bool MemoryDocument::unprotect(const std::u16string& password) {
  if (passwordCheck_ && !passwordCheck_(password)) return false;
  protect(word::wdNoProtection);
  return true;
}

void MemoryDocument::Protect(word::WdProtectionType type, const std::u16string& password) {
  member(u"Document.Protect", [&] {
    open();
    if (protection_ != word::wdNoProtection)
      throw Fault(word::kNotAvailable, u"The document is protected already.");
    PasswordCheck check;
    if (!password.empty()) {
      check = [kept = std::make_shared<const base::SecretText>(std::u16string(password))](
                  const std::u16string& given) { return given == kept->text(); };
    }
    protect(type, std::move(check));
  });
}

void MemoryDocument::protect(word::WdProtectionType type, PasswordCheck check) {
  protection_ = type;
  passwordCheck_ = std::move(check);
}

std::shared_ptr<word::Range> MemoryDocument::StoryRanges(word::WdStoryType story) {
  return member(u"StoryRanges.Item", [&] {
    if (story != word::wdMainTextStory) throw Fault(word::kMemberMissing, u"The document has no such story.");
    return Range(0, model().length());
  });
}

bool MemoryDocument::Saved() {
  return member(u"Document.Saved", [&] { return !model().changed(); });
}

void MemoryDocument::Close(bool saveChanges) {
  member(u"Document.Close", [&] {
    const auto kept = shared_from_this();
    application().leaving(*this);
    if (saveChanges && !Saved()) application().save(*this);
    if (!application().keeps(*this)) application().close(kept);
  });
}

void MemoryDocument::select(text::Span span) {
  open().selection.set(spanOf(span.from, span.to));
  if (observer_ != nullptr) observer_->selected(selection());
}

void MemoryDocument::showFieldCodes(bool value) {
  const text::View view = value ? text::View::codes : text::View::results;
  if (view_ == view) return;
  view_ = view;
  if (observer_ != nullptr) observer_->viewChanged();
}

void MemoryDocument::observer(DocumentObserver* observer) {
  observer_ = observer;
  if (open_) open_->model.observer(observer);
}

void MemoryDocument::moveTo(std::string path) {
  path_ = std::move(path);
  name_ = base::nameText(path_.substr(path_.rfind('/') + 1));
}

text::Span MemoryDocument::spanOf(std::int32_t start, std::int32_t end) {
  requirePosition(start);
  requirePosition(end);
  return {std::min(start, end), end};
}

void MemoryDocument::requirePosition(std::int32_t position) {
  if (position < 0 || position > model().length())
    throw Fault(word::kValueOutOfRange, u"Value out of range.");
}

void MemoryDocument::requireEditable(std::u16string_view newText) {
  if (protection_ != word::wdNoProtection) {
    throw Fault(word::kProtectedSelection,
                u"You are not allowed to edit this selection because it is protected.")
        .with(errors::Problem::protection);
  }
  if (medium_ == nullptr || newText.empty()) return;
  if (const auto reason = medium_->refusesText(newText)) {
    throw Fault(word::kParameterOutOfRange, base::utf16(*reason)).with(errors::Problem::encoding);
  }
}

void MemoryDocument::requireHighlightable(std::int32_t colour) {
  requireEditable({});
  if (colour < word::wdNoHighlight || colour > word::wdGray25) {
    throw Fault(word::kParameterOutOfRange, u"There is no highlight colour with this index.")
        .with(errors::Problem::encoding);
  }
  if (medium_ != nullptr && !medium_->holdsHighlight()) {
    throw Fault(word::kNotAvailable,
                u"A document of this kind has no place for highlighting; save it as .docx first.")
        .with(errors::Problem::unsupported);
  }
}

MemoryApplication& MemoryDocument::application() const {
  if (application_ == nullptr) throw Fault(word::kMemberMissing, u"The document is not open here.");
  return *application_;
}

MemoryDocument::Open& MemoryDocument::open() {
  if (!open_) throw Fault(word::kObjectDeleted, u"Object has been deleted: the document is closed.");
  return *open_;
}

}  // namespace pluvo::memory
