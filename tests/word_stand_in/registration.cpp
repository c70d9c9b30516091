#include "registration.h"

#include "word_objects.h"

#include <combaseapi.h>

namespace pluvo::stand_in {
namespace {

struct Class {
  const wchar_t* programId;
  GUID id;
};
constexpr Class kClasses[] = {{L"Word.Application", kWordClass}, {L"PLUVO.StandIn", kControlClass}};

/// Where classes are entered: for this user; and where the system does not look there (Wine before 9), for
/// everybody.
struct Root {
  HKEY key;
  const wchar_t* prefix;
};
const Root kRoots[] = {{HKEY_CURRENT_USER, L"Software\\Classes\\"}, {HKEY_CLASSES_ROOT, L""}};

std::wstring textOf(const GUID& id) {
  wchar_t buffer[40] = {};
  StringFromGUID2(id, buffer, 40);
  return buffer;
}

std::wstring serverKeyOf(const Class& each, const wchar_t* serverKind) {
  return L"CLSID\\" + textOf(each.id) + L"\\" + serverKind;
}

bool isEntered(const Root& root, const Class& each, const wchar_t* serverKind, const std::wstring& server) {
  wchar_t found[MAX_PATH] = {};
  DWORD size = sizeof(found);
  return RegGetValueW(root.key, (root.prefix + serverKeyOf(each, serverKind)).c_str(), nullptr, RRF_RT_REG_SZ,
                      nullptr, found, &size) == ERROR_SUCCESS &&
         server == found;
}

LSTATUS enter(const Root& root, const Class& each, const wchar_t* serverKind, const std::wstring& server) {
  const auto set = [&](const std::wstring& key, const wchar_t* name, const std::wstring& value) {
    return RegSetKeyValueW(root.key, (root.prefix + key).c_str(), name, REG_SZ, value.c_str(),
                           static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
  };
  const std::wstring id = textOf(each.id);
  LSTATUS status = set(std::wstring(each.programId) + L"\\CLSID", nullptr, id);
  if (status == ERROR_SUCCESS) status = set(L"CLSID\\" + id + L"\\ProgID", nullptr, each.programId);
  if (status == ERROR_SUCCESS) status = set(serverKeyOf(each, serverKind), nullptr, server);
  if (status == ERROR_SUCCESS) status = set(serverKeyOf(each, serverKind), L"ThreadingModel", L"Apartment");
  return status;
}

}  // namespace

HRESULT enterClasses(const wchar_t* serverKind, const std::wstring& server) {
  for (const Class& each : kClasses) {
    for (const Root& root : kRoots) {
      if (isEntered(kRoots[1], each, serverKind, server)) break;
      const LSTATUS status = enter(root, each, serverKind, server);
      if (status != ERROR_SUCCESS) return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
    }
  }
  return S_OK;
}

HRESULT removeClasses(const wchar_t* serverKind, const std::wstring& server) {
  for (const Class& each : kClasses) {
    for (const Root& root : kRoots) {
      // Another's entry, real Word's perhaps, is not touched.
      if (!isEntered(root, each, serverKind, server)) continue;
      RegDeleteTreeW(root.key, (std::wstring(root.prefix) + each.programId).c_str());
      RegDeleteTreeW(root.key, (root.prefix + (L"CLSID\\" + textOf(each.id))).c_str());
    }
  }
  return S_OK;
}

}  // namespace pluvo::stand_in
