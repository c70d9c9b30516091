#include "scripted_object.h"

#include <algorithm>
#include <utility>

namespace pluvo::word_com {

namespace {

std::string narrow(const std::wstring& text) {
  std::string result;
  for (const wchar_t unit : text) result += unit < 0x7F && unit != 0 ? static_cast<char>(unit) : '?';
  return result;
}

std::string shown(const VARIANT& value) {
  switch (value.vt) {
    case VT_I4:
      return "I4 " + std::to_string(value.lVal);
    case VT_BYREF | VT_I2:
      return "I2& " + std::to_string(*value.piVal);
    case VT_BOOL:
      return "BOOL " + std::to_string(value.boolVal);
    case VT_BSTR:
      return "BSTR " + narrow({value.bstrVal, SysStringLen(value.bstrVal)});
    case VT_ERROR:
      return value.scode == DISP_E_PARAMNOTFOUND ? "missing" : "ERROR";
    default:
      return "type " + std::to_string(value.vt);
  }
}

/// Objects of one interface have the same ids; here all have.
std::vector<std::wstring>& namesById() {
  static std::vector<std::wstring> names;
  return names;
}

}  // namespace

Microsoft::WRL::ComPtr<ScriptedObject> ScriptedObject::make(std::string name, std::shared_ptr<CallLog> log) {
  return new ScriptedObject(std::move(name), std::move(log));
}

void ScriptedObject::keeps(const std::wstring& member, std::int32_t value) {
  on(member, [kept = std::make_shared<std::int32_t>(value)](auto& arguments, VARIANT& result, EXCEPINFO&) {
    if (!arguments.empty()) {
      *kept = arguments[0].vt == VT_BOOL ? arguments[0].boolVal : arguments[0].lVal;
    } else {
      result.vt = VT_I4;
      result.lVal = *kept;
    }
    return S_OK;
  });
}

void ScriptedObject::answers(const std::wstring& member, std::function<std::int32_t()> value) {
  on(member, [value = std::move(value)](auto&, VARIANT& result, EXCEPINFO&) {
    result.vt = VT_I4;
    result.lVal = value();
    return S_OK;
  });
}

void ScriptedObject::answersText(const std::wstring& member, std::function<std::wstring()> value) {
  on(member, [value = std::move(value)](auto&, VARIANT& result, EXCEPINFO&) {
    const std::wstring text = value();
    result.vt = VT_BSTR;
    result.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return S_OK;
  });
}

void ScriptedObject::answersObject(const std::wstring& member, std::function<IDispatch*()> object) {
  on(member, [object = std::move(object)](auto&, VARIANT& result, EXCEPINFO&) {
    result.vt = VT_DISPATCH;
    result.pdispVal = object();
    if (result.pdispVal != nullptr) result.pdispVal->AddRef();
    return S_OK;
  });
}

void ScriptedObject::accepts(const std::wstring& member) {
  on(member, [](auto&, VARIANT&, EXCEPINFO&) { return S_OK; });
}

STDMETHODIMP ScriptedObject::QueryInterface(REFIID interfaceId, void** object) {
  *object = nullptr;
  if (interfaceId == IID_IUnknown || interfaceId == IID_IDispatch) *object = static_cast<IDispatch*>(this);
  if (interfaceId == IID_ISupportErrorInfo) *object = static_cast<ISupportErrorInfo*>(this);
  if (*object == nullptr) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

STDMETHODIMP_(ULONG) ScriptedObject::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

STDMETHODIMP ScriptedObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT /*count*/, LCID, DISPID* ids) {
  ++idQuestions;
  if (!members_.contains(names[0])) return DISP_E_UNKNOWNNAME;
  auto& known = namesById();
  const auto found = std::ranges::find(known, names[0]);
  ids[0] = static_cast<DISPID>(std::distance(known.begin(), found));
  if (found == known.end()) known.emplace_back(names[0]);
  return S_OK;
}

STDMETHODIMP ScriptedObject::Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters,
                                    VARIANT* result, EXCEPINFO* exception, UINT* /*wrong*/) {
  const auto member = members_.find(namesById()[static_cast<std::size_t>(id)]);
  if (member == members_.end()) return DISP_E_MEMBERNOTFOUND;
  std::vector<VARIANT> arguments(parameters->rgvarg, parameters->rgvarg + parameters->cArgs);
  std::ranges::reverse(arguments);

  const bool isPut = kind == DISPATCH_PROPERTYPUT;
  if (isPut != (parameters->cNamedArgs == 1 && parameters->rgdispidNamedArgs[0] == DISPID_PROPERTYPUT))
    return DISP_E_BADPARAMCOUNT;
  std::string list;
  for (const VARIANT& argument : arguments) list += (list.empty() ? "" : ", ") + shown(argument);
  if (!isPut && kind != DISPATCH_PROPERTYGET) list.insert(0, "(").append(")");
  if (kind == DISPATCH_PROPERTYGET && !list.empty()) list.insert(0, "(").append(")");
  log_->push_back(name_ + "." + narrow(member->first) + (isPut ? " = " : "") + list);

  VARIANT answer = {};
  const HRESULT status = member->second(arguments, answer, *exception);
  if (result != nullptr) *result = answer;
  return status;
}

}  // namespace pluvo::word_com
