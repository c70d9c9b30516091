#include "registration.h"

#include "module.h"
#include "pluvo_interface.h"

#include <string>
#include <utility>
#include <vector>

namespace pluvo::component {

namespace {

constexpr const wchar_t* kName = L"P.L.U.V.O.";
constexpr const wchar_t* kProgId = L"PLUVO.clsOpenPLUVO";
constexpr const wchar_t* kLibraryVersion = L"1.0";
/// Windows' own marshaller, which goes by type libraries.
constexpr const wchar_t* kMarshaller = L"{00020424-0000-0000-C000-000000000046}";
#ifdef _WIN64
constexpr const wchar_t* kPlatform = L"win64";
constexpr REGSAM kOtherWidth = KEY_WOW64_32KEY;
#else
constexpr const wchar_t* kPlatform = L"win32";
constexpr REGSAM kOtherWidth = KEY_WOW64_64KEY;
#endif

std::wstring braced(REFGUID id) {
  constexpr int kLength = 39;
  wchar_t text[kLength];
  StringFromGUID2(id, text, kLength);
  return text;
}

struct Place {
  std::wstring classKey = L"CLSID\\" + braced(CLSID_clsOpenPLUVO);
  std::wstring interfaceKey = L"Interface\\" + braced(IID__clsOpenPLUVO);
  std::wstring libraryKey = L"TypeLib\\" + braced(LIBID_PLUVO);
};

struct Value {
  std::wstring key;
  std::wstring name;
  std::wstring text;
};

std::vector<Value> values() {
  const Place place;
  const std::wstring path = modulePath();
  const std::wstring library = place.libraryKey + L"\\" + kLibraryVersion;
  return {
      {kProgId, L"", kName},
      {std::wstring(kProgId) + L"\\CLSID", L"", braced(CLSID_clsOpenPLUVO)},
      {place.classKey, L"", kName},
      {place.classKey + L"\\InprocServer32", L"", path},
      {place.classKey + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
      {place.classKey + L"\\ProgID", L"", kProgId},
      {place.classKey + L"\\Programmable", L"", L""},
      {place.classKey + L"\\TypeLib", L"", braced(LIBID_PLUVO)},
      {place.classKey + L"\\Version", L"", kLibraryVersion},
      {place.interfaceKey, L"", L"_clsOpenPLUVO"},
      {place.interfaceKey + L"\\ProxyStubClsid32", L"", kMarshaller},
      {place.interfaceKey + L"\\TypeLib", L"", braced(LIBID_PLUVO)},
      {place.interfaceKey + L"\\TypeLib", L"Version", kLibraryVersion},
      {library, L"", kName},
      {library + L"\\0\\" + kPlatform, L"", path},
      {library + L"\\FLAGS", L"", L"0"},
      {library + L"\\HELPDIR", L"", moduleFolder()},
  };
}

HKEY rootOf(Audience audience) { return audience == Audience::user ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE; }

/// The part of the registry that holds the classes of an audience.
class Classes {
 public:
  Classes(Audience audience, REGSAM access)
      : status_(RegCreateKeyExW(rootOf(audience), L"Software\\Classes", 0, nullptr, REG_OPTION_NON_VOLATILE,
                                access, nullptr, &key_, nullptr)) {}
  Classes(const Classes&) = delete;
  Classes& operator=(const Classes&) = delete;
  ~Classes() {
    if (status_ == ERROR_SUCCESS) RegCloseKey(key_);
  }

  LSTATUS status() const { return status_; }

  LSTATUS write(const Value& value) const {
    HKEY key = nullptr;
    LSTATUS status = RegCreateKeyExW(key_, value.key.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                     KEY_SET_VALUE, nullptr, &key, nullptr);
    if (status != ERROR_SUCCESS) return status;
    status =
        RegSetValueExW(key, value.name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(value.text.c_str()),
                       static_cast<DWORD>((value.text.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(key);
    return status;
  }

  /// The key with all that is in it. One that is not there has gone already.
  LSTATUS remove(const std::wstring& key) const {
    const LSTATUS status = RegDeleteTreeW(key_, key.c_str());
    return status == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : status;
  }

  void removeIfEmpty(const wchar_t* key) const {
    DWORD keys = 0;
    DWORD values = 0;
    HKEY found = nullptr;
    if (RegOpenKeyExW(key_, key, 0, KEY_QUERY_VALUE, &found) != ERROR_SUCCESS) return;
    const LSTATUS status = RegQueryInfoKeyW(found, nullptr, nullptr, nullptr, &keys, nullptr, nullptr,
                                            &values, nullptr, nullptr, nullptr, nullptr);
    RegCloseKey(found);
    if (status == ERROR_SUCCESS && keys == 0 && values == 0) RegDeleteKeyW(key_, key);
  }

  bool has(const std::wstring& key) const {
    HKEY found = nullptr;
    if (RegOpenKeyExW(key_, key.c_str(), 0, KEY_QUERY_VALUE, &found) != ERROR_SUCCESS) return false;
    RegCloseKey(found);
    return true;
  }

 private:
  HKEY key_ = nullptr;
  LSTATUS status_;
};

/// Classes and interfaces are kept by width, but names and type libraries are not.
bool isRegisteredInOtherWidth(Audience audience) {
  BOOL mixed = sizeof(void*) == 8;
  if (!mixed) IsWow64Process(GetCurrentProcess(), &mixed);
  if (!mixed) return false;
  HKEY key = nullptr;
  const std::wstring path = L"Software\\Classes\\" + Place().classKey;
  if (RegOpenKeyExW(rootOf(audience), path.c_str(), 0, KEY_QUERY_VALUE | kOtherWidth, &key) != ERROR_SUCCESS)
    return false;
  RegCloseKey(key);
  return true;
}

HRESULT unregisterFor(Audience audience) {
  const Classes classes(audience, KEY_ALL_ACCESS);
  if (classes.status() != ERROR_SUCCESS) return HRESULT_FROM_WIN32(static_cast<DWORD>(classes.status()));
  const Place place;
  LSTATUS status = classes.remove(place.classKey);
  std::vector<std::wstring> others = {place.interfaceKey, place.libraryKey, kProgId};
  if (isRegisteredInOtherWidth(audience))
    others = {place.interfaceKey, place.libraryKey + L"\\" + kLibraryVersion + L"\\0\\" + kPlatform};
  for (const std::wstring& key : others) {
    const LSTATUS removed = classes.remove(key);
    if (status == ERROR_SUCCESS) status = removed;
  }
  // A new user has none of these.
  if (audience == Audience::user)
    for (const wchar_t* part : {L"CLSID", L"Interface", L"TypeLib"}) classes.removeIfEmpty(part);
  return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
}

HRESULT registerFor(Audience audience) {
  const Classes classes(audience, KEY_CREATE_SUB_KEY);
  LSTATUS status = classes.status();
  for (const Value& value : values()) {
    if (status != ERROR_SUCCESS) break;
    status = classes.write(value);
  }
  if (status != ERROR_SUCCESS && classes.status() == ERROR_SUCCESS) unregisterFor(audience);
  return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
}

bool isRegisteredFor(Audience audience) {
  const Classes classes(audience, KEY_QUERY_VALUE);
  return classes.status() == ERROR_SUCCESS && classes.has(Place().classKey);
}

/// Whether COM finds this DLL. Not every system looks at the user's classes: Wine does not before 9.
bool isSeen() {
  const std::wstring path = modulePath();
  std::wstring found(path.size() + 1, L'\0');
  auto size = static_cast<DWORD>(found.size() * sizeof(wchar_t));
  const std::wstring key = Place().classKey + L"\\InprocServer32";
  if (RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, found.data(), &size) !=
      ERROR_SUCCESS)
    return false;
  found.resize(size / sizeof(wchar_t) - 1);
  return found == path;
}

}  // namespace

HRESULT registerClass(Audience audience) {
  const HRESULT status = registerFor(audience);
  if (FAILED(status) || audience == Audience::machine || isSeen()) return status;
  unregisterFor(Audience::user);
  return registerFor(Audience::machine);
}

HRESULT unregisterClass(Audience audience) {
  if (audience == Audience::machine || isRegisteredFor(Audience::user)) return unregisterFor(audience);
  return isRegisteredFor(Audience::machine) ? unregisterFor(Audience::machine) : S_OK;
}

}  // namespace pluvo::component
