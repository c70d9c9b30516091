#pragma once

#include "interviewer.h"
#include "journal/journal.h"
#include "listing/listing.h"
#include "outcome.h"
#include "plan.h"
#include "store/store.h"
#include "turns.h"

#include <functional>

namespace pluvo::cli {

/// What the documents of a run share.
struct Surroundings {
  const Plan& plan;
  files::FileSystem& system;
  const store::Store& store;
  Interviewer* interviewer;    ///< nullptr: nobody is asked
  journal::Recorder* journal;  ///< nullptr: originals are not kept
  Turns::Turn& turn;           ///< given up when there is only the disk to wait for
};

/// Takes the blocks of a document as they come; empty where nobody is shown them, since reading them costs.
using BlockSink = std::function<void(const BlockReport&)>;

/// Opens a document, makes a pass over it for each request, and saves it. Whatever goes wrong is in the
/// outcome. May be called from several threads where nobody is asked.
Outcome runOn(const NamedDocument& document, const Surroundings& around, const BlockSink& blocks);

}  // namespace pluvo::cli
