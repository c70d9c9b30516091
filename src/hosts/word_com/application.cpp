#include "word_com/application.h"

#include "batch.h"
#include "dispatch.h"
#include "document.h"
#include "fault.h"
#include "text.h"
#include "units.h"

#include <utility>

namespace pluvo::word_com {

namespace {

constexpr const wchar_t* kProtected = L"ProtectedViewWindows";

class ComSelection final : public word::Selection {
 public:
  explicit ComSelection(Object selection) : selection_(std::move(selection)) {}
  std::int32_t Start() override { return selection_.get(L"Start").toInteger(); }
  word::WdStoryType StoryType() override {
    return static_cast<word::WdStoryType>(selection_.get(L"StoryType").toInteger());
  }
  std::u16string Text() override { return withCellMarks(selection_.get(L"Text").toText()); }
  void SetRange(std::int32_t start, std::int32_t end) override {
    selection_.call(L"SetRange", Arguments().integer(start).integer(end));
  }

 protected:
  std::int32_t countOf(word::WdUnits unit) override { return countOfUnits(selection_, unit); }

 private:
  Object selection_;
};

class ComDocuments final : public word::Documents {
 public:
  ComDocuments(Object documents, Object application)
      : documents_(std::move(documents)), application_(std::move(application)) {}
  std::int32_t Count() override { return documents_.get(L"Count").toInteger(); }
  std::shared_ptr<word::Document> Item(std::int32_t index) override {
    return std::make_shared<ComDocument>(
        documents_.callObject(L"Item", L"Document", Arguments().integer(index)));
  }
  std::shared_ptr<word::Document> Open(const std::u16string& fileName) override {
    const std::int32_t before = Count();
    const ComMacrosOff macrosOff(application_);
    const Object document = documents_.callObject(L"Open", L"Document", opening(fileName));
    // Fields, links and conversions change a document while it is opened, and nobody means that. A document
    // that was open before may have changes of the user's.
    if (Count() > before) document.put(L"Saved", Arguments().boolean(true));
    return std::make_shared<ComDocument>(document);
  }

 private:
  /// After the name: ConfirmConversions, ReadOnly, AddToRecentFiles and twelve more.
  Arguments opening(const std::u16string& fileName) const {
    constexpr int kAfterFileName = 15;
    if (!documents_.session().manner.careful) return Arguments().text(fileName).missing(kAfterFileName);
    return Arguments().text(fileName).boolean(false).missing().boolean(false);
  }

  Object documents_;
  Object application_;
};

class ComOptions final : public word::Options {
 public:
  explicit ComOptions(Object options) : options_(std::move(options)) {}
  std::u16string DefaultFilePath(word::WdDefaultFilePath kind) override {
    return options_.get(L"DefaultFilePath", Arguments().integer(kind)).toText();
  }

 private:
  Object options_;
};

class ComApplication final : public word::Application {
 public:
  explicit ComApplication(Object application) : application_(std::move(application)) {}

  std::shared_ptr<word::Document> ActiveDocument() override {
    return std::make_shared<ComDocument>(application_.getObject(L"ActiveDocument", L"Document"));
  }
  std::shared_ptr<word::Selection> Selection() override {
    return std::make_shared<ComSelection>(application_.getObject(L"Selection", L"Selection"));
  }
  std::shared_ptr<word::Documents> Documents() override {
    return std::make_shared<ComDocuments>(application_.getObject(L"Documents", L"Documents"), application_);
  }
  std::shared_ptr<word::Options> Options() override {
    return std::make_shared<ComOptions>(application_.getObject(L"Options", L"Options"));
  }
  std::u16string PathSeparator() override { return application_.get(L"PathSeparator").toText(); }
  word::Obstacle obstacle() override;
  bool mayKeepDeletedText() override { return true; }
  std::unique_ptr<word::Batch> beginUndoStep() override {
    return std::make_unique<ComUndoStep>(application_);
  }
  std::unique_ptr<word::Batch> beginEdits(bool seen) override {
    return std::make_unique<ComEdits>(application_, seen, editsHidden_);
  }
  std::unique_ptr<word::Batch> showEdits() override {
    if (!*editsHidden_) return nullptr;
    return std::make_unique<ComSwitched>(application_, L"ScreenUpdating", true);
  }
  void letGo() {
    try {
      if (*editsHidden_) application_.put(L"ScreenUpdating", Arguments().boolean(true));
    } catch (const errors::Fault&) {  // it draws no more
    }
    application_.session().letGo();
  }

 private:
  Object application_;
  /// Whether Word does not draw because of edits.
  std::shared_ptr<bool> editsHidden_ = std::make_shared<bool>(false);
};

/// Whether it is there, which it is not in every Word and not always.
template <class Work>
bool isSo(Work&& asks) {
  try {
    return std::forward<Work>(asks)();
  } catch (const errors::Fault& fault) {
    if (fault.number == kServerGone) throw;
    return false;
  }
}

word::Obstacle ComApplication::obstacle() {
  const bool hasDocument = isSo([&] { return Documents()->Count() > 0; });
  // A window in Protected View shows no document that Word counts among the open ones.
  if (!hasDocument &&
      isSo([&] { return application_.getObject(kProtected, kProtected).get(L"Count").toInteger() > 0; }))
    return word::Obstacle::protectedView;
  const auto isReading = [&] {
    const Object window = application_.getObject(L"ActiveWindow", L"Window");
    return window.getObject(L"View", L"View").get(L"ReadingLayout").toBoolean();
  };
  return hasDocument && isSo(isReading) ? word::Obstacle::readingView : word::Obstacle::none;
}

void introduce(const Object& application) {
  WordLog& log = application.session().log;
  if (!log.isOn()) return;
  const auto told = [&](const wchar_t* property) -> std::u16string {
    try {
      return application.get(property).toText();
    } catch (const errors::Fault&) {
      return u"?";
    }
  };
  log.line(u"Word " + told(L"Version") + u", build " + told(L"Build") +
           (sizeof(void*) == 8 ? u", 64 bits" : u", 32 bits") +
           (application.session().manner.careful ? u", careful" : u""));
  try {
    const std::u16string templates =
        application.getObject(L"Options", L"Options")
            .get(L"DefaultFilePath", Arguments().integer(word::wdUserTemplatesPath))
            .toText();
    log.beginIn(templates + told(L"PathSeparator") + u"PLUVO");
  } catch (const errors::Fault&) {
    return;  // its contents would have no place
  }
}

}  // namespace

std::shared_ptr<word::Application> applicationOf(IDispatch* object, const Manner& manner) {
  Object application(object, L"Application", std::make_shared<Session>(manner));
  introduce(application);
  return std::make_shared<ComApplication>(std::move(application));
}

void letGoOf(word::Application& word) {
  if (auto* com = dynamic_cast<ComApplication*>(&word)) com->letGo();
}

}  // namespace pluvo::word_com
