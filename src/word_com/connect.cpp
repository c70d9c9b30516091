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

/// Word's class `Global`, whose members are those a macro writes without an object.
constexpr CLSID kGlobal = {0x000209F0, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

bool isOfClass(HWND window, std::wstring_view name) {
  constexpr int kMost = 32;
  wchar_t found[kMost];
  const int length = GetClassNameW(window, found, kMost);
  return std::wstring_view(found, static_cast<std::size_t>(length)) == name;
}

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

/// What is passed to the enumeration of windows.
IDispatch** place(LPARAM found) {
  return reinterpret_cast<IDispatch**>(found);  // NOLINT(performance-no-int-to-ptr): Windows passes it on so
}

BOOL CALLBACK takeNativeObject(HWND window, LPARAM found) {
  if (!isOfClass(window, L"_WwG")) return TRUE;
  return FAILED(AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_NATIVEOM), IID_IDispatch,
                                           reinterpret_cast<void**>(place(found))));
}

BOOL CALLBACK takeObjectInside(HWND window, LPARAM found) {
  if (isOfClass(window, L"OpusApp")) EnumChildWindows(window, takeNativeObject, found);
  return *place(found) == nullptr;
}

/// Where this thread is Word's own it has a window that shows a document, and that window gives Word's object
/// for it. The table of running objects would give whichever Word came first.
ComPtr<IDispatch> applicationOfOwnWindow() {
  ComPtr<IDispatch> object;
  EnumThreadWindows(GetCurrentThreadId(), takeObjectInside, reinterpret_cast<LPARAM>(object.GetAddressOf()));
  return applicationBehind(object);
}

/// What this process itself offers.
ComPtr<IDispatch> applicationOfOwnClass() {
  ComPtr<IDispatch> global;
  CoCreateInstance(kGlobal, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&global));
  return applicationBehind(global);
}

ComPtr<IDispatch> runningApplication() {
  CLSID word;
  ComPtr<IUnknown> running;
  ComPtr<IDispatch> application;
  if (SUCCEEDED(CLSIDFromProgID(L"Word.Application", &word)) &&
      SUCCEEDED(GetActiveObject(word, nullptr, &running)))
    running.As(&application);
  return application;
}

}  // namespace

std::shared_ptr<word::Application> connectToWord() {
  for (const auto candidate : {applicationOfOwnWindow, applicationOfOwnClass, runningApplication})
    if (const ComPtr<IDispatch> application = candidate()) return applicationOf(application.Get());
  throw errors::Fault(kCannotCreateObject,
                      u"Microsoft Word is not running, or does not answer. Start Word and try again.");
}

}  // namespace pluvo::word_com
