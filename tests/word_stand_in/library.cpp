// The stand-in as a library that is loaded into the process of the script.

#include "factory.h"
#include "registration.h"
#include "word_objects.h"

using namespace pluvo::stand_in;

namespace {

HINSTANCE library = nullptr;
constexpr wchar_t kServerKind[] = L"InprocServer32";

std::wstring libraryPath() {
  wchar_t path[MAX_PATH] = {};
  GetModuleFileNameW(library, path, MAX_PATH);
  return path;
}

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) library = instance;
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID classId, REFIID id, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (!Factory::knows(classId)) return CLASS_E_CLASSNOTAVAILABLE;
  return make<Factory>(classId)->QueryInterface(id, object);
}

// The documents live here, and scripts come back to them.
STDAPI DllCanUnloadNow() { return S_FALSE; }

STDAPI DllRegisterServer() { return enterClasses(kServerKind, libraryPath()); }

STDAPI DllUnregisterServer() { return removeClasses(kServerKind, libraryPath()); }
