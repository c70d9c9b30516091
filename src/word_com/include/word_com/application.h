#pragma once

#include "word/word_processor.h"

#include <oaidl.h>

#include <memory>

/// Microsoft Word behind the word processor interface, driven by name (IDispatch).
///
/// A member that Word refuses throws errors::Fault with Word's number (see word/faults.h), description,
/// source, help file and context; the source names the member as well. What fails short of Word itself has
/// the run-time's numbers: 429 where there is no Word, 438 for a member it does not have, 462 where it has
/// gone.
///
/// All of it belongs to the thread it was made on, which is in a single-threaded apartment.
namespace pluvo::word_com {

/// The Word that this code runs in, else the running one. Throws Fault 429 where there is none.
std::shared_ptr<word::Application> connectToWord();

/// Word as given by its `Application` object.
std::shared_ptr<word::Application> applicationOf(IDispatch* object);

}  // namespace pluvo::word_com
