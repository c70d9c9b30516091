#include "class_factory.h"
#include "module.h"
#include "pluvo_interface.h"
#include "registration.h"
#include "status.h"

#include <windows.h>

#include <new>
#include <string_view>

using pluvo::component::Audience;
using pluvo::component::ClassFactory;
using pluvo::component::guardedStatus;

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void* /*reserved*/) {
  if (reason == DLL_PROCESS_ATTACH) pluvo::component::module(instance);
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID classId, REFIID interfaceId, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (classId != CLSID_clsOpenPLUVO) return CLASS_E_CLASSNOTAVAILABLE;
  auto* factory = new (std::nothrow) ClassFactory;
  if (factory == nullptr) return E_OUTOFMEMORY;
  const HRESULT status = factory->QueryInterface(interfaceId, object);
  factory->Release();
  return status;
}

STDAPI DllCanUnloadNow() { return pluvo::component::anythingLives() ? S_FALSE : S_OK; }

/// For the user alone, so that nobody needs rights.
STDAPI DllRegisterServer() {
  return guardedStatus([] { return registerClass(Audience::user); });
}

STDAPI DllUnregisterServer() {
  return guardedStatus([] { return unregisterClass(Audience::user); });
}

/// `regsvr32 /n /i:user`, the same, or `/i:machine`.
STDAPI DllInstall(BOOL install, const wchar_t* commandLine) {
  const std::wstring_view wanted = commandLine == nullptr ? L"" : commandLine;
  if (!wanted.empty() && wanted != L"user" && wanted != L"machine") return E_INVALIDARG;
  const Audience audience = wanted == L"machine" ? Audience::machine : Audience::user;
  return guardedStatus([&] { return install ? registerClass(audience) : unregisterClass(audience); });
}
