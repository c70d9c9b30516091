#pragma once

#include <oaidl.h>
#include <windows.h>

namespace pluvo::component {

/// Shows the one dialog of this process. Inside Word, and with Careful set, Word's own loop deals with its
/// messages, and this returns at once; else when the user closes the dialog. Where it is up already it comes
/// to the front, and this returns at once. Throws the Fault of a start-up that could not be reported, after
/// which the next call starts anew.
///
/// The dialog, once made, stays until Word closes, and Word's objects with it. They belong to the thread of
/// the first call; a call on another one is refused with Fault kNotAvailable.
void openDialog();

/// The Word that dialogs are made for from now on; null for the one that this process or thread shows.
void connectTo(IDispatch* word);

/// Word closes, or wants no more of this. The dialog is destroyed with all windows above it, and a run under
/// way ends. When this returns, only calls to Word under way hold an object of Word. To be called on the
/// dialog's thread; does nothing on another one. The next call of openDialog starts anew.
void endDialog();

}  // namespace pluvo::component
