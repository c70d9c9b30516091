#pragma once

#include <windows.h>

namespace pluvo::component {

/// For whom the class is registered: the user, who needs no rights for it, or all users of the machine.
enum class Audience { user, machine };

/// Writes what COM looks for into the registry. Where that fails, all is as it was before. Where the system
/// does not look at the user's classes they are registered for the machine.
HRESULT registerClass(Audience audience);

/// Takes all of it away again, wherever it was registered; what the DLL of the other width needs stays for
/// that one.
HRESULT unregisterClass(Audience audience);

}  // namespace pluvo::component
