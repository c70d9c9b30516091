#pragma once

#include <windows.h>

namespace pluvo::stand_in {

/// A main window as Word has one, with the pane inside that shows a document and gives the object for it to
/// whoever asks as accessibility tools do.
HWND makeWindow(bool visible);

}  // namespace pluvo::stand_in
