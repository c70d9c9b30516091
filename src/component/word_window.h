#pragma once

#include <windows.h>

namespace pluvo::component {

/// The window of Word that this thread's user works in; null where the thread is not Word's.
HWND wordWindow();

}  // namespace pluvo::component
