#pragma once

namespace pluvo::component {

/// Shows the one dialog of this process and returns when the user closes it. Where it is up already it
/// comes to the front, and this returns at once.
/// Throws the Fault of a start-up that could not be reported, after which the next call starts anew.
///
/// The dialog, once made, stays for as long as the process, and Word's objects with it: they belong to the
/// thread of the first call, and a call on another one is refused with Fault kNotAvailable.
void openDialog();

}  // namespace pluvo::component
