#include "dispatch.h"

#include "fault.h"

#include <string>

namespace pluvo::word_com {

namespace {

std::wstring qualified(const wchar_t* interfaceName, const wchar_t* member) {
  return std::wstring(interfaceName) + L"." + member;
}

}  // namespace

DISPID MemberIds::of(IDispatch& object, const wchar_t* interfaceName, const wchar_t* member) {
  const auto known = ids_.find({interfaceName, member});
  if (known != ids_.end()) return known->second;
  auto* name = const_cast<wchar_t*>(member);
  DISPID id = DISPID_UNKNOWN;
  const HRESULT status = object.GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(status)) {
    EXCEPINFO none = {};
    throw faultOf(status, none, qualified(interfaceName, member));
  }
  ids_.emplace(std::pair(interfaceName, member), id);
  return id;
}

Object::Object(Microsoft::WRL::ComPtr<IDispatch> object, const wchar_t* interfaceName,
               std::shared_ptr<MemberIds> ids)
    : object_(std::move(object)), interface_(interfaceName), ids_(std::move(ids)) {
  if (!object_) throw errors::objectNotSet();
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

Object Object::callObject(const wchar_t* method, const wchar_t* interfaceName,
                          const Arguments& arguments) const {
  return related(call(method, arguments), interfaceName);
}

Object Object::related(const Variant& object, const wchar_t* interfaceName) const {
  return {object.toObject(), interfaceName, ids_};
}

Variant Object::invoke(WORD kind, const wchar_t* member, const Arguments& arguments) const {
  const DISPID id = ids_->of(*object_.Get(), interface_, member);
  std::vector<VARIANT> values = arguments.reversed();
  DISPID assigned = DISPID_PROPERTYPUT;
  const bool isPut = kind == DISPATCH_PROPERTYPUT;
  DISPPARAMS parameters = {values.data(), isPut ? &assigned : nullptr, static_cast<UINT>(values.size()),
                           isPut ? 1U : 0U};
  Variant result;
  EXCEPINFO exception = {};
  UINT wrong = 0;
  const HRESULT status = object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters,
                                         isPut ? nullptr : result.out(), &exception, &wrong);
  if (FAILED(status)) throw faultOf(status, exception, qualified(interface_, member));
  return result;
}

}  // namespace pluvo::word_com
