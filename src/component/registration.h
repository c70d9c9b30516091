#pragma once

#include <windows.h>

namespace pluvo::component {

/// For whom PLUVO is registered: the user, who needs no rights for it, or all users of the machine.
enum class Audience { user, machine };

/// The DLL that is asked, or with it the one of the other width, which then lies beside it. On 32-bit Windows
/// there is no other.
enum class Widths { own, both };

/// Writes what COM and Word look for into the registry: both classes, and the add-in among Word's. Where that
/// fails, all is as it was before. Where the system does not look at the user's classes they are registered
/// for the machine.
HRESULT registerClass(Audience audience, Widths widths = Widths::own);

/// Takes all of it away again, wherever it was registered; what the DLL of the other width needs stays for
/// that one.
HRESULT unregisterClass(Audience audience, Widths widths = Widths::own);

}  // namespace pluvo::component
