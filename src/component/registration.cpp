#include "registration.h"

#include "base/at_end.h"
#include "module.h"
#include "pluvo_interface.h"

#include <optional>
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

  LSTATUS write(const Value& value, DWORD type, const void* data, std::size_t size) const {
    HKEY key = nullptr;
    LSTATUS status = RegCreateKeyExW(key_, value.key.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                     KEY_SET_VALUE, nullptr, &key, nullptr);
    if (status != ERROR_SUCCESS) return status;
    status = RegSetValueExW(key, value.name.c_str(), 0, type, static_cast<const BYTE*>(data),
                            static_cast<DWORD>(size));
    RegCloseKey(key);
    return status;
  }
  LSTATUS write(const Value& value) const {
    return write(value, REG_SZ, value.text.c_str(), (value.text.size() + 1) * sizeof(wchar_t));
  }

  /// What stands there now; nothing where the value is not there.
  struct Data {
    DWORD type = REG_NONE;
    std::vector<BYTE> bytes;
  };
  std::optional<Data> read(const Value& value) const {
    Data data;
    HKEY key = nullptr;
    if (RegOpenKeyExW(key_, value.key.c_str(), 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS)
      return std::nullopt;
    const base::AtEnd closed([&] { RegCloseKey(key); });
    DWORD size = 0;
    if (RegQueryValueExW(key, value.name.c_str(), nullptr, nullptr, nullptr, &size) != ERROR_SUCCESS)
      return std::nullopt;
    data.bytes.resize(size);
    if (RegQueryValueExW(key, value.name.c_str(), nullptr, &data.type, data.bytes.data(), &size) !=
        ERROR_SUCCESS)
      return std::nullopt;
    data.bytes.resize(size);
    return data;
  }

  void removeValue(const Value& value) const {
    RegDeleteKeyValueW(key_, value.key.c_str(), value.name.c_str());
  }
  /// The key, unless there are keys in it.
  void removeKey(const std::wstring& key) const { RegDeleteKeyW(key_, key.c_str()); }

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

/// Values as they are written: all of them, or what was there before stays.
class Registering {
 public:
  explicit Registering(Audience audience) : classes_(audience, KEY_READ | KEY_WRITE) {}
  Registering(const Registering&) = delete;
  Registering& operator=(const Registering&) = delete;
  ~Registering() {
    for (auto step = steps_.rbegin(); step != steps_.rend(); ++step) takeBack(*step);
  }

  HRESULT write(const std::vector<Value>& values) {
    LSTATUS status = classes_.status();
    // Before anything is written, so that taking it back needs nothing that may not be had then.
    if (status == ERROR_SUCCESS) steps_.reserve(values.size());
    for (const Value& value : values) {
      if (status != ERROR_SUCCESS) break;
      steps_.push_back({value, classes_.read(value), missingKeys(value.key)});
      status = classes_.write(value);
    }
    return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
  }
  /// It is to stay.
  void keep() { steps_.clear(); }

 private:
  struct Step {
    Value value;
    std::optional<Classes::Data> before;
    std::vector<std::wstring> made;  ///< keys, the outermost first
  };

  std::vector<std::wstring> missingKeys(const std::wstring& key) const {
    std::vector<std::wstring> missing;
    for (std::size_t end = 0; end != std::wstring::npos;) {
      end = key.find(L'\\', end + 1);
      std::wstring part = key.substr(0, end);
      if (!classes_.has(part)) missing.push_back(std::move(part));
    }
    return missing;
  }

  void takeBack(const Step& step) const {
    if (step.before) {
      classes_.write(step.value, step.before->type, step.before->bytes.data(), step.before->bytes.size());
      return;
    }
    classes_.removeValue(step.value);
    for (auto key = step.made.rbegin(); key != step.made.rend(); ++key) classes_.removeKey(*key);
  }

  Classes classes_;
  std::vector<Step> steps_;
};

bool isRegisteredFor(Audience audience) {
  const Classes classes(audience, KEY_QUERY_VALUE);
  return classes.status() == ERROR_SUCCESS && classes.has(Place().classKey);
}

/// Whether COM looks at what was just written for the user. Not every system does: Wine does not before 9.
/// The same may stand there for the machine, so that it is asked for a value that does not.
bool isSeen() {
  const Classes classes(Audience::user, KEY_READ | KEY_WRITE);
  const Value probe = {Place().classKey, L"Seen", L""};
  if (classes.status() != ERROR_SUCCESS || classes.write(probe) != ERROR_SUCCESS) return false;
  const bool seen = RegGetValueW(HKEY_CLASSES_ROOT, probe.key.c_str(), probe.name.c_str(), RRF_RT_REG_SZ,
                                 nullptr, nullptr, nullptr) == ERROR_SUCCESS;
  classes.removeValue(probe);
  return seen;
}

/// Whether this DLL is what is registered there.
bool isOwnFor(Audience audience) {
  const Classes classes(audience, KEY_QUERY_VALUE);
  if (classes.status() != ERROR_SUCCESS) return false;
  const auto server = classes.read({Place().classKey + L"\\InprocServer32", L"", L""});
  if (!server || server->type != REG_SZ) return false;
  const std::wstring path(reinterpret_cast<const wchar_t*>(server->bytes.data()),
                          server->bytes.size() / sizeof(wchar_t));
  return lstrcmpiW(path.c_str(), modulePath().c_str()) == 0;
}

}  // namespace

HRESULT registerClass(Audience audience) {
  {
    Registering registering(audience);
    const HRESULT status = registering.write(values());
    const bool isDone = SUCCEEDED(status) && (audience == Audience::machine || isSeen());
    if (isDone) registering.keep();
    if (isDone || FAILED(status)) return status;
  }
  Registering registering(Audience::machine);
  const HRESULT status = registering.write(values());
  if (SUCCEEDED(status)) registering.keep();
  return status;
}

HRESULT unregisterClass(Audience audience) {
  if (audience == Audience::machine) return unregisterFor(audience);
  const bool wasUsers = isRegisteredFor(Audience::user);
  const HRESULT status = wasUsers ? unregisterFor(Audience::user) : S_OK;
  // Registered for the machine as the user's classes are not looked at, or by an earlier version in both
  // places. What an administrator registered for all, a user has no right to remove.
  if (FAILED(status) || !(wasUsers ? isOwnFor(Audience::machine) : isRegisteredFor(Audience::machine)))
    return status;
  const HRESULT machine = unregisterFor(Audience::machine);
  return wasUsers ? status : machine;
}

}  // namespace pluvo::component
