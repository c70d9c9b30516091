#pragma once

#include "errors/fault.h"

#include <oaidl.h>

#include <string_view>

namespace pluvo::word_com {

/// The run-time's numbers for what fails short of Word.
enum AutomationFault : std::int32_t {
  kPermissionDenied = 70,
  kCannotCreateObject = 429,
  kNoAutomation = 430,
  kNoSuchMember = 438,
  kNamedArgumentNotFound = 448,
  kArgumentNotOptional = 449,
  kWrongNumberOfArguments = 450,
  kServerGone = 462,
};

/// What a failing status of that object's member ("Range.Delete") says. Takes the exception's texts over, and
/// has them filled in first where that was put off. The thread's error object is believed only where the
/// called object says that it sets one. It is to be cleared before the call.
errors::Fault faultOf(HRESULT status, EXCEPINFO& exception, IDispatch& object, std::wstring_view member);

/// Word did not take the call, because it is at something else, a box of its own perhaps.
constexpr bool isBusy(HRESULT status) {
  return status == RPC_E_CALL_REJECTED || status == RPC_E_SERVERCALL_RETRYLATER;
}

/// 0x800A0000 and the number.
constexpr HRESULT kFirstNumbered = static_cast<HRESULT>(0x800A0000U);

}  // namespace pluvo::word_com
