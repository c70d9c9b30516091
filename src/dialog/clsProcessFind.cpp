#include "dialog/clsProcessFind.h"

#include "base/at_end.h"
#include "errors/numbers.h"
#include "summary.h"

#include <optional>
#include <utility>

namespace pluvo::dialog {

namespace {

template <class Code>
Code codeOf(std::int32_t value) {
  return static_cast<Code>(errors::narrow(value));
}

}  // namespace

/// Passes on what happens to blocks, asks the user in a box, and reports faults.
class clsProcessFind::Client final : public engine::Observer {
 public:
  explicit Client(clsProcessFind& owner) : owner_(owner) {}

  void begins() override { observing().begins(); }
  void enters(std::int32_t story) override { observing().enters(story); }
  Next searching() override { return observing().searching(); }
  void tooFar() override { observing().tooFar(); }
  Next found(const engine::Block& block) override { return observing().found(block); }
  Next operated(const engine::Block& block, const errors::Fault* refusal) override {
    return observing().operated(block, refusal);
  }
  Next skipped(const engine::Block& block) override { return observing().skipped(block); }

  Decision decide(const engine::Block&) override {
    switch (owner_.boxes().show(u"Perform Operation on Selected Text?", forms::Buttons::yesNoCancel,
                                u"Confirm Operation")) {
      case forms::BoxAnswer::yes:
        return Decision::operate;
      case forms::BoxAnswer::no:
        return Decision::skip;
      default:
        return Decision::stop;
    }
  }
  void failed(const errors::Fault& fault, errors::Tag tag) override {
    owner_.context().enter(tag);
    owner_.context().report(fault);
  }

 private:
  engine::PassObserver& observing() { return owner_.observer_ != nullptr ? *owner_.observer_ : nobody_; }

  clsProcessFind& owner_;
  engine::PassObserver nobody_;
};

clsProcessFind::clsProcessFind(Services services)
    : services_(std::move(services)), client_(std::make_unique<Client>(*this)) {}

clsProcessFind::~clsProcessFind() = default;

void clsProcessFind::UnitsApartType(std::int32_t code) { request_.unit = codeOf<engine::UnitCode>(code); }
void clsProcessFind::Operation(std::int32_t code) {
  request_.operation = codeOf<engine::OperationCode>(code);
}
void clsProcessFind::BeforeOrAfter(std::int32_t code) { request_.place = codeOf<engine::PlaceCode>(code); }
void clsProcessFind::OperationLocation(std::int32_t code) {
  request_.location = codeOf<engine::LocationCode>(code);
}

word::Application& clsProcessFind::application() {
  if (!application_) application_ = services_.application();
  if (!application_) throw errors::objectNotSet();
  return *application_;
}

/// Has the pass make a step, and stores the tag of the procedure it entered last.
template <class Step>
auto clsProcessFind::step(errors::Tag tag, Step step) {
  context().enter(tag);
  if (!pass_) return decltype(step(*pass_))();
  const base::AtEnd store([this] { context().enter(pass_->tag()); });
  return step(*pass_);
}

engine::Request clsProcessFind::preparedRequest() {
  keepsExtraSpace_ = keepsExtraSpace_ || request_.extraSpace;
  for (std::u16string* text : {&request_.begin, &request_.end, &request_.inside})
    *text = searched(*text).full;
  request_.distance = unitsApart_ == kSame ? std::int16_t{0} : errors::toInteger(unitsApart_);
  engine::Request request = request_;
  request.extraSpace = keepsExtraSpace_;
  return request;
}

void clsProcessFind::InitializeFind() {
  pass_.reset();
  engine::Request request;
  std::unique_ptr<engine::Engine> made;
  errors::guarded(context(), u"cpf:27e", [&] {
    request = preparedRequest();
    made = std::make_unique<engine::Engine>(application(), *client_);
  });
  pass_ = std::move(made);
  step(u"cpf:27e", [&](engine::Engine& pass) { pass.InitializeFind(request); });
}

bool clsProcessFind::FindNextItem() {
  const bool confirms = request_.confirmEach;
  const bool found = step(u"cpf:27a", [&](engine::Engine& pass) { return pass.FindNextItem(confirms); });
  if (found && confirms) return true;
  endPass();
  return false;
}

void clsProcessFind::MakeChanges() {
  step(u"cpf:27c", [](engine::Engine& pass) { pass.MakeChanges(); });
}

void clsProcessFind::SkipChanges() {
  step(u"cpf:27d", [](engine::Engine& pass) { pass.SkipChanges(); });
}

void clsProcessFind::endPass() {
  if (pass_) pass_->endPass();
}

void clsProcessFind::ProcessAllBlocks() {
  if (pass_) {
    step(u"cpf:27", [](engine::Engine& pass) { pass.ProcessAllBlocks(); });
  } else {
    // Without a word processor the loop fails as the preparation did.
    errors::guarded(context(), u"cpf:27", [this] { application(); });
  }
}

void clsProcessFind::GoGetEmFARBOT() {
  errors::guarded(context(), u"cpf:28", [&] {
    InitializeFind();
    ProcessAllBlocks();
    ChangesSummary();
  });
}

std::u16string clsProcessFind::documentName() {
  std::shared_ptr<word::Document> document = stepper_ ? stepper_->currentDocument() : nullptr;
  if (!document) document = application().ActiveDocument();
  if (!document) throw errors::objectNotSet();
  return document->Name();
}

void clsProcessFind::ChangesSummary() {
  errors::guarded(context(), u"cpf:27f", [&] {
    const engine::PassResult done = result();
    context().runSummary +=
        summaryLine(done, multiFileRun_ ? std::optional<std::u16string>(documentName()) : std::nullopt);
    if (quiet_) return;
    bool cancel = cancelOperation_;
    labour().show([&] { showSummary(done, boxes(), forms(), cancel); });
    cancelOperation_ = cancel;
  });
}

void clsProcessFind::summarize(const engine::PassResult& done, const std::u16string& documentName) {
  context().runSummary += summaryLine(done, documentName);
}

FileStepper& clsProcessFind::requiredStepper() const {
  if (!stepper_) throw errors::objectNotSet();
  return *stepper_;
}

std::vector<std::u16string> clsProcessFind::GetFiles(bool subFolders, std::int16_t depth) {
  return errors::guarded(context(), u"cpf:42",
                         [&] { return requiredStepper().GetFiles(*this, subFolders, depth); });
}

void clsProcessFind::MultiPLUVO(const std::vector<std::u16string>& files) {
  errors::guarded(context(), u"cpf:45", [&] { requiredStepper().MultiPLUVO(*this, files); });
}

bool clsProcessFind::MultiPLUVO_OpenNextFile(const std::vector<std::u16string>& files, std::int32_t& index) {
  return errors::guarded(context(), u"cpf:45b",
                         [&] { return requiredStepper().MultiPLUVO_OpenNextFile(*this, files, index); });
}

void clsProcessFind::MultiPLUVO_CloseFile() {
  errors::guarded(context(), u"cpf:45a", [&] { requiredStepper().MultiPLUVO_CloseFile(*this); });
}

void clsProcessFind::abandonFiles() {
  errors::guarded(context(), u"cpf:45a", [&] { requiredStepper().abandon(*this); });
}

std::u16string clsProcessFind::BrowseForFolder() {
  return errors::guarded(context(), u"cpf:40",
                         [&] { return requiredStepper().BrowseForFolder(*this, browseStart_); });
}

}  // namespace pluvo::dialog
