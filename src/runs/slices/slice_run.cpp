#include "slices/slice_run.h"

#include "files/locking.h"
#include "journal/named_runs.h"
#include "runs/outcome_json.h"
#include "runs/sliced.h"

#include <set>
#include <utility>

namespace pluvo::runs {
namespace {

/// A document that was on its way to another folder is there whole, or not at all.
bool isElsewhere(files::FileSystem& system, const Outcome& intended) {
  return !intended.savedAs.empty() && system.exists(intended.savedAs);
}

Failure unclear() {
  return {
      errors::Problem::changed,
      "It was being saved when its slice was killed, and was changed since, so nobody knows whether it was "
      "worked on; look, and work on it outside this run if it was not."};
}

}  // namespace

std::optional<Outcome> knownOutcome(files::FileSystem& system, const journal::SliceDocument& known) {
  const auto json = base::JsonValue::from(known.outcome);
  auto outcome = json ? outcomeFrom(*json) : std::nullopt;
  if (!outcome) return std::nullopt;
  if (known.isUnclear && outcome->savedAs.empty()) {
    outcome->saved = false;
    outcome->failure = unclear();
  } else if (known.isUnclear && !isElsewhere(system, *outcome)) {
    return std::nullopt;
  }
  return outcome;
}

SliceRun::SliceRun(files::FileSystem& system, const std::vector<NamedDocument>& documents,
                   journal::SliceRecorder& recorder)
    : documents_(documents), recorder_(recorder) {
  std::vector<journal::SliceDocument> listed;
  for (std::size_t i = 0; i < documents.size(); ++i) {
    listed.push_back({documents[i].key, listedPath(documents[i]), {}});
    const auto known = recorder.earlier(documents[i].key);
    auto outcome = known ? knownOutcome(system, *known) : std::nullopt;
    // What failed is tried again.
    if (!outcome || (outcome->failure && !known->isUnclear)) continue;
    outcome->earlier = true;
    earlier_.emplace(i, *std::move(outcome));
  }
  recorder.list(listed);
}

std::optional<Outcome> SliceRun::earlier(std::size_t document) const {
  const auto found = earlier_.find(document);
  return found == earlier_.end() ? std::nullopt : std::optional(found->second);
}

void SliceRun::result(std::size_t document, const Outcome& outcome) {
  if (outcome.cutShort || outcome.earlier) return;
  recorder_.result(documents_[document].key, inJson(outcome));
}

std::unique_ptr<journal::SliceRecorder> beginSlice(const Plan& plan, files::FileSystem& system,
                                                   const std::string& folder) {
  const Slice slice = plan.selection.slice.value_or(Slice{});
  const ListDigest list = plan.list.value_or(ListDigest{});
  const journal::SliceToBegin begun{
      {plan.runName, slice.count, requestTextOf(plan), plan.command, {list.count, list.names, list.keys}},
      slice.number,
      plan.journal && plan.changesInPlace()};
  return std::make_unique<journal::SliceRecorder>(system, folder, begun, plan.command);
}

std::vector<std::string> lockWarnings(const Plan& plan, const std::string& folder,
                                      const std::vector<NamedDocument>& documents) {
  using files::LockReach;
  std::vector<std::string> warnings;
  const auto notSure = [](const files::Locking& locking) {
    return "Locks on the file system (" + locking.system + ") of the ";
  };
  constexpr std::string_view kNotKnown = " are not known to hold between machines. ";
  const files::Locking ofJournal = files::lockingAt(folder);
  if (ofJournal.reach == LockReach::unsure)
    warnings.push_back(notSure(ofJournal) + "journal, " + folder + "," + std::string(kNotKnown) +
                       "See to it that no slice is begun twice at the same time, and that all have ended "
                       "before the run is taken back.");
  std::set<std::string> folders;
  std::set<std::uint64_t> mounts;
  bool isShared = false;
  for (const NamedDocument& document : documents) {
    const std::string place = document.key.substr(0, document.key.rfind('/') + 1);
    if (!folders.insert(place).second) continue;
    if (const auto mount = files::mountOf(place); !mount || !mounts.insert(*mount).second) continue;
    const files::Locking locking = files::lockingAt(place);
    isShared |= locking.reach != LockReach::oneMachine;
    if (locking.reach == LockReach::unsure)
      warnings.push_back(notSure(locking) + "documents in " + place + std::string(kNotKnown) +
                         "Until the run has ended, let nobody change them on another machine.");
  }
  if (isShared && ofJournal.reach == LockReach::oneMachine && plan.selection.slice->count > 1)
    warnings.push_back("The journal, " + folder +
                       ", is on a disk of this machine, and the documents are not. Where slices are made on "
                       "several machines, give all of them --journal-dir with one folder that all see.");
  return warnings;
}

}  // namespace pluvo::runs
