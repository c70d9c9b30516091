#pragma once

#include "journal/journal.h"
#include "password_budget.h"
#include "runs/face.h"
#include "runs/plan.h"
#include "store/store.h"

#include <exception>
#include <functional>
#include <memory>

namespace pluvo::runs {

/// The state that documents of a run share.
struct RunContext {
  const Plan& plan;
  const store::Store& store;
  Face& face;
  journal::Recorder* journal;  ///< nullptr: originals are not kept
  PasswordBudget& passwordBudget;
  bool isOneByOne;  ///< no other document is worked on meanwhile
};

/// Takes the blocks of a document as they come; empty where they are not wanted, since reading them costs.
using BlockSink = std::function<void(const BlockReport&)>;

/// The outcome of a document, and its new version where it is to be saved.
struct Worked {
  Outcome outcome;
  std::unique_ptr<files::Pending> version;
  std::exception_ptr thrown = nullptr;  ///< an exception that is no failure of a document
};

/// Opens a document, makes a pass over it for each request, and begins to save it. Whatever goes wrong is in
/// the outcome. The number is that of the document in the list, from 1. May be called from several threads
/// where no questions are asked.
Worked runOn(const NamedDocument& document, std::size_t number, const RunContext& around,
             const BlockSink& blocks);

/// The steps that are left for a new version; see files::Pending. A version that fails goes, and the steps
/// that are left do nothing. They throw nothing.
void flushVersion(Worked& worked);
void putInPlace(Worked& worked);
void settle(Worked& worked);
/// To be called after the last step. Throws the exception, if there was one.
Outcome outcomeOf(Worked worked);

}  // namespace pluvo::runs
