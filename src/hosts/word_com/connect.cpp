#include "fault.h"
#include "variant.h"
#include "word_com/application.h"

#include <oleacc.h>
#include <windows.h>
#include <wrl/client.h>

#include <string_view>

namespace pluvo::word_com {

namespace {

using Microsoft::WRL::ComPtr;

/// Word's class `Application`, which is the same in all versions.
constexpr CLSID kWord = {0x000209FF, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
/// Word's class `Global`, whose members are those a macro writes without an object.
constexpr CLSID kGlobal = {0x000209F0, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

bool isOfClass(HWND window, std::wstring_view name) {
  constexpr int kMost = 32;
  wchar_t found[kMost];
  const int length = GetClassNameW(window, found, kMost);
  return std::wstring_view(found, static_cast<std::size_t>(length)) == name;
}

bool isWords(HWND window) { return isOfClass(window, L"OpusApp"); }

ComPtr<IDispatch> applicationBehind(const ComPtr<IDispatch>& object) {
  if (!object) return nullptr;
  auto* name = const_cast<wchar_t*>(L"Application");
  DISPID id = DISPID_UNKNOWN;
  if (FAILED(object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id))) return nullptr;
  DISPPARAMS none = {};
  Variant result;
  if (FAILED(object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, result.out(),
                            nullptr, nullptr)))
    return nullptr;
  return result.toObject();
}

/// The argument of the enumeration of windows.
IDispatch** place(LPARAM found) {
  return reinterpret_cast<IDispatch**>(found);  // NOLINT(performance-no-int-to-ptr): Windows passes it on so
}

BOOL CALLBACK takeNativeObject(HWND window, LPARAM found) {
  if (!isOfClass(window, L"_WwG")) return TRUE;
  return FAILED(AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_NATIVEOM), IID_IDispatch,
                                           reinterpret_cast<void**>(place(found))));
}

BOOL CALLBACK takeObjectInside(HWND window, LPARAM found) {
  // One that hangs would have us wait. This thread's own does not, however long a macro has run.
  const bool answers =
      GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId() || IsHungAppWindow(window) == 0;
  if (isWords(window) && answers) EnumChildWindows(window, takeNativeObject, found);
  return *place(found) == nullptr;
}

/// Where this thread is Word's own it has a window that shows a document, and that window gives Word's object
/// for it.
ComPtr<IDispatch> applicationOfOwnWindow() {
  ComPtr<IDispatch> object;
  EnumThreadWindows(GetCurrentThreadId(), takeObjectInside, reinterpret_cast<LPARAM>(object.GetAddressOf()));
  return applicationBehind(object);
}

/// Of all windows on the screen, from the front on: that of the Word which the user had before him last.
ComPtr<IDispatch> applicationInFront() {
  ComPtr<IDispatch> object;
  EnumWindows(takeObjectInside, reinterpret_cast<LPARAM>(object.GetAddressOf()));
  return applicationBehind(object);
}

/// The application that this process itself offers.
ComPtr<IDispatch> applicationOfOwnClass() {
  ComPtr<IDispatch> global;
  CoCreateInstance(kGlobal, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&global));
  return applicationBehind(global);
}

/// Another process's object is a proxy here, which can tell how calls to it are secured.
bool isOfThisProcess(const ComPtr<IUnknown>& object) {
  ComPtr<IClientSecurity> proxy;
  return FAILED(object.As(&proxy));
}

/// From the table of running objects, in which each Word enters itself: this process's own, or the first.
ComPtr<IDispatch> running(bool ownOnly) {
  ComPtr<IRunningObjectTable> table;
  ComPtr<IMoniker> wanted;
  ComPtr<IEnumMoniker> all;
  // Classes stand there by this name.
  constexpr int kLength = 39;
  wchar_t name[kLength] = {};
  if (FAILED(GetRunningObjectTable(0, &table)) || StringFromGUID2(kWord, name, kLength) == 0 ||
      FAILED(CreateItemMoniker(L"!", name, &wanted)) || FAILED(table->EnumRunning(&all)))
    return nullptr;
  for (ComPtr<IMoniker> each; all->Next(1, each.ReleaseAndGetAddressOf(), nullptr) == S_OK;) {
    ComPtr<IUnknown> object;
    ComPtr<IDispatch> application;
    // One whose program is going may be told as found, and not be there.
    if (each->IsEqual(wanted.Get()) == S_OK && SUCCEEDED(table->GetObject(each.Get(), &object)) && object &&
        (!ownOnly || isOfThisProcess(object)) && SUCCEEDED(object.As(&application)))
      return application;
  }
  return nullptr;
}

BOOL CALLBACK noteOwn(HWND window, LPARAM found) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process != GetCurrentProcessId() || !isWords(window)) return TRUE;
  *reinterpret_cast<bool*>(found) = true;  // NOLINT(performance-no-int-to-ptr): Windows passes it on so
  return FALSE;
}

bool isInsideWord() {
  bool found = false;
  EnumWindows(noteOwn, reinterpret_cast<LPARAM>(&found));
  return found;
}

ComPtr<IDispatch> application() {
  for (const auto candidate : {applicationOfOwnWindow, applicationOfOwnClass})
    if (ComPtr<IDispatch> found = candidate()) return found;
  if (ComPtr<IDispatch> found = running(true)) return found;
  // Not another's: the user is in this one.
  if (isInsideWord()) return nullptr;
  if (ComPtr<IDispatch> found = applicationInFront()) return found;
  return running(false);
}

}  // namespace

std::shared_ptr<word::Application> connectToWord(const Manner& manner) {
  if (const ComPtr<IDispatch> found = application()) return applicationOf(found.Get(), manner);
  throw errors::Fault(kCannotCreateObject,
                      u"Microsoft Word is not running, or does not answer. Start Word and try again.");
}

}  // namespace pluvo::word_com
