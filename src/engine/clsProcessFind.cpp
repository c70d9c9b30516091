#include "engine/clsProcessFind.h"

#include "counts.h"
#include "errors/numbers.h"
#include "locator.h"
#include "operations.h"
#include "pass.h"
#include "prepared_search.h"
#include "summary.h"
#include "text_behind.h"

#include <algorithm>
#include <utility>

namespace pluvo::engine {

/// What InitializeFind prepares and a pass works on.
struct clsProcessFind::State {
  PreparedSearch search;
  WorkingRanges ranges;
  Counts counts;
  PassObserver nobody;
  /// Of a pass that is made block by block, from its first change on.
  std::unique_ptr<word::Batch> undoStep;
};

clsProcessFind::clsProcessFind(Surroundings surroundings)
    : surroundings_(std::move(surroundings)), state_(std::make_unique<State>()) {}

clsProcessFind::~clsProcessFind() = default;

void clsProcessFind::UnitsApartType(std::int32_t code) { request_.unitsApartType = errors::narrow(code); }
void clsProcessFind::Operation(std::int32_t code) { request_.operation = errors::narrow(code); }
void clsProcessFind::BeforeOrAfter(std::int32_t code) { request_.beforeOrAfter = errors::narrow(code); }
void clsProcessFind::OperationLocation(std::int32_t code) {
  request_.operationLocation = errors::narrow(code);
}

word::Application& clsProcessFind::application() {
  if (!application_) application_ = surroundings_.application();
  if (!application_) throw errors::objectNotSet();
  return *application_;
}

SearchedText clsProcessFind::searched(std::u16string_view text) const {
  const SearchText made(normalizedText(text, request_.liftLimits), request_.liftLimits);
  if (made.whole) return {*made.whole, *made.whole};
  return {made.full, made.search};
}

bool clsProcessFind::keepsExtraSpace() const { return !state_->search.extraSpace.empty(); }

PassObserver& clsProcessFind::observing() { return observer_ != nullptr ? *observer_ : state_->nobody; }

void clsProcessFind::InitializeFind() {
  constexpr std::u16string_view kTag = u"cpf:27e";
  endPass();
  errors::guarded(context(), kTag, [&] {
    state_->ranges = {};  // a pass that cannot be prepared must not go on in the document of the one before
    state_->counts.reset(request_.liftLimits);
    state_->search.take(context(), request_);
    context().locationTag = kTag;  // the texts are normalized under a tag of their own
    state_->search.takeDistance(request_);
    const auto document = application().ActiveDocument();
    const auto window = required(document).ActiveWindow();
    const auto view = required(window).View();
    required(view).ShowFieldCodes(request_.showFieldCodes);
    state_->ranges.place(application(), request_.startAtTop);
    observing().begins();
  });
}

bool clsProcessFind::FindNextItem() {
  // Ends with the pass, unless there is another block.
  std::unique_ptr<word::Batch> undoStep = std::move(state_->undoStep);
  const bool found = errors::guarded(context(), u"cpf:27a", [&] {
    if (!state_->ranges.placed()) return false;
    moveSelectionToTop(application());
    Locator locator(context(), application(), state_->search, state_->ranges);
    if (!locator.next(observing())) return false;
    if (!request_.confirmEach) return false;
    required(state_->ranges.block).Select();
    return true;
  });
  if (found) state_->undoStep = std::move(undoStep);
  return found;
}

void clsProcessFind::MakeChanges() {
  errors::guarded(context(), u"cpf:27c", [&] {
    if (!state_->ranges.placed()) return;
    const Operations operations(context(), state_->search, state_->ranges);
    if (!state_->undoStep) state_->undoStep = application().beginUndoStep();
    const auto edits = application().beginEdits(true);
    const TextBehind behind(application(), state_->search, required(state_->ranges.begin));
    const std::optional<errors::Fault> refusal = operations.perform();
    state_->counts.countOperated();
    observing().operated(blockOf(state_->search, state_->ranges, operations), refusal ? &*refusal : nullptr);
    moveSearchPoint(behind.start());
  });
}

void clsProcessFind::SkipChanges() {
  errors::guarded(context(), u"cpf:27d", [&] {
    if (!state_->ranges.placed()) return;
    const Operations operations(context(), state_->search, state_->ranges);
    state_->counts.countSkipped();
    observing().skipped(blockOf(state_->search, state_->ranges, operations));
    moveSearchPoint(0);
  });
}

void clsProcessFind::endPass() { state_->undoStep.reset(); }

/// The next search starts behind the block's beginning as it stands now, or at this position where that lies
/// farther behind.
void clsProcessFind::moveSearchPoint(std::int32_t atLeast) {
  word::Range& begin = required(state_->ranges.begin);
  const std::int32_t end = std::max(atLeast, begin.End());
  begin.Start(request_.liftLimits ? end : errors::narrow(end));
}

void clsProcessFind::ProcessAllBlocks() {
  errors::guarded(context(), u"cpf:27", [&] {
    const auto undoStep = application().beginUndoStep();
    const auto edits = request_.confirmEach ? nullptr : application().beginEdits(false);
    Pass pass(context(), application(), boxes(), state_->search, state_->ranges, state_->counts);
    pass.run(request_.confirmEach, observing());
  });
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
  return required(document).Name();
}

void clsProcessFind::ChangesSummary() {
  errors::guarded(context(), u"cpf:27f", [&] {
    context().runSummary += summaryLine(
        state_->counts, multiFileRun_ ? std::optional<std::u16string>(documentName()) : std::nullopt);
    if (!request_.quiet) showSummary(state_->counts, boxes(), forms(), cancelOperation_);
  });
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

std::u16string clsProcessFind::BrowseForFolder() {
  return errors::guarded(context(), u"cpf:40",
                         [&] { return requiredStepper().BrowseForFolder(*this, browseStart_); });
}

}  // namespace pluvo::engine
