#include "document_run.h"

#include "asking.h"
#include "elsewhere/elsewhere.h"
#include "engine/engine.h"
#include "memory/application.h"
#include "pass_watcher.h"
#include "passwords.h"
#include "runs/outcome_json.h"

#include <functional>
#include <new>
#include <utility>
#include <variant>

namespace pluvo::runs {

using errors::DocumentError;
using errors::Problem;

namespace {

template <class Value>
using OrFailure = std::variant<Value, Failure>;

using Stored = std::shared_ptr<store::StoredDocument>;
using Version = std::unique_ptr<files::Pending>;

/// Does a part of the work, and returns the error that ended it, if any did.
std::optional<Failure> failureOf(const std::function<void()>& work) {
  try {
    work();
    return std::nullopt;
  } catch (const DocumentError& error) {
    return failureFrom(error);
  } catch (const errors::Fault& fault) {
    return failureFrom(fault);
  } catch (const std::bad_alloc&) {
    return Failure{Problem::tooLarge,
                   "There is not enough memory for it; close other programs, or divide it."};
  }
}

/// The document, still protected where the run may lift that.
OrFailure<Stored> opened(const NamedDocument& named, const RunContext& around, Asking& asking,
                         Passwords& passwords) {
  const Plan& plan = around.plan;
  store::Also also{.protectedDocuments = !plan.passwords.empty() || asking.answers(Question::password),
                   .forReading = plan.findsOnly(),
                   .hint = {.encoding = plan.encoding,
                            .findKey = [&](const formats::Lock& lock) { return passwords.keyOf(lock); },
                            .allStories = plan.worksBeyondMainText()},
                   .folderLength = named.folderLength};
  Stored stored;
  while (const auto failure = failureOf([&] { stored = around.store.open(named.path, also); })) {
    if (failure->problem != Problem::temporary || also.temporaryFiles) return *failure;
    also.temporaryFiles = asking.ask(Question::temporary).reply == Asking::Reply::yes;
    if (!also.temporaryFiles) return *failure;
  }
  return stored;
}

/// Makes a pass for each request, as far as the run goes on. What made the document fail, if anything did.
std::optional<Failure> passed(const Stored& stored, const std::optional<Failure>& obstacle,
                              const RunContext& around, Asking& asking, const BlockSink& blocks,
                              Outcome& outcome) {
  std::int64_t refused = 0;
  std::optional<Failure> firstRefusal;
  if (around.plan.worksBeyondMainText()) outcome.places.emplace();
  for (const engine::Request& request : around.plan.requests) {
    PassWatcher watcher(*stored->document(), request, obstacle, around.plan.keepGoing, asking, blocks,
                        outcome.places ? &*outcome.places : nullptr);
    auto result = asking.pass(stored, request, watcher);
    if (!result) {
      memory::MemoryApplication application;
      application.add(stored->document());
      result = engine::Engine(application, watcher).pass(request);
    }
    outcome.found += result->found;
    if (request.operation != engine::kNone) outcome.operated += result->operated - result->refused;
    outcome.skipped += result->skipped;
    outcome.tooFar += result->tooFar;
    refused += result->refused;
    if (!firstRefusal) firstRefusal = watcher.firstRefusal();
    if (watcher.failure()) return watcher.failure();
    if (refused > 0 && !around.plan.keepGoing) return firstRefusal;
    if (asking.endsHere()) break;
  }
  if (refused > 0 && outcome.operated == 0) return firstRefusal;
  outcome.refused = refused;
  return std::nullopt;
}

/// Texts that no request reached. A failure meanwhile is told, and keeps nothing from being
/// saved.
elsewhere::Elsewhere notReached(const store::StoredDocument& stored, const Plan& plan) {
  elsewhere::Elsewhere found;
  const auto failure = failureOf([&] {
    found = elsewhere::lookElsewhere(stored.source(), stored.document()->stories(), plan.requests);
  });
  if (failure) found.damaged.push_back({"other parts", failure->message});
  return found;
}

/// Where the new version goes, if not into the document's place.
std::optional<std::string> otherPath(const NamedDocument& named, const Plan& plan,
                                     const std::optional<Failure>& obstacle, Asking& asking) {
  if (plan.outputFolder) return *plan.outputFolder + "/" + named.place;
  if (!obstacle) return std::nullopt;
  Answer answer = asking.ask(Question::saveAs);
  if (answer.reply != Asking::Reply::yes) return std::nullopt;
  return std::move(answer.path);
}

/// The record for a slice's journal, written before a document is saved; empty elsewhere.
std::string intendedOf(const NamedDocument& named, const RunContext& around, Outcome outcome,
                       const std::string& savedAs) {
  if (named.key.empty() || around.journal == nullptr) return {};
  outcome.saved = true;
  outcome.savedAs = savedAs;
  std::string intended = inJson(outcome);
  if (!savedAs.empty()) around.journal->intend(named.key, intended);
  return intended;
}

/// Begins to save a document that was changed.
OrFailure<Version> beginSaving(const store::StoredDocument& stored, const RunContext& around,
                               const std::optional<std::string>& otherPath, const std::string& intended) {
  store::SaveOptions options;
  options.backupSuffix = around.plan.backupSuffix;
  options.otherPath = otherPath;
  options.otherRoot = around.plan.outputFolder.value_or("");
  options.isFlushedDuringCheck = around.isOneByOne;
  if (around.journal != nullptr)
    options.beforeReplacing = [journal = around.journal, outcome = intended](const auto& replacement) {
      return journal->keep(replacement, outcome);
    };
  Version version;
  if (const auto failure = failureOf([&] { version = stored.beginSave(options); })) return *failure;
  return version;
}

/// A document from its path to its new version. What made it fail, if anything did.
std::optional<Failure> workOn(const NamedDocument& named, const RunContext& around, Asking& asking,
                              const BlockSink& blocks, Worked& worked) {
  const Plan& plan = around.plan;
  Outcome& outcome = worked.outcome;
  Passwords passwords(around, asking);
  const auto document = opened(named, around, asking, passwords);
  if (const auto* failure = std::get_if<Failure>(&document)) return *failure;
  const Stored& shared = std::get<Stored>(document);
  store::StoredDocument& stored = *shared;
  outcome.encoding = stored.encoding();
  outcome.guessed = stored.isEncodingGuessed();
  outcome.isTemplate = stored.isTemplate();

  std::optional<Failure> obstacle;
  if (!plan.findsOnly() && !plan.outputFolder) obstacle = passwords.release(stored);
  if (plan.changesInPlace()) {
    const bool recommends = stored.reserved() == store::Reserved::recommended;
    if (recommends && asking.ask(Question::readIt).reply == Asking::Reply::yes) stored.keepToReading();
    outcome.recommendsReading = recommends;
    if (const auto found = stored.obstacle(); found && !obstacle) obstacle = failureFrom(*found);
  }
  const bool goesOn = obstacle && asking.ask(Question::readOnly).reply == Asking::Reply::yes;
  if (obstacle && !goesOn && asking.answers(Question::readOnly)) return obstacle;
  if (auto failure = passwords.liftProtection(stored)) return failure;
  const BlockSink told = plan.reportsEncrypted || !stored.isEncrypted() ? blocks : BlockSink();
  auto ended = passed(shared, goesOn ? std::nullopt : obstacle, around, asking, told, outcome);
  if (asking.isCancelled()) return std::nullopt;
  // A document in which something failed was read all the same.
  if (plan.looksElsewhere) outcome.elsewhere = notReached(stored, plan);
  if (ended) return ended;

  outcome.changed = stored.document()->stories().changed();
  // A large text lies in its file; blocks found in it count only if no program wrote there meanwhile.
  if (!outcome.changed) return failureOf([&] { stored.requireUnchangedFile(); });
  if (plan.dryRun) return std::nullopt;
  const auto savedAs = otherPath(named, plan, obstacle, asking);
  if (obstacle && !savedAs) return obstacle;
  const std::string intended = intendedOf(named, around, outcome, savedAs.value_or(""));
  auto version = beginSaving(stored, around, savedAs, intended);
  if (const auto* failure = std::get_if<Failure>(&version)) return *failure;
  worked.version = std::move(std::get<Version>(version));
  if (worked.version) outcome.savedAs = savedAs.value_or("");
  return std::nullopt;
}

template <class Step>
void take(Worked& worked, Step step) {
  if (worked.version == nullptr) return;
  try {
    worked.outcome.failure = failureOf([&] { step(*worked.version); });
  } catch (...) {
    worked.thrown = std::current_exception();
  }
  if (!worked.outcome.failure && !worked.thrown) return;
  worked.outcome.savedAs.clear();
  worked.version.reset();
}

}  // namespace

Worked runOn(const NamedDocument& named, std::size_t number, const RunContext& around,
             const BlockSink& blocks) {
  Worked worked;
  worked.outcome.path = named.path;
  worked.outcome.failure = named.failure;
  if (named.failure) return worked;
  Asking asking(around.face, named.path, number);
  const auto thrown =
      failureOf([&] { worked.outcome.failure = workOn(named, around, asking, blocks, worked); });
  if (thrown) worked.outcome.failure = thrown;
  worked.outcome.cutShort = asking.endsHere();
  return worked;
}

void flushVersion(Worked& worked) {
  take(worked, [](files::Pending& version) { version.flush(); });
}

void putInPlace(Worked& worked) {
  take(worked, [](files::Pending& version) { version.putInPlace(); });
}

void settle(Worked& worked) {
  take(worked, [&](files::Pending& version) {
    files::Saved saved = version.settle();
    Outcome& outcome = worked.outcome;
    outcome.backup = std::move(saved.backup);
    // A copy elsewhere is the user's.
    if (outcome.savedAs.empty()) outcome.notKept = saved.notKept;
    outcome.saved = true;
  });
  worked.version.reset();
}

Outcome outcomeOf(Worked worked) {
  if (worked.thrown) std::rethrow_exception(worked.thrown);
  return std::move(worked.outcome);
}

}  // namespace pluvo::runs
