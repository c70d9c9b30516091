#pragma once

#include "interviewer.h"
#include "named_documents.h"
#include "outcome.h"
#include "printer.h"
#include "request.h"
#include "store/store.h"

namespace pluvo::cli {

/// What the documents of a run share.
struct Surroundings {
  const Request& request;
  const store::Store& store;
  Printer& printer;
  Interviewer* interviewer;  ///< nullptr: nobody is asked
};

/// Opens a document, makes a pass over it and saves it. Whatever goes wrong is in the outcome. Blocks go to
/// the printer as they come; the outcome itself is the caller's to print.
Outcome runOn(const NamedDocument& document, const Surroundings& around);

}  // namespace pluvo::cli
