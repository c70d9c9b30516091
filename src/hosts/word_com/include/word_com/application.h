#pragma once

#include "word/word_processor.h"

#include <oaidl.h>

#include <memory>

/// Microsoft Word behind the word processor interface, driven by name (IDispatch).
///
/// A member that Word refuses throws errors::Fault with Word's number (see word/faults.h), description,
/// source, help file and context; the source names the member as well. Failures outside Word have the
/// run-time's numbers: 429 without Word, 438 for a missing member, 462 where Word has gone.
///
/// All of it belongs to the thread it was made on, which is in a single-threaded apartment.
namespace pluvo::word_com {

/// Whether `word.log` in the data folder records Word's version, its refusals, and false matches. Texts of
/// documents are recorded only on request.
enum class Logging { off, on, withTexts };

/// How Word is driven, as its user wants it.
struct Manner {
  /// Protection put back keeps the entries of a form. Opened files raise no questions, and stay out of the
  /// list of recent files. A view is given back after a pass.
  bool careful = false;
  Logging logging = Logging::off;
};

/// The Word whose process this code runs in, never another. It is found by its windows on this thread, by the
/// class it offers inside itself, or in the table of running objects. Outside Word, that of the foremost
/// window that shows a document: the one the user had in front last. Where none shows one, the first in that
/// table. Throws Fault 429 where there is none.
std::shared_ptr<word::Application> connectToWord(const Manner& manner = {});

/// Word as given by its `Application` object.
std::shared_ptr<word::Application> applicationOf(IDispatch* object, const Manner& manner = {});

/// Word is to be closed, or has nothing to do with this program any longer. It draws its windows again. Every
/// object of Word is released, the application included. A call to one of them throws Fault 462 from now on.
void letGoOf(word::Application& word);

}  // namespace pluvo::word_com
