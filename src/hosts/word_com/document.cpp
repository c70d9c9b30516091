#include "document.h"

#include "batch.h"
#include "range.h"

namespace pluvo::word_com {

std::unique_ptr<word::Batch> ComView::keepFieldCodes() {
  if (!view_.session().manner.careful) return nullptr;
  return std::make_unique<ComSwitched>(view_, L"ShowFieldCodes");
}

std::shared_ptr<word::View> ComWindow::View() {
  return std::make_shared<ComView>(window_.getObject(L"View", L"View"));
}

std::shared_ptr<word::Range> ComDocument::Range(std::int32_t start, std::int32_t end) {
  return std::make_shared<ComRange>(
      document_.callObject(L"Range", L"Range", Arguments().integer(start).integer(end)), document_);
}

std::shared_ptr<word::Window> ComDocument::ActiveWindow() {
  return std::make_shared<ComWindow>(document_.getObject(L"ActiveWindow", L"Window"));
}

void ComDocument::WritePassword(const std::u16string& password) {
  document_.put(L"WritePassword", Arguments().text(password));
}

word::WdProtectionType ComDocument::ProtectionType() {
  return static_cast<word::WdProtectionType>(document_.get(L"ProtectionType").toInteger());
}

void ComDocument::Unprotect(const std::u16string& password) {
  document_.call(L"Unprotect", Arguments().text(password));
}

/// Left out: NoReset, and after the password UseIRM and EnforceStyleLock.
void ComDocument::Protect(word::WdProtectionType type, const std::u16string& password) {
  if (document_.session().manner.careful) {
    document_.call(L"Protect", Arguments().integer(type).boolean(true).text(password));
    return;
  }
  document_.call(L"Protect", Arguments().integer(type).missing().text(password).missing(2));
}

std::shared_ptr<word::Range> ComDocument::StoryRanges(word::WdStoryType kind) {
  const Object stories = document_.getObject(L"StoryRanges", L"StoryRanges");
  return std::make_shared<ComRange>(stories.callObject(L"Item", L"Range", Arguments().integer(kind)),
                                    document_, kind == word::wdMainTextStory);
}

/// Left out: OriginalFormat and RouteDocument.
void ComDocument::Close(bool saveChanges) {
  document_.call(L"Close", Arguments().boolean(saveChanges).missing(2));
}

}  // namespace pluvo::word_com
