#include "automation.h"
#include "errors/text.h"

namespace pluvo::stand_in {
namespace {

std::u16string nameOf(VARTYPE type) {
  switch (type & ~VT_BYREF) {
    case VT_EMPTY:
      return u"VT_EMPTY";
    case VT_NULL:
      return u"VT_NULL";
    case VT_I2:
      return u"VT_I2";
    case VT_I4:
      return u"VT_I4";
    case VT_R4:
      return u"VT_R4";
    case VT_R8:
      return u"VT_R8";
    case VT_BSTR:
      return u"VT_BSTR";
    case VT_DISPATCH:
      return u"VT_DISPATCH";
    case VT_ERROR:
      return u"VT_ERROR";
    case VT_BOOL:
      return u"VT_BOOL";
    case VT_VARIANT:
      return u"VT_VARIANT";
    case VT_UI1:
      return u"VT_UI1";
    default:
      return u"VT_" + errors::decimal(type & ~VT_BYREF);
  }
}

std::u16string quoted(BSTR string) {
  std::u16string text = u"\"";
  for (UINT i = 0; i < SysStringLen(string); ++i) {
    const auto unit = static_cast<char16_t>(string[i]);
    if (unit < u' ') {
      text += u"<" + errors::decimal(unit) + u">";
    } else {
      text += unit;
    }
  }
  return text + u"\"";
}

std::u16string valueOf(const VARIANT& variant) {
  const bool byReference = (variant.vt & VT_BYREF) != 0;
  switch (variant.vt & ~VT_BYREF) {
    case VT_I2:
      return u" " + errors::decimal(byReference ? *variant.piVal : variant.iVal);
    case VT_I4:
      return u" " + errors::decimal(byReference ? *variant.plVal : variant.lVal);
    case VT_UI1:
      return u" " + errors::decimal(byReference ? *variant.pbVal : variant.bVal);
    case VT_BOOL:
      return u" " + errors::decimal(byReference ? *variant.pboolVal : variant.boolVal);
    case VT_BSTR:
      return u" " + quoted(byReference ? *variant.pbstrVal : variant.bstrVal);
    case VT_VARIANT:
      return u" " + describe(*variant.pvarVal);
    default:
      return {};
  }
}

}  // namespace

std::u16string describe(const VARIANT& variant) {
  if (variant.vt == VT_ERROR && variant.scode == DISP_E_PARAMNOTFOUND) return u"missing";
  return ((variant.vt & VT_BYREF) != 0 ? u"VT_BYREF|" : u"") + nameOf(variant.vt) + valueOf(variant);
}

}  // namespace pluvo::stand_in
