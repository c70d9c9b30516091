#include "add_in.h"
#include "class_factory.h"
#include "module.h"
#include "open_pluvo.h"
#include "pluvo_interface.h"
#include "registration.h"
#include "status.h"

#include <windows.h>

#include <new>
#include <string_view>

using pluvo::component::Audience;
using pluvo::component::ClassFactory;
using pluvo::component::guardedStatus;
using pluvo::component::Maker;
using pluvo::component::Widths;

namespace {

template <class Object, class Default>
IUnknown* make() {
  return static_cast<Default*>(new (std::nothrow) Object);
}

/// Null where the class is another's.
Maker makerOf(REFCLSID classId) {
  using namespace pluvo::component;
  if (classId == CLSID_clsOpenPLUVO) return make<OpenPluvo, _clsOpenPLUVO>;
  if (classId == CLSID_Connect) return make<AddIn, _Connect>;
  return nullptr;
}

}  // namespace

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void* /*reserved*/) {
  if (reason == DLL_PROCESS_ATTACH) pluvo::component::module(instance);
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID classId, REFIID interfaceId, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  const Maker maker = makerOf(classId);
  if (maker == nullptr) return CLASS_E_CLASSNOTAVAILABLE;
  auto* factory = new (std::nothrow) ClassFactory(maker);
  if (factory == nullptr) return E_OUTOFMEMORY;
  const HRESULT status = factory->QueryInterface(interfaceId, object);
  factory->Release();
  return status;
}

STDAPI DllCanUnloadNow() { return pluvo::component::anythingLives() ? S_FALSE : S_OK; }

/// For the user alone, so no rights are needed.
STDAPI DllRegisterServer() {
  return guardedStatus([] { return registerClass(Audience::user); });
}

STDAPI DllUnregisterServer() {
  return guardedStatus([] { return unregisterClass(Audience::user); });
}

/// `regsvr32 /n /i:user`, the same; `/i:machine`, for all users; `/i:both`, for the user and in both widths,
/// which the installer does.
STDAPI DllInstall(BOOL install, const wchar_t* commandLine) {
  const std::wstring_view wanted = commandLine == nullptr ? L"" : commandLine;
  if (!wanted.empty() && wanted != L"user" && wanted != L"machine" && wanted != L"both") return E_INVALIDARG;
  const Audience audience = wanted == L"machine" ? Audience::machine : Audience::user;
  const Widths widths = wanted == L"both" ? Widths::both : Widths::own;
  return guardedStatus(
      [&] { return install ? registerClass(audience, widths) : unregisterClass(audience, widths); });
}
