#pragma once

#include <windows.h>

#include <string>

namespace pluvo::stand_in {

/// Enters both classes for this user under a kind of server (InprocServer32, LocalServer32), or takes them
/// out altogether.
HRESULT enterClasses(const wchar_t* serverKind, const std::wstring& server);
HRESULT removeClasses(const wchar_t* serverKind, const std::wstring& server);

}  // namespace pluvo::stand_in
