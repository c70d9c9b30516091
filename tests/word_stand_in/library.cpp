// The stand-in as a library that is loaded into the process of the script, and its registration.

#include "objects.h"

#include <string>

using namespace pluvo::stand_in;

namespace {

HINSTANCE library = nullptr;

struct Class {
  const wchar_t* programId;
  GUID id;
  Handle (*make)();

  std::wstring key() const {
    wchar_t text[40] = {};
    StringFromGUID2(id, text, 40);
    return std::wstring(L"CLSID\\") + text;
  }
};
const Class kClasses[] = {{L"Word.Application", kWordClass, application},
                          {L"PLUVO.StandIn", kControlClass, controlObject}};

/// Makes objects of one class. Stays for good.
class Factory final : public IClassFactory {
 public:
  explicit Factory(const Class& made) : class_(made) {}
  STDMETHODIMP QueryInterface(REFIID id, void** object) override {
    *object = id == IID_IUnknown || id == IID_IClassFactory ? this : nullptr;
    return *object == nullptr ? E_NOINTERFACE : S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 1; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP CreateInstance(IUnknown*, REFIID id, void** object) override {
    return class_.make()->QueryInterface(id, object);
  }
  STDMETHODIMP LockServer(BOOL) override { return S_OK; }

 private:
  const Class& class_;
};

std::wstring libraryPath() {
  wchar_t path[MAX_PATH] = {};
  GetModuleFileNameW(library, path, MAX_PATH);
  return path;
}

/// Who serves the class now; nothing where nobody does.
std::wstring serverOf(const Class& each) {
  wchar_t found[MAX_PATH] = {};
  DWORD size = sizeof(found);
  RegGetValueW(HKEY_CLASSES_ROOT, (each.key() + L"\\InprocServer32").c_str(), nullptr, RRF_RT_REG_SZ, nullptr,
               found, &size);
  return found;
}

bool set(const std::wstring& key, const wchar_t* name, const std::wstring& value) {
  return RegSetKeyValueW(HKEY_CLASSES_ROOT, key.c_str(), name, REG_SZ, value.c_str(),
                         static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS;
}

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) library = instance;
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID classId, REFIID id, void** object) {
  static Factory factories[] = {Factory(kClasses[0]), Factory(kClasses[1])};
  for (std::size_t i = 0; i < std::size(kClasses); ++i) {
    if (kClasses[i].id == classId) return factories[i].QueryInterface(id, object);
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

// The documents live here, and scripts come back to them.
STDAPI DllCanUnloadNow() { return S_FALSE; }

STDAPI DllRegisterServer() {
  for (const Class& each : kClasses) {
    // Another's entry, real Word's perhaps, is not touched.
    const std::wstring server = serverOf(each);
    if (!server.empty() && server != libraryPath()) return E_ACCESSDENIED;
    const std::wstring id = each.key().substr(each.key().find(L'{'));
    if (!set(std::wstring(each.programId) + L"\\CLSID", nullptr, id) ||
        !set(each.key() + L"\\InprocServer32", nullptr, libraryPath()) ||
        !set(each.key() + L"\\InprocServer32", L"ThreadingModel", L"Apartment"))
      return E_FAIL;
  }
  return S_OK;
}

STDAPI DllUnregisterServer() {
  for (const Class& each : kClasses) {
    if (serverOf(each) != libraryPath()) continue;
    RegDeleteTreeW(HKEY_CLASSES_ROOT, each.programId);
    RegDeleteTreeW(HKEY_CLASSES_ROOT, each.key().c_str());
  }
  return S_OK;
}
