#include "variant.h"

#include "errors/fault.h"
#include "text.h"

#include <limits>

namespace pluvo::word_com {

namespace {

/// As the type wanted.
Variant changed(const VARIANT& value, VARTYPE type) {
  Variant result;
  if (FAILED(VariantChangeType(result.out(), const_cast<VARIANT*>(&value), 0, type)))
    throw errors::typeMismatch();
  return result;
}

}  // namespace

Variant Variant::missing() {
  Variant result;
  result.value_.vt = VT_ERROR;
  result.value_.scode = DISP_E_PARAMNOTFOUND;
  return result;
}

Variant Variant::integer(std::int32_t value) {
  Variant result;
  result.value_.vt = VT_I4;
  result.value_.lVal = value;
  return result;
}

Variant Variant::reference(std::int16_t* value) {
  Variant result;
  result.value_.vt = VT_BYREF | VT_I2;
  result.value_.piVal = value;
  return result;
}

Variant Variant::boolean(bool value) {
  Variant result;
  result.value_.vt = VT_BOOL;
  result.value_.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  return result;
}

Variant Variant::text(const std::u16string& value) {
  if (value.size() > std::numeric_limits<std::int32_t>::max() / sizeof(char16_t)) throw errors::outOfMemory();
  Variant result;
  result.value_.bstrVal = SysAllocStringLen(wide(value.data()), static_cast<UINT>(value.size()));
  if (result.value_.bstrVal == nullptr) throw errors::outOfMemory();
  result.value_.vt = VT_BSTR;
  return result;
}

std::int32_t Variant::toInteger() const {
  return value_.vt == VT_I4 ? value_.lVal : changed(value_, VT_I4).value_.lVal;
}

bool Variant::toBoolean() const {
  return (value_.vt == VT_BOOL ? value_.boolVal : changed(value_, VT_BOOL).value_.boolVal) != VARIANT_FALSE;
}

std::u16string Variant::toText() const {
  if (value_.vt == VT_EMPTY || value_.vt == VT_NULL) return {};
  if (value_.vt != VT_BSTR) return changed(value_, VT_BSTR).toText();
  return std::u16string(utf16({value_.bstrVal, SysStringLen(value_.bstrVal)}));
}

Microsoft::WRL::ComPtr<IDispatch> Variant::toObject() const {
  if (value_.vt == VT_DISPATCH) return value_.pdispVal;
  if (value_.vt == VT_EMPTY || value_.vt == VT_NULL) return nullptr;
  Microsoft::WRL::ComPtr<IDispatch> object;
  if (value_.vt != VT_UNKNOWN || value_.punkVal == nullptr ||
      FAILED(value_.punkVal->QueryInterface(IID_PPV_ARGS(&object))))
    throw errors::typeMismatch();
  return object;
}

VARIANT* Variant::out() {
  VariantClear(&value_);
  return &value_;
}

Arguments&& Arguments::missing(int count) && {
  for (int i = 0; i < count; ++i) values_.push_back(Variant::missing());
  return std::move(*this);
}

std::vector<VARIANT> Arguments::reversed() const {
  std::vector<VARIANT> result;
  result.reserve(values_.size());
  for (auto value = values_.rbegin(); value != values_.rend(); ++value) result.push_back(value->get());
  return result;
}

}  // namespace pluvo::word_com
