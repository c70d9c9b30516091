#include "dispatch.h"

#include "fault.h"

#include <objbase.h>

#include <string>
#include <utility>

namespace pluvo::word_com {

namespace {

std::wstring qualified(const wchar_t* interfaceName, const wchar_t* member) {
  return std::wstring(interfaceName) + L"." + member;
}

/// Lets calls and messages of the apartment in meanwhile, as the program that rejects ours may be waiting for
/// one.
void pause(DWORD milliseconds) {
  HANDLE never = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  if (never == nullptr) return Sleep(milliseconds);
  DWORD index = 0;
  if (CoWaitForMultipleHandles(0, milliseconds, 1, &never, &index) != RPC_S_CALLPENDING) Sleep(milliseconds);
  CloseHandle(never);
}

/// The status of the call, made again while Word does not take it, for some seconds. In Word's own process a
/// message filter would be Word's business.
template <class Call>
HRESULT untilTaken(Call&& call) {
  constexpr DWORD kFirstPause = 20;
  constexpr DWORD kLongestPause = 1300;
  HRESULT status = S_OK;
  for (DWORD wait = kFirstPause;; wait *= 2) {
    // So an error object found afterwards is of this call.
    SetErrorInfo(0, nullptr);
    status = call();
    if (!isBusy(status) || wait > kLongestPause) return status;
    pause(wait);
  }
}

}  // namespace

DISPID MemberIds::of(IDispatch& object, const wchar_t* interfaceName, const wchar_t* member) {
  const auto known = ids_.find({interfaceName, member});
  if (known != ids_.end()) return known->second;
  auto* name = const_cast<wchar_t*>(member);
  DISPID id = DISPID_UNKNOWN;
  const HRESULT status =
      untilTaken([&] { return object.GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id); });
  if (FAILED(status)) {
    EXCEPINFO none = {};
    throw faultOf(status, none, object, qualified(interfaceName, member));
  }
  ids_.emplace(std::pair(interfaceName, member), id);
  return id;
}

void Session::letGo() {
  // Releasing an object may release another of these.
  std::vector<Microsoft::WRL::ComPtr<IDispatch>> all;
  for (Held* each : held) all.push_back(std::move(each->object));
}

Held::Held(Microsoft::WRL::ComPtr<IDispatch> theObject, std::shared_ptr<Session> theSession)
    : object(std::move(theObject)), session(std::move(theSession)) {
  session->held.insert(this);
}

Object::Object(Microsoft::WRL::ComPtr<IDispatch> object, const wchar_t* interfaceName,
               std::shared_ptr<Session> session)
    : interface_(interfaceName) {
  if (!object) throw errors::objectNotSet();
  held_ = std::make_shared<Held>(std::move(object), std::move(session));
}

Variant Object::get(const wchar_t* property, const Arguments& arguments) const {
  return invoke(DISPATCH_PROPERTYGET, property, arguments);
}

void Object::put(const wchar_t* property, const Arguments& value) const {
  invoke(DISPATCH_PROPERTYPUT, property, value);
}

Variant Object::call(const wchar_t* method, const Arguments& arguments) const {
  return invoke(DISPATCH_METHOD, method, arguments);
}

Object Object::getObject(const wchar_t* property, const wchar_t* interfaceName,
                         const Arguments& arguments) const {
  return related(get(property, arguments), interfaceName);
}

std::optional<Object> Object::findObject(const wchar_t* property, const wchar_t* interfaceName) const {
  const Variant found = get(property);
  if (found.toObject() == nullptr) return std::nullopt;
  return related(found, interfaceName);
}

Object Object::callObject(const wchar_t* method, const wchar_t* interfaceName,
                          const Arguments& arguments) const {
  return related(call(method, arguments), interfaceName);
}

Object Object::related(const Variant& object, const wchar_t* interfaceName) const {
  return {object.toObject(), interfaceName, held_->session};
}

Variant Object::invoke(WORD kind, const wchar_t* member, const Arguments& arguments) const {
  const Microsoft::WRL::ComPtr<IDispatch> object = held_->object;
  if (!object) throw errors::Fault(kServerGone, u"Microsoft Word has been closed.");
  DISPID id = DISPID_UNKNOWN;
  try {
    id = session().ids.of(*object.Get(), interface_, member);
  } catch (const errors::Fault&) {
    session().log.refused(qualified(interface_, member), DISP_E_UNKNOWNNAME);
    throw;
  }
  std::vector<VARIANT> values = arguments.reversed();
  DISPID assigned = DISPID_PROPERTYPUT;
  const bool isPut = kind == DISPATCH_PROPERTYPUT;
  DISPPARAMS parameters = {values.data(), isPut ? &assigned : nullptr, static_cast<UINT>(values.size()),
                           isPut ? 1U : 0U};
  Variant result;
  EXCEPINFO exception = {};
  UINT wrong = 0;
  const HRESULT status = untilTaken([&] {
    return object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters,
                          isPut ? nullptr : result.out(), &exception, &wrong);
  });
  if (FAILED(status)) {
    const errors::Fault fault = faultOf(status, exception, *object.Get(), qualified(interface_, member));
    const bool isRaised = status == DISP_E_EXCEPTION && fault.number > 0;
    session().log.refused(qualified(interface_, member), isRaised ? kFirstNumbered + fault.number : status);
    throw errors::Fault(fault);
  }
  return result;
}

}  // namespace pluvo::word_com
