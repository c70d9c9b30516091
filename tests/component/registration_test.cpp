#include "loaded_component.h"
#include "pluvo_interface.h"

#include <gmock/gmock.h>
#include <wrl/client.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

namespace pluvo::component {
namespace {

using Keys = std::set<std::wstring>;

/// The keys right below the parts of the registry where classes and add-ins are.
Keys classKeys() {
  Keys keys;
  for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
    for (const wchar_t* part :
         {L"Classes", L"Classes\\CLSID", L"Classes\\Interface", L"Classes\\TypeLib", L"Classes\\Wow6432Node",
          L"Classes\\Wow6432Node\\CLSID", L"Classes\\Wow6432Node\\Interface", L"Microsoft",
          L"Microsoft\\Office\\Word\\Addins"}) {
      HKEY key = nullptr;
      const std::wstring path = std::wstring(L"Software\\") + part;
      if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) continue;
      constexpr DWORD kMost = 256;
      wchar_t name[kMost];
      for (DWORD i = 0, length = kMost;
           RegEnumKeyExW(key, i, name, &length, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
           ++i, length = kMost)
        keys.insert((root == HKEY_CURRENT_USER ? L"user " : L"machine ") + path + L"\\" + name);
      RegCloseKey(key);
    }
  }
  return keys;
}

/// What was not there before.
std::vector<std::wstring> left(const Keys& before) {
  const Keys now = classKeys();
  std::vector<std::wstring> added;
  std::ranges::set_difference(now, before, std::back_inserter(added));
  return added;
}

bool canBeCreated() {
  Microsoft::WRL::ComPtr<_clsOpenPLUVO> object;
  CLSID classId = {};
  return SUCCEEDED(CLSIDFromProgID(L"PLUVO.clsOpenPLUVO", &classId)) && classId == CLSID_clsOpenPLUVO &&
         SUCCEEDED(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&object)));
}

bool hasTypeLibrary() {
  Microsoft::WRL::ComPtr<ITypeLib> library;
  return SUCCEEDED(LoadRegTypeLib(LIBID_PLUVO, 1, 0, 0, &library));
}

/// A key in which only such keys can be made as go with the system's end. No lasting key can be written.
class Barrier {
 public:
  explicit Barrier(std::wstring path) : path_(std::move(path)) {
    RegDeleteTreeW(HKEY_CURRENT_USER, path_.c_str());
    HKEY key = nullptr;
    RegCreateKeyExW(HKEY_CURRENT_USER, path_.c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS,
                    nullptr, &key, nullptr);
    RegCloseKey(key);
  }
  Barrier(const Barrier&) = delete;
  Barrier& operator=(const Barrier&) = delete;
  ~Barrier() { RegDeleteTreeW(HKEY_CURRENT_USER, path_.c_str()); }

 private:
  std::wstring path_;
};

std::wstring braced(REFGUID id) {
  wchar_t text[40] = {};
  StringFromGUID2(id, text, 40);
  return text;
}

/// What stands there for the machine stands there for the user as well, as an earlier version left it that
/// was registered twice.
void copyToUser() {
  for (const std::wstring& key :
       {L"CLSID\\" + braced(CLSID_clsOpenPLUVO), L"TypeLib\\" + braced(LIBID_PLUVO),
        L"Interface\\" + braced(IID__clsOpenPLUVO), std::wstring(L"PLUVO.clsOpenPLUVO")}) {
    const std::wstring path = L"Software\\Classes\\" + key;
    HKEY to = nullptr;
    RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &to, nullptr);
    EXPECT_EQ(RegCopyTreeW(HKEY_LOCAL_MACHINE, path.c_str(), to), ERROR_SUCCESS);
    RegCloseKey(to);
  }
}

TEST(Registration, ThatFailsLeavesTheOneBefore) {
  const LoadedComponent component;
  for (const wchar_t* all : {L"user", L"machine"}) component.install(false, all);
  const Keys before = classKeys();
  const std::wstring classes = L"Software\\Classes\\";
  const std::wstring classId = braced(CLSID_clsOpenPLUVO);
  const std::wstring interfaceId = braced(IID__clsOpenPLUVO);
  // In the midst of the writing: keys after it could be written.
  const std::wstring interfaceKey = classes + L"Interface\\" + interfaceId;
  const std::wstring server = classes + L"CLSID\\" + classId + L"\\InprocServer32";
  const std::wstring old = L"C:\\Old\\pluvo.dll";
  ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, server.c_str(), nullptr, REG_EXPAND_SZ, old.c_str(),
                            static_cast<DWORD>((old.size() + 1) * sizeof(wchar_t))),
            ERROR_SUCCESS);
  {
    const Barrier barrier(interfaceKey);
    EXPECT_EQ(component.install(true, L"user"), HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE));
  }
  wchar_t path[64] = {};
  DWORD size = sizeof path;
  DWORD type = 0;
  EXPECT_EQ(
      RegGetValueW(HKEY_CURRENT_USER, server.c_str(), nullptr, RRF_RT_ANY | RRF_NOEXPAND, &type, path, &size),
      ERROR_SUCCESS);
  EXPECT_EQ(path, old);
  EXPECT_EQ(type, DWORD{REG_EXPAND_SZ});
  HKEY key = nullptr;
  EXPECT_NE(RegOpenKeyExW(HKEY_CURRENT_USER, (classes + L"PLUVO.clsOpenPLUVO").c_str(), 0, KEY_READ, &key),
            ERROR_SUCCESS)
      << "half of the new one is there";
  EXPECT_EQ(component.install(false, L"user"), S_OK);
  EXPECT_THAT(left(before), testing::IsEmpty());
}

bool isThere(const std::wstring& path) {
  HKEY key = nullptr;
  for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
    if (RegOpenKeyExW(root, (L"Software\\" + path).c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) continue;
    RegCloseKey(key);
    return true;
  }
  return false;
}

/// The DLL of the other width lies beside it, and is not loaded.
class OtherWidth {
 public:
  OtherWidth() { std::ofstream(path_).put(' '); }
  OtherWidth(const OtherWidth&) = delete;
  OtherWidth& operator=(const OtherWidth&) = delete;
  ~OtherWidth() { std::filesystem::remove(path_); }

 private:
  std::filesystem::path path_ = std::filesystem::path(LoadedComponent::path())
                                    .replace_filename(sizeof(void*) == 8 ? L"pluvo32.dll" : L"pluvo64.dll");
};

#ifdef _WIN64
TEST(Registration, OfBothWidthsKeepsWhatTheOtherNeeds) {
  const LoadedComponent component;
  component.install(false, L"both");
  EXPECT_EQ(component.install(true, L"both"), HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND)) << "half of it";
  const OtherWidth other;
  const std::wstring addIn = L"Microsoft\\Office\\Word\\Addins\\PLUVO.Connect";
  const std::wstring otherClass = L"Classes\\Wow6432Node\\CLSID\\" + braced(CLSID_Connect);
  const Keys before = classKeys();
  EXPECT_EQ(component.install(true, L"both"), S_OK);
  EXPECT_TRUE(isThere(otherClass));
  EXPECT_EQ(component.install(false, L"user"), S_OK);
  for (const std::wstring& left : {otherClass, addIn, std::wstring(L"Classes\\PLUVO.Connect")})
    EXPECT_TRUE(isThere(left)) << testing::PrintToString(left);
  EXPECT_FALSE(canBeCreated());
  EXPECT_EQ(component.install(false, L"both"), S_OK);
  EXPECT_THAT(left(before), testing::IsEmpty());
}
#endif

/// How often it was registered does not matter, nor where an earlier version in the same place wrote.
TEST(Registration, LeavesNoKey) {
  const LoadedComponent component;
  const OtherWidth other;
  for (const wchar_t* all : {L"user", L"machine"}) component.install(false, all);
  const Keys before = classKeys();
  constexpr const wchar_t* kRows[][2] = {{L"user", L""},      {L"", L"user"},     {L"machine", L"machine"},
                                         {L"user", L"again"}, {L"both", L"both"}, {L"both", L"user"}};
  for (const auto& [first, second] : kRows) {
    for (const int times : {1, 2}) {
      EXPECT_EQ(component.install(true, first), S_OK);
      if (second == std::wstring_view(L"again")) {
        copyToUser();
      } else if (times == 2) {
        EXPECT_EQ(component.install(true, second), S_OK);
      }
      EXPECT_TRUE(canBeCreated());
      EXPECT_TRUE(hasTypeLibrary());
      EXPECT_EQ(component.install(false, first), S_OK);
      EXPECT_FALSE(canBeCreated());
      EXPECT_THAT(left(before), testing::IsEmpty()) << times;
    }
  }
  EXPECT_EQ(component.registerServer(), S_OK);
  for (int i = 0; i < 2; ++i) EXPECT_EQ(component.unregisterServer(), S_OK);
  EXPECT_EQ(component.install(true, L"everybody"), E_INVALIDARG);
  EXPECT_THAT(left(before), testing::IsEmpty());
}

}  // namespace
}  // namespace pluvo::component
