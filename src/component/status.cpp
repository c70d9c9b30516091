#include "status.h"

#include "errors/context.h"
#include "pluvo_interface.h"

#include <oleauto.h>
#include <wrl/client.h>

#include <string>

namespace pluvo::component {

namespace {

/// Numbers of the run-time and of Word are 0x800A0000 and the number; others are statuses already.
HRESULT statusOf(std::int32_t number) {
  constexpr std::int32_t kMostNumbered = 0xFFFF;
  if (number < 0) return static_cast<HRESULT>(number);
  if (number == 0 || number > kMostNumbered) return E_FAIL;
  return MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, number);
}

wchar_t* wide(std::u16string& text) { return reinterpret_cast<wchar_t*>(text.data()); }

void leave(errors::Fault fault) {
  Microsoft::WRL::ComPtr<ICreateErrorInfo> info;
  if (FAILED(CreateErrorInfo(&info))) return;
  info->SetGUID(IID__clsOpenPLUVO);
  info->SetSource(wide(fault.source));
  info->SetDescription(wide(fault.description));
  if (!fault.helpFile.empty()) info->SetHelpFile(wide(fault.helpFile));
  info->SetHelpContext(static_cast<DWORD>(fault.helpContext));
  Microsoft::WRL::ComPtr<IErrorInfo> left;
  if (SUCCEEDED(info.As(&left))) SetErrorInfo(0, left.Get());
}

}  // namespace

HRESULT statusInFlight() noexcept {
  try {
    const errors::Fault fault = errors::faultInFlight();
    leave(fault);
    return statusOf(fault.number);
  } catch (...) {
    return E_OUTOFMEMORY;  // for the fault's own texts
  }
}

}  // namespace pluvo::component
