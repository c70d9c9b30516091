#include "registration.h"

#include "module.h"
#include "pluvo_interface.h"
#include "registry.h"

#include <algorithm>
#include <string>
#include <vector>

namespace pluvo::component {

namespace {

constexpr const wchar_t* kName = L"P.L.U.V.O.";
constexpr const wchar_t* kDescription =
    L"Finds blocks of text and works on them; its button is on the Home tab.";
constexpr const wchar_t* kLibraryVersion = L"1.0";
/// Windows' own marshaller, which goes by type libraries.
constexpr const wchar_t* kMarshaller = L"{00020424-0000-0000-C000-000000000046}";
constexpr DWORD kLoadAtStart = 3;
constexpr const wchar_t* kClasses = L"Classes";
constexpr const wchar_t* kAddIns = L"Microsoft\\Office\\Word\\Addins";

/// Keys for one width: the classes and interfaces that its programs see. Names, type libraries and the
/// user's add-ins are the same for both.
struct Width {
  REGSAM view;
  const wchar_t* platform;
  const wchar_t* file;
};
constexpr Width k64 = {KEY_WOW64_64KEY, L"win64", L"pluvo64.dll"};
constexpr Width k32 = {KEY_WOW64_32KEY, L"win32", L"pluvo32.dll"};
constexpr const Width& kOwn = sizeof(void*) == 8 ? k64 : k32;
constexpr const Width& kOther = sizeof(void*) == 8 ? k32 : k64;

std::wstring braced(REFGUID id) {
  constexpr int kLength = 39;
  wchar_t text[kLength];
  StringFromGUID2(id, text, kLength);
  return text;
}

struct Class {
  std::wstring programId;
  std::wstring id;
};
std::vector<Class> classes() {
  return {{L"PLUVO.clsOpenPLUVO", braced(CLSID_clsOpenPLUVO)}, {L"PLUVO.Connect", braced(CLSID_Connect)}};
}

Key classesKey(const Width& width, const std::wstring& rest) {
  return {width.view, std::wstring(kClasses) + L"\\" + rest};
}
Key classKey(const Width& width, const Class& one) { return classesKey(width, L"CLSID\\" + one.id); }
Key below(const Key& key, const std::wstring& name) { return {key.view, key.path + L"\\" + name}; }
Key interfaceKey(const Width& width) { return classesKey(width, L"Interface\\" + braced(IID__clsOpenPLUVO)); }
Key libraryKey() { return classesKey(kOwn, L"TypeLib\\" + braced(LIBID_PLUVO)); }
Key addInKey(const Width& width) { return {width.view, std::wstring(kAddIns) + L"\\PLUVO.Connect"}; }

void add(std::vector<Value>& values, const Width& width, const std::wstring& path) {
  const std::wstring libraryId = braced(LIBID_PLUVO);
  for (const Class& one : classes()) {
    const Key name = classesKey(width, one.programId);
    const Key key = classKey(width, one);
    const Key server = below(key, L"InprocServer32");
    values.insert(values.end(), {{name, L"", std::wstring(kName)},
                                 {below(name, L"CLSID"), L"", one.id},
                                 {key, L"", std::wstring(kName)},
                                 {server, L"", path},
                                 {server, L"ThreadingModel", std::wstring(L"Apartment")},
                                 {below(key, L"ProgID"), L"", one.programId},
                                 {below(key, L"Programmable"), L"", std::wstring()},
                                 {below(key, L"TypeLib"), L"", libraryId},
                                 {below(key, L"Version"), L"", std::wstring(kLibraryVersion)}});
  }
  const Key key = interfaceKey(width);
  const Key library = below(libraryKey(), kLibraryVersion);
  values.insert(values.end(), {{key, L"", std::wstring(L"_clsOpenPLUVO")},
                               {below(key, L"ProxyStubClsid32"), L"", std::wstring(kMarshaller)},
                               {below(key, L"TypeLib"), L"", libraryId},
                               {below(key, L"TypeLib"), L"Version", std::wstring(kLibraryVersion)},
                               {library, L"", std::wstring(kName)},
                               {below(library, std::wstring(L"0\\") + width.platform), L"", path},
                               {below(library, L"FLAGS"), L"", std::wstring(L"0")},
                               {below(library, L"HELPDIR"), L"", moduleFolder()}});
}

/// Adds the values that Word reads when it starts.
void addAddIn(std::vector<Value>& values, const Width& width) {
  const Key key = addInKey(width);
  values.insert(values.end(), {{key, L"FriendlyName", std::wstring(kName)},
                               {key, L"Description", std::wstring(kDescription)},
                               {key, L"LoadBehavior", kLoadAtStart}});
}

HKEY rootOf(Audience audience) { return audience == Audience::user ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE; }

/// Whether this Windows runs programs of both widths.
bool isMixed() {
  BOOL mixed = sizeof(void*) == 8;
  if (!mixed) IsWow64Process(GetCurrentProcess(), &mixed);
  return mixed != FALSE;
}

std::vector<Width> widthsOf(Widths widths) {
  if (widths == Widths::own || !isMixed()) return {kOwn};
  return {kOwn, kOther};
}

/// Whether a class is, in one of the widths.
bool isRegisteredFor(Audience audience, const std::vector<Width>& widths) {
  const Software software(rootOf(audience));
  for (const Width& width : widths)
    for (const Class& one : classes())
      if (software.has(classKey(width, one))) return true;
  return false;
}

HRESULT unregisterFor(Audience audience, const std::vector<Width>& widths) {
  const Software software(rootOf(audience));
  LSTATUS status = ERROR_SUCCESS;
  const auto remove = [&](const Key& key) {
    const LSTATUS removed = software.remove(key);
    if (status == ERROR_SUCCESS) status = removed;
  };
  for (const Width& width : widths) {
    for (const Class& one : classes()) remove(classKey(width, one));
    remove(interfaceKey(width));
    remove(below(libraryKey(), kLibraryVersion + std::wstring(L"\\0\\") + width.platform));
  }
  // What both have in common goes with the last.
  if (widths.size() > 1 || !isMixed() || !isRegisteredFor(audience, {kOther})) {
    remove(libraryKey());
    for (const Width& width : {kOwn, kOther})
      for (const Class& one : classes()) remove(classesKey(width, one.programId));
  }
  // A new user has none of these.
  if (audience == Audience::user) {
    for (const Width& width : widths)
      for (const wchar_t* part : {L"CLSID", L"Interface", L"TypeLib"})
        software.removeIfEmpty(classesKey(width, part));
    software.removeIfEmpty(classesKey(k64, L"Wow6432Node"));
  }
  return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
}

/// The user's add-ins are the same for both widths, the machine's are kept by width.
HRESULT unregisterAddIn(Audience audience, const std::vector<Width>& widths) {
  const Software software(rootOf(audience));
  LSTATUS status = ERROR_SUCCESS;
  for (const Width& width : widths) {
    const LSTATUS removed = software.remove(addInKey(width));
    if (status == ERROR_SUCCESS) status = removed;
    for (std::wstring path = kAddIns; path != L"Microsoft"; path.resize(path.rfind(L'\\')))
      software.removeIfEmpty({width.view, path});
  }
  return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
}

/// Whether COM reads the keys just written for the user. Not every system does: Wine does not before 9.
/// The same may stand there for the machine, so that it is asked for a value that does not.
bool isSeen() {
  const Software software(HKEY_CURRENT_USER);
  const std::wstring key = L"CLSID\\" + braced(CLSID_clsOpenPLUVO);
  const Value probe = {classesKey(kOwn, key), L"Seen", std::wstring()};
  if (software.write(probe) != ERROR_SUCCESS) return false;
  const bool seen = RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), probe.name.c_str(), RRF_RT_REG_SZ, nullptr,
                                 nullptr, nullptr) == ERROR_SUCCESS;
  software.removeValue(probe.key, probe.name);
  return seen;
}

/// Whether this DLL is registered there.
bool isOwnFor(Audience audience) {
  const auto server =
      Software(rootOf(audience)).read(below(classKey(kOwn, classes().front()), L"InprocServer32"), L"");
  if (!server || server->type != REG_SZ) return false;
  const std::wstring path(reinterpret_cast<const wchar_t*>(server->bytes.data()),
                          server->bytes.size() / sizeof(wchar_t));
  return lstrcmpiW(path.c_str(), modulePath().c_str()) == 0;
}

/// The values of the classes, for the DLLs of these widths.
std::vector<Value> valuesOf(const std::vector<Width>& widths) {
  std::vector<Value> values;
  for (const Width& width : widths) {
    const bool isOwn = width.view == kOwn.view;
    const std::wstring path = isOwn ? modulePath() : moduleFolder() + L"\\" + width.file;
    add(values, width, path);
  }
  return values;
}

bool areThere(const std::vector<Width>& widths) {
  return std::ranges::all_of(widths, [](const Width& width) {
    return width.view == kOwn.view ||
           GetFileAttributesW((moduleFolder() + L"\\" + width.file).c_str()) != INVALID_FILE_ATTRIBUTES;
  });
}

}  // namespace

HRESULT registerClass(Audience audience, Widths widths) {
  const std::vector<Width> all = widthsOf(widths);
  if (!areThere(all)) return HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);
  const std::vector<Value> values = valuesOf(all);
  Writing addIn(rootOf(audience));
  std::vector<Value> addIns;
  for (const Width& width : all) addAddIn(addIns, width);
  HRESULT status = addIn.write(addIns);
  if (FAILED(status)) return status;
  {
    Writing writing(rootOf(audience));
    status = writing.write(values);
    if (FAILED(status)) return status;
    if (audience == Audience::machine || isSeen()) {
      writing.keep();
      addIn.keep();
      return status;
    }
  }
  Writing writing(HKEY_LOCAL_MACHINE);
  status = writing.write(values);
  if (SUCCEEDED(status)) {
    writing.keep();
    addIn.keep();
  }
  return status;
}

HRESULT unregisterClass(Audience audience, Widths widths) {
  const std::vector<Width> all = widthsOf(widths);
  const bool wasUsers = isRegisteredFor(Audience::user, all);
  HRESULT status = S_OK;
  if (audience == Audience::machine) {
    status = unregisterFor(audience, all);
  } else {
    if (wasUsers) status = unregisterFor(Audience::user, all);
    // Registered for the machine as the user's classes are not looked at, or by an earlier version in both
    // places. What an administrator registered for all, a user has no right to remove.
    if (SUCCEEDED(status) &&
        (wasUsers ? isOwnFor(Audience::machine) : isRegisteredFor(Audience::machine, all))) {
      const HRESULT machine = unregisterFor(Audience::machine, all);
      if (!wasUsers) status = machine;
    }
  }
  const bool isOtherLeft = widths == Widths::own && isMixed() &&
                           (isRegisteredFor(Audience::user, {kOther}) ||
                            (audience == Audience::user && isRegisteredFor(Audience::machine, {kOther})));
  if (audience == Audience::user && isOtherLeft) return status;
  const HRESULT addIn = unregisterAddIn(audience, all);
  return FAILED(status) ? status : addIn;
}

}  // namespace pluvo::component
