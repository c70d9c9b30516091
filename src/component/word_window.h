#pragma once

#include <windows.h>

namespace pluvo::component {

/// The window of Word that this thread's user works in; null where the thread is not Word's.
HWND wordWindow();
/// Whether it is one of Word's that shows a document.
bool isWordWindow(HWND window);

}  // namespace pluvo::component
