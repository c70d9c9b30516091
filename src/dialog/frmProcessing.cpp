#include "dialog/frmProcessing.h"

#include "base/text.h"
#include "errors/context.h"

#include <memory>
#include <utility>

namespace pluvo::dialog {

namespace {

template <std::size_t Count>
std::u16string wordFor(const char16_t* const (&words)[Count], std::int16_t code) {
  return code >= 0 && static_cast<std::size_t>(code) < Count ? words[code] : std::u16string();
}

}  // namespace

std::u16string operationInWords(const engine::Request& request) {
  constexpr const char16_t* kOperations[] = {u"None", u"Insert", u"Replace", u"Delete", u"Highlight"};
  constexpr const char16_t* kLocations[] = {u"Selection", u"Beginning", u"Ending", u"Inside Text"};
  std::u16string words = wordFor(kOperations, request.operation);
  if (request.operation == engine::kNone) return words;
  if (request.operation == engine::kInsert) words += request.place == engine::kAfter ? u" After" : u" Before";
  words += u' ' + wordFor(kLocations, request.location);
  if (request.operation != engine::kInsert && request.operation != engine::kReplace) return words;
  constexpr std::size_t kMostShown = 60;
  std::u16string text = request.text.substr(0, kMostShown);
  if (text.size() < request.text.size()) text += u'\u2026';
  for (char16_t& letter : text) {
    if (letter < u' ') letter = u' ';
  }
  return words + u": \"" + text + u'"';
}

frmProcessing::frmProcessing(clsProcessFind& engine)
    : Form(engine.forms(), kName, u"Confirm Operation"), engine_(engine) {
  cmdPerform.Default(true);
  add(lblOperation);
  add(lblFile);
  add(cmdPerform);
  add(cmdSkip);
  cmdPerform.Click.handledBy([this] { cmdPerform_Click(); });
  cmdSkip.Click.handledBy([this] { cmdSkip_Click(); });
  Closed.handledBy([this] { endRun(); });
}

void frmProcessing::endRun() {
  engine_.endPass();
  if (!multi_) return Finished.raise();
  engine_.labour().run([this] { engine_.abandonFiles(); },
                       [this](const std::exception_ptr& thrown) {
                         Finished.raise();
                         if (thrown) std::rethrow_exception(thrown);
                       });
}

void frmProcessing::SingleProcess(Then then) {
  then_ = std::move(then);
  errors::guarded(engine_.context(), u"fproc:02", [&] {
    multi_ = false;
    proceed([this] { engine_.InitializeFind(); });
  });
}

void frmProcessing::MultiProcess(const std::vector<std::u16string>& files, Then then) {
  then_ = std::move(then);
  bool begins = false;
  errors::guarded(engine_.context(), u"fproc:01", [&] {
    multi_ = true;
    Visible(false);
    files_ = files;
    index_ = 0;
    engine_.CancelOperation(false);
    begins = true;
  });
  if (!begins) return std::exchange(then_, [] {})();
  const auto found = std::make_shared<bool>(false);
  const auto opened = std::make_shared<bool>(false);
  engine_.labour().run(
      [this, found, opened] {
        *opened = startNextFile();
        *found = *opened && findNext();
      },
      [this, found, opened](const std::exception_ptr& thrown) {
        if (*opened || thrown) return proceeded(thrown, *found);
        std::exchange(then_, [] {})();
      });
}

void frmProcessing::cmdPerform_Click() {
  errors::guarded(engine_.context(), u"fproc:04", [&] { proceed([this] { engine_.MakeChanges(); }); });
}

void frmProcessing::cmdSkip_Click() {
  errors::guarded(engine_.context(), u"fproc:05", [&] { proceed([this] { engine_.SkipChanges(); }); });
}

void frmProcessing::proceed(std::function<void()> step) {
  Visible(false);
  const auto found = std::make_shared<bool>(false);
  engine_.labour().run(
      [this, found, step = std::move(step)] {
        step();
        *found = findNext();
      },
      [this, found](const std::exception_ptr& thrown) { proceeded(thrown, *found); });
}

/// In the thread of work. Whether a block awaits a decision.
bool frmProcessing::findNext() { return engine_.FindNextItem() || findInLaterFiles(); }

bool frmProcessing::findInLaterFiles() {
  return errors::guarded(engine_.context(), u"fproc:03", [&] {
    engine_.ChangesSummary();
    while (multi_) {
      engine_.MultiPLUVO_CloseFile();
      if (engine_.CancelOperation()) break;
      ++index_;
      if (!startNextFile()) break;
      if (engine_.FindNextItem()) return true;
      engine_.context().locationTag = u"fproc:03";
      engine_.ChangesSummary();
    }
    return false;
  });
}

void frmProcessing::proceeded(const std::exception_ptr& thrown, bool found) {
  errors::guardedOn(engine_.context(), [&] {
    if (thrown) std::rethrow_exception(thrown);
    if (found) {
      awaitDecision();
    } else {
      Hide();
    }
  });
  if (!found && !Visible()) Finished.raise();
  std::exchange(then_, [] {})();
}

void frmProcessing::awaitDecision() {
  try {
    tellWhatAwaits();
    Visible(true);
  } catch (...) {
    // Without a window nobody can decide about the block, nor close the form.
    endRun();
    throw;
  }
}

void frmProcessing::tellWhatAwaits() {
  lblOperation.Caption(operationInWords(engine_.request()));
  const auto document = engine_.application().ActiveDocument();
  if (document == nullptr) throw errors::objectNotSet();
  std::u16string file = document->Name();
  if (multi_)
    file += u" (" + base::decimal(std::int64_t{index_} + 1) + u" of " +
            base::decimal(static_cast<std::int64_t>(files_.size())) + u")";
  lblFile.Caption(file);
}

bool frmProcessing::startNextFile() {
  if (!engine_.MultiPLUVO_OpenNextFile(files_, index_)) return false;
  engine_.InitializeFind();
  return true;
}

}  // namespace pluvo::dialog
