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

void refusePosition() { throw Fault(word::kValueOutOfRange, u"Value out of range."); }

MemoryDocument::Open::Open(std::vector<document::Content> contents,
                           std::shared_ptr<const document::Medium> medium)
    : stories(std::move(contents), std::move(medium)) {
  selection.emplace(stories.mainText().liveRanges(), text::Span{});
}

std::shared_ptr<MemoryDocument> MemoryDocument::create(document::Content mainText,
                                                       std::shared_ptr<const document::Medium> medium,
                                                       std::u16string name, std::string path) {
  std::vector<document::Content> stories;
  stories.push_back(std::move(mainText));
  return create(std::move(stories), std::move(medium), std::move(name), std::move(path));
}

std::shared_ptr<MemoryDocument> MemoryDocument::create(std::vector<document::Content> stories,
                                                       std::shared_ptr<const document::Medium> medium,
                                                       std::u16string name, std::string path) {
  std::shared_ptr<MemoryDocument> document(new MemoryDocument());
  document->open_.emplace(std::move(stories), std::move(medium));
  document->name_ = std::move(name);
  document->path_ = std::move(path);
  return document;
}

MemoryDocument::Open::Open(document::Document::Snapshot snapshot) : stories(std::move(snapshot)) {
  selection.emplace(stories.mainText().liveRanges(), text::Span{});
}

std::shared_ptr<MemoryDocument> MemoryDocument::copy() {
  std::shared_ptr<MemoryDocument> copy(new MemoryDocument());
  copy->open_.emplace(stories().snapshot());
  copy->name_ = name_;
  copy->path_ = path_;
  copy->view_ = view_;
  copy->select(selectedStory(), selection());
  return copy;
}

std::shared_ptr<word::Range> MemoryDocument::Range(std::int32_t start, std::int32_t end) {
  return rangeIn(0, start, end);
}

std::shared_ptr<word::Range> MemoryDocument::rangeIn(std::int32_t story, std::int32_t start,
                                                     std::int32_t end) {
  return member(u"Document.Range", [&] {
    const auto number = static_cast<std::size_t>(story);
    return std::make_shared<MemoryRange>(shared_from_this(), number,
                                         spanOf(stories().story(number), start, end));
  });
}

std::optional<std::int32_t> MemoryDocument::nextStory(word::StoryKinds kinds, std::int32_t from) {
  for (std::size_t i = static_cast<std::size_t>(from); i < stories().count(); ++i) {
    const bool isWanted = (word::kindsOf(stories().story(i).kind()) & kinds) != 0;
    if (isWanted && !stories().isGone(i)) return static_cast<std::int32_t>(i);
  }
  return std::nullopt;
}

std::int32_t MemoryDocument::endOf(std::int32_t story) {
  return stories().story(static_cast<std::size_t>(story)).length();
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

std::shared_ptr<word::Range> MemoryDocument::StoryRanges(word::WdStoryType kind) {
  return member(u"StoryRanges.Item", [&] {
    auto range = storyRange(kind, 0);
    if (range == nullptr) throw Fault(word::kMemberMissing, u"The document has no such story.");
    return range;
  });
}

std::shared_ptr<word::Range> MemoryDocument::storyRange(word::WdStoryType kind, std::size_t from) {
  const std::size_t index = stories().firstOf(kind, from);
  if (index == stories().count()) return nullptr;
  const text::Span whole{0, stories().story(index).length()};
  return std::make_shared<MemoryRange>(shared_from_this(), index, whole);
}

bool MemoryDocument::Saved() {
  return member(u"Document.Saved", [&] { return !stories().changed(); });
}

void MemoryDocument::Saved(bool /*saved*/) {
  throw Fault(word::kNotAvailable, u"Whether this document is saved goes by its changes alone.",
              u"Document.Saved");
}

void MemoryDocument::Close(bool saveChanges) {
  member(u"Document.Close", [&] {
    const auto kept = shared_from_this();
    if (saveChanges && !Saved()) application().save(*this);
    application().close(kept);
  });
}

void MemoryDocument::select(std::size_t story, text::Span span) {
  document::Story& selected = stories().story(story);
  span = spanOf(selected, span.from, span.to);
  if (story != selectedStory()) {
    open().selection.emplace(selected.liveRanges(), span);
    open().selectedStory = story;
  }
  open().selection->set(span);
  if (observer_ != nullptr) observer_->selected(selected, span);
}

void MemoryDocument::showFieldCodes(bool value) {
  const text::View view = value ? text::View::codes : text::View::results;
  if (view_ == view) return;
  view_ = view;
  if (observer_ != nullptr) observer_->viewChanged();
}

void MemoryDocument::observer(DocumentObserver* observer) {
  observer_ = observer;
  if (open_) open_->stories.observer(observer);
}

void MemoryDocument::moveTo(std::string path) {
  path_ = std::move(path);
  name_ = base::nameText(path_.substr(path_.rfind('/') + 1));
}

void MemoryDocument::requireEditable() {
  if (protection_ != word::wdNoProtection) {
    throw Fault(word::kProtectedSelection,
                u"You are not allowed to edit this selection because it is protected.")
        .with(errors::Problem::protection);
  }
}

void MemoryDocument::requireHighlightable(std::int32_t colour) {
  requireEditable();
  if (colour < word::wdNoHighlight || colour > word::wdGray25) {
    throw Fault(word::kParameterOutOfRange, u"There is no highlight colour with this index.")
        .with(errors::Problem::encoding);
  }
}

MemoryApplication& MemoryDocument::application() const {
  if (application_ == nullptr) throw Fault(word::kMemberMissing, u"The document is not open here.");
  return *application_;
}

void MemoryDocument::refuseClosed() {
  throw Fault(word::kObjectDeleted, u"Object has been deleted: the document is closed.");
}

}  // namespace pluvo::memory
