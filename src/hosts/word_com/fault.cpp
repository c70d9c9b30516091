#include "fault.h"

#include "text.h"

#include <windows.h>
#include <wrl/client.h>

#include <optional>
#include <string>

namespace pluvo::word_com {

namespace {

struct Known {
  HRESULT status;
  std::int32_t number;
};
constexpr Known kKnown[] = {
    {DISP_E_UNKNOWNNAME, kNoSuchMember},
    {DISP_E_MEMBERNOTFOUND, kNoSuchMember},
    {DISP_E_TYPEMISMATCH, errors::kTypeMismatch},
    {DISP_E_BADVARTYPE, errors::kTypeMismatch},
    {DISP_E_OVERFLOW, errors::kOverflow},
    {DISP_E_BADINDEX, errors::kSubscriptOutOfRange},
    {DISP_E_PARAMNOTFOUND, kNamedArgumentNotFound},
    {DISP_E_PARAMNOTOPTIONAL, kArgumentNotOptional},
    {DISP_E_BADPARAMCOUNT, kWrongNumberOfArguments},
    {E_OUTOFMEMORY, errors::kOutOfMemory},
    {E_ACCESSDENIED, kPermissionDenied},
    {E_NOINTERFACE, kNoAutomation},
    {MK_E_UNAVAILABLE, kCannotCreateObject},
    {REGDB_E_CLASSNOTREG, kCannotCreateObject},
    {RPC_E_DISCONNECTED, kServerGone},
    {RPC_E_SERVER_DIED, kServerGone},
    {RPC_E_SERVER_DIED_DNE, kServerGone},
    {CO_E_OBJNOTCONNECTED, kServerGone},
    {HRESULT_FROM_WIN32(RPC_S_SERVER_UNAVAILABLE), kServerGone},
    {HRESULT_FROM_WIN32(RPC_S_CALL_FAILED), kServerGone},
};

std::int32_t numberOf(HRESULT status) {
  if (HRESULT_FACILITY(status) == FACILITY_CONTROL) return HRESULT_CODE(status);
  for (const Known& known : kKnown)
    if (known.status == status) return known.number;
  return static_cast<std::int32_t>(status);
}

/// A text the callee gave away.
std::u16string taken(BSTR text) {
  std::u16string result(utf16({text, SysStringLen(text)}));
  SysFreeString(text);
  return result;
}

std::u16string systemMessage(HRESULT status) {
  wchar_t* text = nullptr;
  const DWORD length = FormatMessageW(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
      static_cast<DWORD>(status), 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
  std::u16string message(utf16({text, length}));
  LocalFree(text);
  while (message.ends_with(u'\n') || message.ends_with(u'\r')) message.pop_back();
  return message;
}

/// The error object that the callee left on its thread, if any.
std::optional<errors::Fault> leftBehind(IDispatch& object) {
  Microsoft::WRL::ComPtr<ISupportErrorInfo> support;
  if (FAILED(object.QueryInterface(IID_PPV_ARGS(&support))) ||
      support->InterfaceSupportsErrorInfo(IID_IDispatch) != S_OK)
    return std::nullopt;
  Microsoft::WRL::ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, &info) != S_OK) return std::nullopt;
  BSTR description = nullptr;
  BSTR source = nullptr;
  BSTR helpFile = nullptr;
  DWORD helpContext = 0;
  info->GetDescription(&description);
  info->GetSource(&source);
  info->GetHelpFile(&helpFile);
  info->GetHelpContext(&helpContext);
  return errors::Fault(0, taken(description), taken(source), taken(helpFile),
                       static_cast<std::int32_t>(helpContext));
}

errors::Fault raised(EXCEPINFO& exception, HRESULT& status) {
  if (exception.pfnDeferredFillIn != nullptr) exception.pfnDeferredFillIn(&exception);
  // Either is given, and wCode is a number already.
  if (FAILED(exception.scode)) status = exception.scode;
  const std::int32_t number = exception.wCode != 0 ? exception.wCode : numberOf(status);
  errors::Fault fault(number, taken(exception.bstrDescription), taken(exception.bstrSource),
                      taken(exception.bstrHelpFile), static_cast<std::int32_t>(exception.dwHelpContext));
  exception = {};
  return fault;
}

}  // namespace

errors::Fault faultOf(HRESULT status, EXCEPINFO& exception, IDispatch& object, std::wstring_view member) {
  errors::Fault fault(0, {}, {});
  if (status == DISP_E_EXCEPTION) {
    fault = raised(exception, status);
  } else {
    if (auto left = leftBehind(object)) fault = *left;
    fault.number = numberOf(status);
    if (isBusy(status))
      fault.description = u"Word is busy, perhaps with a question of its own. Answer it and try again.";
  }
  if (fault.description.empty()) fault.description = systemMessage(status);
  if (fault.description.empty()) fault.description = u"Application-defined or object-defined error";
  fault.source = fault.source.empty() ? std::u16string(utf16(member))
                                      : fault.source + u" (" + std::u16string(utf16(member)) + u")";
  return fault;
}

}  // namespace pluvo::word_com
