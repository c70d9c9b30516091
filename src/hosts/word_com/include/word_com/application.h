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

/// Whether Word's version, what it refuses, and matches that are not the text asked for, are written into
/// `word.log` in the data folder; texts of documents only where they are to be.
enum class Logging { off, on, withTexts };

/// How Word is driven, as its user wants it.
struct Manner {
  /// Protection put back keeps what was filled into a form; files that are opened are not entered in the list
  /// of recent files and not asked about; a view is given back after a pass.
  bool careful = false;
  Logging logging = Logging::off;
};

/// The Word whose process this code runs in: by its windows on this thread, by the class it offers inside
/// itself, or as it has entered itself in the table of running objects; never another. Outside Word, that of
/// the foremost window that shows a document, which is the Word that the user had before him last; where none
/// shows one, the first in that table. Throws Fault 429 where there is none.
std::shared_ptr<word::Application> connectToWord(const Manner& manner = {});

/// Word as given by its `Application` object.
std::shared_ptr<word::Application> applicationOf(IDispatch* object, const Manner& manner = {});

/// Word is to be closed, or has nothing to do with this program any longer: it draws its windows again, and
/// each object of it that is held anywhere, the application and all that came of it, is released. A call to
/// one of them throws Fault 462 from now on.
void letGoOf(word::Application& word);

}  // namespace pluvo::word_com
