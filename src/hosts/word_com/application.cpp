#include "word_com/application.h"

#include "batch.h"
#include "dispatch.h"
#include "document.h"
#include "text.h"
#include "units.h"

#include <utility>

namespace pluvo::word_com {

namespace {

class ComSelection final : public word::Selection {
 public:
  explicit ComSelection(Object selection) : selection_(std::move(selection)) {}
  std::int32_t Start() override { return selection_.get(L"Start").toInteger(); }
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
  explicit ComDocuments(Object documents) : documents_(std::move(documents)) {}
  std::int32_t Count() override { return documents_.get(L"Count").toInteger(); }
  std::shared_ptr<word::Document> Item(std::int32_t index) override {
    return std::make_shared<ComDocument>(
        documents_.callObject(L"Item", L"Document", Arguments().integer(index)));
  }
  std::shared_ptr<word::Document> Open(const std::u16string& fileName) override {
    constexpr int kBehindFileName = 15;
    return std::make_shared<ComDocument>(
        documents_.callObject(L"Open", L"Document", Arguments().text(fileName).missing(kBehindFileName)));
  }

 private:
  Object documents_;
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
    return std::make_shared<ComDocuments>(application_.getObject(L"Documents", L"Documents"));
  }
  std::shared_ptr<word::Options> Options() override {
    return std::make_shared<ComOptions>(application_.getObject(L"Options", L"Options"));
  }
  std::u16string PathSeparator() override { return application_.get(L"PathSeparator").toText(); }
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

 private:
  Object application_;
  /// Whether Word does not draw because of edits.
  std::shared_ptr<bool> editsHidden_ = std::make_shared<bool>(false);
};

}  // namespace

std::shared_ptr<word::Application> applicationOf(IDispatch* object) {
  return std::make_shared<ComApplication>(Object(object, L"Application", std::make_shared<MemberIds>()));
}

}  // namespace pluvo::word_com
