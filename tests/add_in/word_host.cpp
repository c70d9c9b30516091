// A program that has add-ins as Word has them, over the stand-in for Word. It finds them by their keys,
// connects them, shows the buttons of their ribbons, and runs a loop that keeps keys for itself. Closed, it
// disconnects them, also at work, and says which of their objects are left.
//
//   word_host STEPS [COMPONENT]
//
// has a user do the steps in the file. It registers the DLL beside it for as long as it runs, or takes the
// installed one.

#include "pluvo_interface.h"
#include "word_stand_in/objects.h"

// clang-format off
#include <windows.h>
#include <msxml2.h>
// clang-format on

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

using namespace pluvo::stand_in;

namespace {

constexpr const wchar_t* kAddIns = L"Software\\Microsoft\\Office\\Word\\Addins";
constexpr const wchar_t* kSettings = L"Software\\PLUVO";
constexpr UINT kFirstButton = 100;
int failures = 0;

bool expect(bool holds, const std::string& what) {
  if (holds) return true;
  ++failures;
  std::fflush(stdout);
  std::printf("FAILED %s\n", what.c_str());
  return false;
}

struct Text {
  BSTR text = nullptr;
  ~Text() { SysFreeString(text); }
};

struct Button {
  DISPID id = DISPID_UNKNOWN;
  HWND window = nullptr;
};

struct Host {
  ComPtr<IDispatch> word = application();
  ULONG heldBefore = 0;
  ComPtr<IDispatch> addIn;
  ComPtr<IDTExtensibility2> extensibility;
  SAFEARRAY* custom = SafeArrayCreateVector(VT_VARIANT, 0, 0);
  std::vector<Button> buttons;
  HWND window = nullptr;
  PROCESS_INFORMATION user = {};
};
Host* host = nullptr;

std::wstring attributeOf(IXMLDOMNode* node, const wchar_t* name) {
  ComPtr<IXMLDOMElement> element;
  VARIANT value = {};
  if (FAILED(node->QueryInterface(IID_IXMLDOMElement, &element)) ||
      element->getAttribute(const_cast<BSTR>(name), &value) != S_OK)
    return L"";
  const std::wstring text = value.bstrVal;
  VariantClear(&value);
  return text;
}

/// A button of the window for each of the ribbon's; what each names must be a member of the add-in.
void showRibbon(const wchar_t* markup) {
  ComPtr<IXMLDOMDocument> ribbon;
  ComPtr<IXMLDOMNodeList> named;
  CLSID parser = {};
  VARIANT_BOOL parsed = VARIANT_FALSE;
  if (FAILED(CLSIDFromProgID(L"Msxml2.DOMDocument.6.0", &parser)) ||
      FAILED(CoCreateInstance(parser, nullptr, CLSCTX_INPROC_SERVER, IID_IXMLDOMDocument, &ribbon)) ||
      ribbon->loadXML(const_cast<BSTR>(markup), &parsed) != S_OK ||
      FAILED(ribbon->selectNodes(
          const_cast<BSTR>(L"/*[local-name()='customUI'"
                           L" and namespace-uri()='http://schemas.microsoft.com/office/2006/01/customui']"
                           L"/*/*/*/*[local-name()='group']/*[@onAction]"),
          &named))) {
    expect(false, "the ribbon cannot be parsed");
    return;
  }
  for (ComPtr<IXMLDOMNode> each; named->nextNode(each.ReleaseAndGetAddressOf()) == S_OK;) {
    Button button;
    std::wstring callback = attributeOf(each.Get(), L"onAction");
    wchar_t* name = callback.data();
    expect(SUCCEEDED(host->addIn->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &button.id)),
           "a button names what the add-in has not");
    const std::wstring keys = attributeOf(each.Get(), L"keytip");
    expect(!keys.empty() && keys.size() <= 3, "no key tip that Word takes");
    expect(attributeOf(each.Get(), L"size") == L"large" && !attributeOf(each.Get(), L"screentip").empty(),
           "the button's look");
    const auto place = static_cast<int>(host->buttons.size()) * 90;
    button.window = CreateWindowExW(
        0, L"BUTTON", attributeOf(each.Get(), L"label").c_str(), WS_CHILD | WS_VISIBLE, 10 + place, 8, 80, 60,
        host->window, reinterpret_cast<HMENU>(kFirstButton + host->buttons.size()), nullptr, nullptr);
    host->buttons.push_back(button);
  }
  expect(host->buttons.size() == 1, "not one button");
}

/// How many windows of PLUVO's this thread has, those that are hidden among them unless `counts` leaves them
/// out.
int windowsLeft(BOOL(WINAPI* counts)(HWND) = IsWindow) {
  struct Count {
    BOOL(WINAPI* counts)(HWND);
    int left = 0;
  } count{counts};
  EnumThreadWindows(
      GetCurrentThreadId(),
      [](HWND window, LPARAM given) -> BOOL {
        auto& found = *reinterpret_cast<Count*>(given);
        wchar_t name[16] = {};
        GetClassNameW(window, name, 11);
        if (std::wstring_view(name) == L"PLUVO form" && found.counts(window) != 0) ++found.left;
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&count));
  return count.left;
}

void press(const Button& button) {
  VARIANT control = {};
  control.vt = VT_DISPATCH;
  DISPPARAMS given = {&control, nullptr, 1, 0};
  const HRESULT status = host->addIn->Invoke(button.id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                             &given, nullptr, nullptr, nullptr);
  expect(SUCCEEDED(status), "the callback fails");
  expect(windowsLeft(IsWindowVisible) > 0, "the callback waits until the user has closed the dialog");
}

ULONG holders() {
  host->word->AddRef();
  return host->word->Release();
}

/// What Word does at its start with the keys of add-ins.
bool connect() {
  HKEY keys = nullptr;
  wchar_t name[128] = {};
  DWORD length = 128;
  DWORD behaviour = 0;
  DWORD size = sizeof behaviour;
  CLSID classId = {};
  if (RegOpenKeyExW(HKEY_CURRENT_USER, kAddIns, 0, KEY_READ, &keys) != ERROR_SUCCESS ||
      RegEnumKeyExW(keys, 0, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS ||
      RegGetValueW(keys, name, L"LoadBehavior", RRF_RT_REG_DWORD, nullptr, &behaviour, &size) !=
          ERROR_SUCCESS)
    return expect(false, "there are no keys of an add-in");
  RegCloseKey(keys);
  ComPtr<IRibbonExtensibility> ribbon;
  Text markup;
  const bool isThere =
      expect(behaviour == 3, "it is not loaded at the start") &&
      expect(SUCCEEDED(CLSIDFromProgID(name, &classId)), "the key names no class") &&
      expect(SUCCEEDED(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&host->addIn))),
             "the class cannot be created") &&
      expect(SUCCEEDED(host->addIn.As(&host->extensibility)) && SUCCEEDED(host->addIn.As(&ribbon)),
             "it has not both interfaces");
  if (!isThere) return false;
  host->heldBefore = holders();
  expect(host->extensibility->OnConnection(host->word.Get(), ext_cm_Startup, nullptr, &host->custom) == S_OK,
         "connection");
  expect(ribbon->GetCustomUI(const_cast<BSTR>(L"Microsoft.Word.Document"), &markup.text) == S_OK, "ribbon");
  showRibbon(markup.text);
  expect(host->extensibility->OnStartupComplete(&host->custom) == S_OK, "start");
  return true;
}

void disconnect() {
  expect(host->extensibility->OnBeginShutdown(&host->custom) == S_OK, "shutdown");
  expect(host->extensibility->OnDisconnection(ext_dm_HostShutdown, &host->custom) == S_OK, "disconnection");
  host->extensibility.Reset();
  expect(host->addIn.Reset() == 0, "the add-in is held");
  expect(world().calls.alive == 1, "objects of Word are held: " + std::to_string(world().calls.alive - 1));
  expect(holders() == host->heldBefore, "Word is held");
}

LRESULT CALLBACK frame(HWND window, UINT message, WPARAM wide, LPARAM parameter) {
  if (host != nullptr && window == host->window) {
    if (message == WM_COMMAND && LOWORD(wide) >= kFirstButton) {
      press(host->buttons.at(LOWORD(wide) - kFirstButton));
      return 0;
    }
    if (message == WM_CLOSE) {
      DestroyWindow(window);
      if (host->addIn) disconnect();
      PostQuitMessage(0);
      return 0;
    }
  }
  return DefWindowProcW(window, message, wide, parameter);
}

/// Word's own: what its accelerators mean goes to no window.
void loop() {
  for (MSG message; GetMessageW(&message, nullptr, 0, 0) > 0;) {
    const bool isKey = message.message == WM_KEYDOWN || message.message == WM_CHAR;
    if (isKey && (message.wParam == VK_TAB || message.wParam == VK_DELETE || message.wParam == VK_RETURN ||
                  GetKeyState(VK_CONTROL) < 0))
      continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
    if (host->user.hProcess != nullptr && host->window != nullptr && IsWindow(host->window) &&
        WaitForSingleObject(host->user.hProcess, 0) == WAIT_OBJECT_0) {
      SendMessageW(host->window, WM_CLOSE, 0, 0);
    }
  }
}

void makeWindow() {
  WNDCLASSW kind = {};
  kind.lpfnWndProc = frame;
  kind.hInstance = GetModuleHandleW(nullptr);
  kind.lpszClassName = L"OpusApp";
  kind.hbrBackground = GetSysColorBrush(COLOR_APPWORKSPACE);
  RegisterClassW(&kind);
  host->window = CreateWindowExW(0, kind.lpszClassName, L"one.doc - Word", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                                 20, 20, 900, 700, nullptr, nullptr, kind.hInstance, nullptr);
}

std::filesystem::path ownFolder() {
  wchar_t path[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  return std::filesystem::path(path).parent_path();
}

HRESULT entry(HMODULE library, const char* name) {
  auto* const found =
      reinterpret_cast<HRESULT(WINAPI*)()>(reinterpret_cast<void*>(GetProcAddress(library, name)));
  return found == nullptr ? E_FAIL : found();
}

void startUser(const std::wstring& steps, const std::filesystem::path& outcome) {
  std::wstring line =
      L"\"" + (ownFolder() / L"user.exe").wstring() + L"\" \"" + steps + L"\" \"" + outcome.wstring() + L"\"";
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  expect(CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &host->user) != 0,
         "there is no user");
  // So that the loop looks after him.
  SetTimer(host->window, 1, 200, nullptr);
}

std::string textOf(const std::filesystem::path& file) {
  std::ifstream stream(file);
  std::string text;
  std::getline(stream, text);
  return text;
}

/// What was ended in the midst of something has its messages yet to come.
void waitForTheLastWindow() {
  for (int wait = 0; wait < 3'000; ++wait) {
    for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0;) DispatchMessageW(&message);
    if (windowsLeft() == 0) return;
    Sleep(20);
  }
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) {
  int count = 0;
  LPWSTR* const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  if (count < 2) return 2;
  const bool isTest = count == 3;
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  // A test's settings are taken back after it; an installed component stays as it is.
  HMODULE component = nullptr;
  if (isTest) {
    component = LoadLibraryW((ownFolder() / arguments[2]).c_str());
    expect(entry(component, "DllRegisterServer") == S_OK, "it cannot be registered");
    const DWORD careful = 1;
    RegSetKeyValueW(HKEY_CURRENT_USER, kSettings, L"Careful", REG_DWORD, &careful, sizeof careful);
  }
  const auto folder = std::filesystem::temp_directory_path() / L"pluvo_add_in";
  std::filesystem::create_directories(folder / L"PLUVO");
  world().reset();
  ways().entersTable = false;
  world().defaultPaths[2] = folder.u16string();
  host = new Host;
  const Document document =
      world().add(u"C:\\Letters\\one.doc", {.text = u"A cat sat. The cat ran. No Cat."});
  makeWindow();
  // Scripts find it there; without it the add-in has only the objects handed to it.
  DWORD inTable = 0;
  if (!isTest) RegisterActiveObject(host->word.Get(), kWordClass, ACTIVEOBJECT_STRONG, &inTable);
  if (connect()) {
    startUser(arguments[1], folder / L"outcome");
    loop();
    waitForTheLastWindow();
    if (!isTest) RevokeActiveObject(inTable, nullptr);
  }
  expect(windowsLeft() == 0, "windows are left: " + std::to_string(windowsLeft()));
  WaitForSingleObject(host->user.hProcess, 40000);
  const std::string outcome = textOf(folder / L"outcome");
  expect(outcome == "done", "what the user did: " + outcome);
  expect(!std::filesystem::exists(folder / L"PLUVO" / L"errors.txt"), "errors are reported");
  expect(world().screenUpdating, "Word does not draw");
  std::filesystem::remove_all(folder);
  if (isTest) {
    expect(entry(component, "DllCanUnloadNow") == S_OK, "it has something that lives");
    entry(component, "DllUnregisterServer");
    RegDeleteTreeW(HKEY_CURRENT_USER, kSettings);
  }
  if (failures == 0) std::puts("all as wanted");
  std::fflush(stdout);
  return failures;
}
