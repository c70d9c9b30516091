#include "automation.h"

#include "arguments.h"
#include "errors/fault.h"

#include <algorithm>
#include <new>

namespace pluvo::stand_in {
namespace {

BSTR newString(std::u16string_view text) {
  const std::wstring wide(text.begin(), text.end());
  BSTR string = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
  if (string == nullptr) throw std::bad_alloc();
  return string;
}

bool sameName(std::u16string_view name, LPCOLESTR other) {
  const std::wstring wide(name.begin(), name.end());
  return CompareStringOrdinal(wide.data(), static_cast<int>(wide.size()), other, -1, TRUE) == CSTR_EQUAL;
}

void explain(EXCEPINFO* exception, HRESULT code, std::u16string_view text) {
  if (exception == nullptr) return;
  *exception = {};
  exception->scode = code;
  exception->bstrSource = newString(u"Microsoft Word");
  exception->bstrDescription = newString(text);
  exception->bstrHelpFile = newString(u"wdmain11.chm");
  exception->dwHelpContext = static_cast<DWORD>(code & 0xFFFF) + 20000;
}

constexpr HRESULT codeOf(std::int32_t number) {
  return static_cast<HRESULT>(0x800A0000U + static_cast<unsigned>(number));
}

}  // namespace

Value::Value(std::int32_t number) : Value() {
  variant_.vt = VT_I4;
  variant_.lVal = number;
}

Value::Value(bool flag) : Value() {
  variant_.vt = VT_BOOL;
  variant_.boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
}

Value::Value(const std::u16string& text) : Value() {
  variant_.bstrVal = newString(text);
  variant_.vt = VT_BSTR;
}

Object::Object(const Interface& kind, Observer* observer) : kind_(kind), observer_(observer) {
  if (observer_ != nullptr) observer_->born(kind_);
}

Object::~Object() {
  if (observer_ != nullptr) observer_->gone(kind_);
}

HRESULT Object::QueryInterface(REFIID id, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IDispatch)) return E_NOINTERFACE;
  *object = static_cast<IDispatch*>(this);
  AddRef();
  return S_OK;
}

ULONG Object::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT Object::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = 0;
  return S_OK;
}

HRESULT Object::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
  if (info != nullptr) *info = nullptr;
  return DISP_E_BADINDEX;
}

HRESULT Object::GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  if (!IsEqualIID(id, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
  if (names == nullptr || ids == nullptr || count == 0) return E_POINTER;
  std::fill_n(ids, count, DISPID_UNKNOWN);
  // A member's id is one more than the index of the first entry that has its name.
  const auto found = std::find_if(kind_.members.begin(), kind_.members.end(), [&](const Member& member) {
    return sameName(member.name, names[0]) && has(member.name);
  });
  if (found == kind_.members.end()) return DISP_E_UNKNOWNNAME;
  ids[0] =
      found->name == kind_.standsFor ? DISPID_VALUE : static_cast<DISPID>(found - kind_.members.begin()) + 1;
  HRESULT status = S_OK;
  for (UINT i = 1; i < count; ++i) {
    const auto parameter = std::find_if(found->parameters.begin(), found->parameters.end(),
                                        [&](const Parameter& each) { return sameName(each.name, names[i]); });
    if (parameter == found->parameters.end()) {
      status = DISP_E_UNKNOWNNAME;
    } else {
      ids[i] = static_cast<DISPID>(parameter - found->parameters.begin());
    }
  }
  return status;
}

const Member* Object::memberOf(DISPID id, WORD flags) const {
  std::u16string_view name = kind_.standsFor;
  if (id != DISPID_VALUE) {
    if (id < 1 || static_cast<std::size_t>(id) > kind_.members.size()) return nullptr;
    name = kind_.members[static_cast<std::size_t>(id) - 1].name;
  }
  for (const Member& member : kind_.members) {
    const WORD kind = member.verb == Verb::get   ? DISPATCH_PROPERTYGET
                      : member.verb == Verb::put ? DISPATCH_PROPERTYPUT
                                                 : DISPATCH_METHOD;
    if (member.name == name && (flags & kind) != 0) return &member;
  }
  return nullptr;
}

Value Object::call(const Member& member, const DISPPARAMS& arguments) {
  if (observer_ != nullptr) observer_->called(kind_, member.verb, member.name, arguments);
  if (member.verb != Verb::put) return member.run(*this, take(member.parameters, arguments));
  // The new value of a property is named so, and is the first in the caller's array.
  if (arguments.cNamedArgs != 1 || arguments.rgdispidNamedArgs[0] != DISPID_PROPERTYPUT) {
    throw Failure{DISP_E_PARAMNOTFOUND};
  }
  DISPPARAMS plain = arguments;
  plain.cNamedArgs = 0;
  return member.run(*this, take(member.parameters, plain));
}

HRESULT Object::Invoke(DISPID id, REFIID interfaceId, LCID locale, WORD flags, DISPPARAMS* arguments,
                       VARIANT* result, EXCEPINFO* exception, UINT* wrongArgument) {
  if (!IsEqualIID(interfaceId, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
  if (arguments == nullptr) return E_POINTER;
  const Member* const member = memberOf(id, flags);
  if (member == nullptr) return DISP_E_MEMBERNOTFOUND;

  const Held<Object> kept(this);
  DISPPARAMS none{};
  // Arguments to a property that takes none are for the member that its object stands for: Documents(1).
  const bool forItsObject = member->verb == Verb::get && member->parameters.empty() && arguments->cArgs > 0;
  HRESULT status = S_OK;
  try {
    Value value = call(*member, forItsObject ? none : *arguments);
    if (observer_ != nullptr) observer_->returned(value);
    if (forItsObject) {
      if (value.variant().vt != VT_DISPATCH) return DISP_E_BADPARAMCOUNT;
      return value.variant().pdispVal->Invoke(DISPID_VALUE, interfaceId, locale, flags, arguments, result,
                                              exception, wrongArgument);
    }
    if (result != nullptr) *result = value.release();
    return S_OK;
  } catch (const WordError& error) {
    explain(exception, codeOf(error.number), error.text);
    status = codeOf(error.number);
  } catch (const errors::Fault& fault) {
    explain(exception, codeOf(fault.number), fault.description);
    status = codeOf(fault.number);
  } catch (const Failure& failure) {
    if (wrongArgument != nullptr) *wrongArgument = failure.argument;
    if (observer_ != nullptr) observer_->failed(failure.status);
    return failure.status;
  } catch (...) {
    if (observer_ != nullptr) observer_->failed(E_FAIL);
    return E_FAIL;
  }
  if (observer_ != nullptr) observer_->failed(status);
  return DISP_E_EXCEPTION;
}

}  // namespace pluvo::stand_in
