#pragma once

#include <gtest/gtest.h>
#include <objbase.h>
#include <windows.h>

#include <string>

namespace pluvo::component {

/// The DLL beside the test program, loaded, with its entry points.
class LoadedComponent {
 public:
  LoadedComponent() {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    library_ = LoadLibraryW(path().c_str());
    EXPECT_NE(library_, nullptr);
  }
  LoadedComponent(const LoadedComponent&) = delete;
  LoadedComponent& operator=(const LoadedComponent&) = delete;
  ~LoadedComponent() {
    FreeLibrary(library_);
    CoUninitialize();
  }

  static std::wstring path() {
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    const std::wstring text = program;
    return text.substr(0, text.rfind(L'\\') + 1) + PLUVO_COMPONENT_FILE;
  }

  HRESULT getClassObject(REFCLSID classId, REFIID interfaceId, void** object) const {
    return entry<HRESULT(WINAPI*)(REFCLSID, REFIID, void**)>("DllGetClassObject")(classId, interfaceId,
                                                                                  object);
  }
  HRESULT canUnloadNow() const { return entry<HRESULT(WINAPI*)()>("DllCanUnloadNow")(); }
  HRESULT registerServer() const { return entry<HRESULT(WINAPI*)()>("DllRegisterServer")(); }
  HRESULT unregisterServer() const { return entry<HRESULT(WINAPI*)()>("DllUnregisterServer")(); }
  HRESULT install(bool install, const wchar_t* commandLine) const {
    return entry<HRESULT(WINAPI*)(BOOL, const wchar_t*)>("DllInstall")(install, commandLine);
  }

 private:
  template <class Function>
  Function entry(const char* name) const {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library_, name)));
  }

  HMODULE library_ = nullptr;
};

}  // namespace pluvo::component
