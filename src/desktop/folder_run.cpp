#include "folder_run.h"

#include "base/names.h"
#include "base/utf.h"
#include "dialog/frmProcessing.h"
#include "errors/context.h"
#include "multifile/questions.h"
#include "runs/kept.h"
#include "runs/written_request.h"

#include <algorithm>
#include <utility>

namespace pluvo::desktop {

namespace {

using Reply = runs::Answer::Reply;

std::u16string nameIn(const std::string& path) { return base::nameText(path.substr(path.rfind('/') + 1)); }

/// The message on a problem, with the advice of this program.
std::string sentenceOf(const runs::Failure& failure) {
  if (failure.happened.empty()) return failure.message;
  return failure.problem == errors::Problem::encoding
             ? failure.happened + " Open it by itself, and choose its encoding there."
             : failure.happened;
}

std::u16string lineOf(const std::string& path, runs::Failure failure) {
  failure.message = sentenceOf(failure);
  return base::utf16(runs::failureLine(path, failure));
}

/// The run's name in the journal, and in its report.
std::string commandOf(const engine::Request& request) {
  std::u16string words =
      u"Execute: " + dialog::operationInWords(request) + u"; begins with \"" + request.begin;
  if (!request.end.empty()) words += u"\", ends with \"" + request.end;
  if (!request.inside.empty()) words += u"\", inside \"" + request.inside;
  words += u'"';
  if (request.stories != word::kMainTextAlone) words += u"; in " + base::utf16(runs::placesIn(request));
  return base::utf8(words);
}

}  // namespace

FolderRun::FolderRun(std::shared_ptr<dialog::FileStepper> driver, Place place)
    : driver_(std::move(driver)), place_(std::move(place)), passwords_(place_.passwords) {}

FolderRun::~FolderRun() = default;

/// The user may save it from its tab, too.
std::shared_ptr<store::StoredFile> FolderRun::fileOf(const std::shared_ptr<store::StoredDocument>& stored) {
  return std::make_shared<store::StoredFile>(
      stored,
      [this](const std::string& path) {
        std::optional<std::string> name;
        place_.work.inWindow([&] { name = place_.freeName(path); });
        return name;
      },
      [](const auto& work) { work(); });
}

std::vector<std::u16string> FolderRun::GetFiles(dialog::clsProcessFind& engine, bool subFolders,
                                                std::int16_t depth) {
  return driver_->GetFiles(engine, subFolders, depth);
}

std::u16string FolderRun::BrowseForFolder(dialog::clsProcessFind& engine, const std::u16string& start) {
  return driver_->BrowseForFolder(engine, start);
}

std::shared_ptr<word::Document> FolderRun::currentDocument() {
  return current_ ? current_->document() : nullptr;
}

// A run as the dialog steps through it.

void FolderRun::MultiPLUVO(dialog::clsProcessFind& engine, const std::vector<std::u16string>& files) {
  engine.CancelOperation(false);
  if (engine.QuiteModeSetting() && !engine.ConfirmEachOperationsetting()) {
    passesItself_ = true;
    begin(engine, files);
    if (!failures_.empty())
      engine.context().runSummary += u"\r\n\r\nLeft as they were:" + std::exchange(failures_, {});
    return;
  }
  std::int32_t index = 0;
  while (MultiPLUVO_OpenNextFile(engine, files, index)) {
    engine.GoGetEmFARBOT();
    MultiPLUVO_CloseFile(engine);
    ++index;
  }
}

bool FolderRun::MultiPLUVO_OpenNextFile(dialog::clsProcessFind& engine,
                                        const std::vector<std::u16string>& files, std::int32_t& index) {
  if (index == 0) {
    passesItself_ = false;
    begin(engine, files);
  }
  if (!current_) return false;
  const std::u16string path = base::nameText(current_->path());
  const auto from = files.begin() + std::min<std::ptrdiff_t>(index, std::ssize(files));
  index = static_cast<std::int32_t>(std::find(from, files.end(), path) - files.begin());
  place_.watch.run(watcher_);
  place_.work.inWindow([&] {
    fileBegins(path, number_, documents_);
    place_.application->add(current_->document(), fileOf(current_));
  });
  isShown_ = true;
  return true;
}

void FolderRun::MultiPLUVO_CloseFile(dialog::clsProcessFind& engine) {
  if (!isShown_) throw errors::objectNotSet();
  if (engine.CancelOperation() && cancels_ == 0) cancel();
  result_ = engine.result();
  place_.watch.run(nullptr);
  isShown_ = false;
  place_.work.inWindow([this] { place_.application->remove(current_->document()); });
  thread_.goOn();
  advance();
}

void FolderRun::abandon(dialog::clsProcessFind& engine) {
  if (!isShown_) return;
  cancels_ = 2;
  result_ = engine.result();
  place_.watch.run(nullptr);
  isShown_ = false;
  const std::string path = current_->path();
  current_.reset();
  place_.work.inWindow([&] { place_.leftOpen(path); });
  thread_.goOn();
  advance();
}

// The run itself.

void FolderRun::begin(dialog::clsProcessFind& engine, const std::vector<std::u16string>& files) {
  engine_ = &engine;
  plan_ = {};
  plan_.requests = {engine.preparedRequest()};
  plan_.passwords = passwords_.begin();
  plan_.requests.front().confirmEach = false;  // the dialog's own pass sees to that
  plan_.selection.paths.reserve(files.size());
  for (const std::u16string& file : files) plan_.selection.paths.push_back(base::nameBytes(file));
  // Where each refusal is shown, its user decides then whether the run goes on.
  plan_.keepGoing = !passesItself_;
  plan_.jobs = static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1U, 16U));
  plan_.command = commandOf(plan_.requests.front());
  plan_.reportsEncrypted = false;  // it was not asked for
  noReport_.clear();
  try {
    plan_.report = runs::placeOfLastReport(files::machineFileSystem());
  } catch (const errors::DocumentError& none) {
    noReport_ = none.what();
  }
  cancels_ = place_.work.cancels();
  documents_ = files.size();
  done_ = 0;
  declined_.clear();
  failures_.clear();
  start();
}

void FolderRun::start() {
  ended_ = {};
  thread_.begin([this] { ended_ = runs::run(plan_, *this, files::machineFileSystem()); });
  advance();
}

/// Lets the run go on to where a document awaits its pass, or to its end.
void FolderRun::advance() {
  std::string trouble;
  bool isBegun = true;
  try {
    if (thread_.wait()) {
      current_ = std::move(awaited_);
      return;
    }
    if (ended_.thrown) std::rethrow_exception(ended_.thrown);
  } catch (const runs::CannotBegin& refused) {
    if (goesOnWithout(refused)) return start();
    trouble = refused.happened().empty() ? refused.what() : refused.happened();
    isBegun = false;
  } catch (...) {
    trouble = base::utf8(errors::faultInFlight().description);
  }
  if (!ended_.reportProblem && !noReport_.empty()) ended_.reportProblem = noReport_;
  place_.work.inWindow([&] { place_.ended({ended_, trouble, isBegun, plan_.selection.paths}); });
}

/// Whether the run can do without what keeps it from beginning.
bool FolderRun::goesOnWithout(const runs::CannotBegin& refused) {
  using Reason = runs::CannotBegin::Reason;
  const std::string why = refused.happened().empty() ? refused.what() : refused.happened();
  bool goesOn = false;
  switch (refused.reason()) {
    case Reason::report:
    case Reason::reportForeign:
    case Reason::reportKind:
      noReport_ = why;
      plan_.report.reset();
      return true;
    case Reason::journal:
    case Reason::stateFolder:
      plan_.journal = false;
      place_.work.inWindow([&] { goesOn = place_.goesOnWithoutOriginals(why); });
      return goesOn;
    case Reason::outputFolder:
    case Reason::rest:
      break;
  }
  return false;
}

void FolderRun::tell(const runs::Outcome& outcome) {
  ++done_;
  const auto was = std::exchange(current_, nullptr);
  passwords_.told(outcome);
  if (outcome.saved && outcome.savedAs.empty()) place_.saved(outcome.path);
  place_.told(outcome);
  if (passesItself_) fileBegins(base::nameText(outcome.path), done_, documents_);
  if (outcome.failure) {
    tellFailure(outcome, was);
  } else if (passesItself_ && !outcome.cutShort) {
    const bool finds = plan_.findsOnly();
    engine_->summarize({.operated = static_cast<std::int32_t>(finds ? outcome.found : outcome.operated)},
                       nameIn(outcome.path));
  }
}

/// A document that was open for a pass keeps its changes in a tab.
void FolderRun::tellFailure(const runs::Outcome& outcome, const std::shared_ptr<store::StoredDocument>& was) {
  const bool isDeclined = declined_.contains(outcome.path);
  const std::u16string line = lineOf(outcome.path, *outcome.failure);
  if (passesItself_) {
    if (!isDeclined) failures_ += u"\r\n   " + line;
    return;
  }
  const auto report = [&](errors::Tag tag, std::int32_t number) {
    engine_->context().enter(tag);
    engine_->context().report(errors::Fault(number, line).with(outcome.failure->problem));
  };
  const bool staysOpen = was && was->document()->stories().changed();
  if (!was && !isDeclined) report(u"cpf:44", store::openingFault(outcome.failure->problem));
  if (!staysOpen) return;
  if (!isDeclined) {
    report(u"cpf:43", store::savingFault(outcome.failure->problem));
    multifile::tellOfDifficultiesClosing(engine_->boxes(), base::nameText(outcome.path));
  } else if (!staysOpen_) {
    return;
  }
  place_.application->add(was->document(), fileOf(was));
  place_.leftOpen(outcome.path);
}

runs::Answer FolderRun::answered(const runs::Asked& asked) {
  fileBegins(base::nameText(asked.path), asked.number, documents_);
  runs::Answer answer;
  switch (asked.question) {
    case runs::Question::temporary:
      answer.reply = multifile::skipTemporaryFile(engine_->boxes()) ? Reply::no : Reply::yes;
      break;
    case runs::Question::readOnly:
      if (!declined_.contains(asked.path) && multifile::goOnReadOnly(engine_->boxes()))
        answer.reply = Reply::yes;
      break;
    case runs::Question::readIt:
      if (multifile::openToRead(engine_->boxes(), nameIn(asked.path))) answer.reply = Reply::yes;
      return answer;
    case runs::Question::changePassword:
      return passwordFor(asked);
    case runs::Question::openPassword:
    case runs::Question::password:
      answer = passwordFor(asked);
      break;
    case runs::Question::saveAs:
      answer = placeFor(asked);
      break;
    case runs::Question::perform:
      break;
  }
  if (answer.reply == Reply::no) declined_.insert(asked.path);
  return answer;
}

runs::Answer FolderRun::passwordFor(const runs::Asked& asked) {
  const bool lifts = asked.question == runs::Question::password;
  const bool wasWrong = passwords_.wasWrong(asked);
  if (auto password = passwords_.next(asked)) return {Reply::yes, *std::move(password)};
  forms::MessageBoxes& boxes = engine_->boxes();
  if (wasWrong && (lifts ? multifile::skipWithWrongPassword(boxes) : !multifile::openAgain(boxes))) {
    declined_.insert(asked.path);
    return {};
  }
  if (!prompt_) prompt_ = std::make_unique<dialog::frmPassword>(engine_->context(), engine_->forms());
  std::u16string typed;
  const std::u16string name = nameIn(asked.path);
  const bool isGiven = lifts ? multifile::passwordForForm(*prompt_, boxes, typed)
                       : asked.question == runs::Question::openPassword
                           ? multifile::passwordToOpen(*prompt_, name, typed)
                           : multifile::passwordToModify(*prompt_, name, typed);
  if (!isGiven) return {};
  base::SecretText password(std::move(typed));
  passwords_.typed(asked, password);
  return {Reply::yes, std::move(password)};
}

/// Of several documents that are worked on at once none can stay open: the user is asked again.
runs::Answer FolderRun::placeFor(const runs::Asked& asked) {
  staysOpen_ = false;
  for (;;) {
    if (auto path = place_.freeName(asked.path)) return {Reply::yes, {}, std::move(*path)};
    const bool isStepwise = engine_->ConfirmEachOperationsetting();
    staysOpen_ = isStepwise || !multifile::cancelSaveAs(engine_->boxes());
    if (!passesItself_ || !staysOpen_) return {};
  }
}

// The face of the run, in its threads.

void FolderRun::begins(std::size_t documents) {
  place_.work.inWindow([this, documents] { documents_ = documents; });
}

bool FolderRun::answers(runs::Question question) const { return question != runs::Question::perform; }

runs::Answer FolderRun::answer(const runs::Asked& asked) {
  runs::Answer answer;
  place_.work.inWindow([&] { answer = answered(asked); });
  return answer;
}

std::optional<engine::PassResult> FolderRun::pass(const runs::OpenForPass& open) {
  if (passesItself_) return std::nullopt;
  awaited_ = open.stored;
  watcher_ = &open.watcher;
  number_ = open.number;
  thread_.pause();
  return result_;
}

void FolderRun::document(const runs::Outcome& outcome) {
  // Of a run that asks nobody the jobs go on meanwhile; what the window is shown later comes after it.
  if (passesItself_) return place_.work.tell([this, outcome] { tell(outcome); });
  place_.work.inWindow([&] { tell(outcome); });
}

runs::Cancelled FolderRun::cancelled() {
  const int cancels = cancels_;
  return cancels == 0   ? runs::Cancelled::no
         : cancels == 1 ? runs::Cancelled::afterDocuments
                        : runs::Cancelled::atOnce;
}

std::string FolderRun::sentenceFor(runs::Trouble trouble) const {
  switch (trouble) {
    case runs::Trouble::noName:
      return "The name is empty; list the files again.";
    case runs::Trouble::isFolder:
      return "It is a folder; list the files again, with its sub-folders.";
    case runs::Trouble::folderRefused:
      return "ask its owner, or leave it out.";
    case runs::Trouble::placeTaken:
    case runs::Trouble::notOpened:
      return "No password that was given opens it.";
    case runs::Trouble::notReleased:
      return "No password that was given is the one for changing it; it can be read, and saved under another "
             "name.";
    case runs::Trouble::wrongPasswords:
    case runs::Trouble::documentsHashing:
    case runs::Trouble::runsHashing:
      break;
  }
  return "No password that was given lifts its protection.";
}

}  // namespace pluvo::desktop
