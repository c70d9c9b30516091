#include "arguments.h"

#include <optional>

namespace pluvo::stand_in {
namespace {

bool isMissing(const VARIANT& variant) {
  return variant.vt == VT_ERROR && variant.scode == DISP_E_PARAMNOTFOUND;
}

/// What a reference to a VARIANT refers to; scripts pass their variables so.
const VARIANT& behind(const VARIANT& variant) {
  return variant.vt == (VT_BYREF | VT_VARIANT) ? *variant.pvarVal : variant;
}

/// The types that Word itself takes where it declares a VARIANT: those that Basic has.
bool holds(Type type, VARTYPE given) {
  const VARTYPE plain = given & static_cast<VARTYPE>(~VT_BYREF);
  if (type == Type::text) return plain == VT_BSTR;
  if (type == Type::either && plain == VT_BSTR) return true;
  return plain == VT_I2 || plain == VT_I4 || plain == VT_UI1 || plain == VT_R4 || plain == VT_R8 ||
         plain == VT_BOOL;
}

Arguments::Argument change(const Parameter& parameter, const VARIANT& given, UINT place) {
  const VARIANT& source = behind(given);
  if (parameter.variant && !holds(parameter.type, source.vt)) throw Failure{DISP_E_TYPEMISMATCH, place};
  const bool isText =
      parameter.type == Type::text || (parameter.type == Type::either && (source.vt & ~VT_BYREF) == VT_BSTR);
  const VARTYPE wanted = isText ? VT_BSTR : parameter.type == Type::flag ? VT_BOOL : VT_I4;
  VARIANT changed;
  VariantInit(&changed);
  const HRESULT status = VariantChangeType(&changed, const_cast<VARIANT*>(&source), 0, wanted);
  if (FAILED(status)) throw Failure{status, place};

  Arguments::Argument argument;
  argument.given = true;
  argument.isText = isText;
  if (wanted == VT_I4) argument.number = changed.lVal;
  if (wanted == VT_BOOL) argument.number = changed.boolVal;
  if (wanted == VT_BSTR && changed.bstrVal != nullptr) {
    argument.text.assign(changed.bstrVal, changed.bstrVal + SysStringLen(changed.bstrVal));
  }
  VariantClear(&changed);
  return argument;
}

/// Which of the caller's arguments belongs to a parameter. The id of a named one is the parameter's index.
std::optional<UINT> placeOf(std::size_t parameter, const DISPPARAMS& given) {
  for (UINT i = 0; i < given.cNamedArgs; ++i) {
    if (given.rgdispidNamedArgs[i] == static_cast<DISPID>(parameter)) return i;
  }
  const UINT positional = given.cArgs - given.cNamedArgs;
  if (parameter >= positional) return std::nullopt;
  return given.cArgs - 1 - static_cast<UINT>(parameter);
}

}  // namespace

Arguments take(const std::vector<Parameter>& parameters, const DISPPARAMS& given) {
  if (given.cArgs > parameters.size()) throw Failure{DISP_E_BADPARAMCOUNT};
  std::vector<Arguments::Argument> taken(parameters.size());
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    const auto place = placeOf(i, given);
    if (place && !isMissing(behind(given.rgvarg[*place]))) {
      taken[i] = change(parameters[i], given.rgvarg[*place], *place);
    } else if (!parameters[i].optional) {
      throw Failure{place ? DISP_E_PARAMNOTOPTIONAL : DISP_E_BADPARAMCOUNT, place.value_or(0)};
    }
  }
  return Arguments(std::move(taken));
}

}  // namespace pluvo::stand_in
