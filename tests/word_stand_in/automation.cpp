#include "automation.h"

#include "base/text.h"
#include "call_book.h"

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

std::u16string textOf(BSTR string) { return {string, string + SysStringLen(string)}; }

/// Control characters by their numbers.
std::u16string quoted(const std::u16string& text) {
  std::u16string all;
  for (const char16_t unit : text) {
    all += unit < u' ' ? u"<" + base::decimal(unit) + u">" : std::u16string(1, unit);
  }
  return u"\"" + all + u"\"";
}

std::u16string words(const VARIANT& variant) {
  switch (variant.vt) {
    case VT_I4:
      return u"VT_I4 " + base::decimal(variant.lVal);
    case VT_BYREF | VT_I2:
      return u"VT_BYREF|VT_I2 " + base::decimal(*variant.piVal);
    case VT_BOOL:
      return u"VT_BOOL " + base::decimal(variant.boolVal);
    case VT_BSTR:
      return u"VT_BSTR " + quoted(textOf(variant.bstrVal));
    case VT_ERROR:
      return variant.scode == DISP_E_PARAMNOTFOUND ? u"missing" : u"VT_ERROR";
    default:
      return u"VT_" + base::decimal(variant.vt);
  }
}

/// A member's id is that of its name, whatever it is a member of.
std::vector<std::wstring>& namesById() {
  static auto* const names = new std::vector<std::wstring>();
  return *names;
}

bool isNamed(const Member& member, std::u16string_view name) {
  return std::u16string_view(member.call).substr(member.call.find(u' ') + 1) == name;
}

}  // namespace

errors::Fault refusal(std::int32_t number) {
  return {number, u"Word's error " + base::decimal(number), u"Microsoft Word"};
}

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

Value::Value(const ComPtr<IDispatch>& object) : Value() {
  variant_.vt = VT_DISPATCH;
  object.CopyTo(&variant_.pdispVal);
}

VARIANT Arguments::changed(UINT i, VARTYPE type) const {
  if (i >= given_.cArgs) throw Failure{DISP_E_BADPARAMCOUNT};
  VARIANT changed;
  VariantInit(&changed);
  const HRESULT status = VariantChangeType(&changed, &given_.rgvarg[given_.cArgs - 1 - i], 0, type);
  if (FAILED(status)) throw Failure{status};
  return changed;
}

std::u16string Arguments::text(UINT i) const {
  VARIANT changed = this->changed(i, VT_BSTR);
  const std::u16string text = textOf(changed.bstrVal);
  VariantClear(&changed);
  return text;
}

std::u16string Arguments::words() const {
  std::u16string all;
  for (UINT i = given_.cArgs; i-- > 0;) {
    all += stand_in::words(given_.rgvarg[i]) + (i > 0 ? u", " : u"");
  }
  return all;
}

Object::Object(std::u16string_view name, std::vector<Member> members, CallBook* calls)
    : name_(name), members_(std::move(members)), calls_(calls) {
  if (calls_ != nullptr) ++calls_->alive;
}

Object::~Object() {
  if (calls_ != nullptr) --calls_->alive;
}

HRESULT Object::QueryInterface(REFIID id, void** object) {
  *object = nullptr;
  if (id == IID_IUnknown || id == IID_IDispatch) *object = static_cast<IDispatch*>(this);
  if (id == IID_ISupportErrorInfo) *object = static_cast<ISupportErrorInfo*>(this);
  if (*object == nullptr) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

ULONG Object::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT Object::InterfaceSupportsErrorInfo(REFIID) {
  return calls_ != nullptr && calls_->leavesErrors ? S_OK : S_FALSE;
}

HRESULT Object::GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) {
  const std::wstring wide = names[0];
  const std::u16string name(wide.begin(), wide.end());
  if (calls_ != nullptr && calls_->lacks(name_ + u"." + name)) return DISP_E_UNKNOWNNAME;
  if (!std::ranges::any_of(members_, [&](const Member& member) { return isNamed(member, name); }))
    return DISP_E_UNKNOWNNAME;
  auto& known = namesById();
  const auto found = std::ranges::find(known, wide);
  ids[0] = static_cast<DISPID>(found - known.begin());
  if (found == known.end()) known.push_back(wide);
  return S_OK;
}

const Member* Object::memberOf(DISPID id, WORD kind) const {
  if (id < 0 || static_cast<std::size_t>(id) >= namesById().size()) return nullptr;
  const std::wstring& name = namesById()[static_cast<std::size_t>(id)];
  const auto found = std::ranges::find_if(members_, [&](const Member& member) {
    const WORD own = member.call.starts_with(u"get")   ? DISPATCH_PROPERTYGET
                     : member.call.starts_with(u"put") ? DISPATCH_PROPERTYPUT
                                                       : DISPATCH_METHOD;
    return (own & kind) != 0 && isNamed(member, std::u16string(name.begin(), name.end()));
  });
  return found == members_.end() ? nullptr : &*found;
}

HRESULT Object::Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* given, VARIANT* result,
                       EXCEPINFO* exception, UINT*) {
  const Member* const member = memberOf(id, kind);
  if (member == nullptr) return DISP_E_MEMBERNOTFOUND;
  // The new value of a property is named so.
  const bool isNamed = given->cNamedArgs == 1 && given->rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
  if (isNamed != ((kind & DISPATCH_PROPERTYPUT) != 0)) return DISP_E_PARAMNOTFOUND;

  const ComPtr<Object> kept(this);
  const Arguments arguments(*given);
  VARIANT answer{};
  EXCEPINFO raised{};
  HRESULT status = S_OK;
  try {
    const std::u16string call =
        std::u16string(member->call).insert(member->call.find(u' ') + 1, name_ + u".");
    const auto scripted = calls_ != nullptr ? calls_->called(call, arguments, answer, raised) : std::nullopt;
    if (scripted) {
      status = *scripted;
    } else {
      answer = member->run(arguments).release();
    }
  } catch (const errors::Fault& fault) {
    status = DISP_E_EXCEPTION;
    const unsigned code = 0x800A0000U + static_cast<unsigned>(fault.number);
    raised.scode = static_cast<SCODE>(code);
    raised.bstrSource = newString(fault.source);
    raised.bstrDescription = newString(fault.description);
  } catch (const Failure& failure) {
    status = failure.status;
  } catch (...) {
    status = E_FAIL;
  }
  if (result != nullptr) {
    *result = answer;
  } else {
    VariantClear(&answer);
  }
  if (exception != nullptr) *exception = raised;
  return status;
}

}  // namespace pluvo::stand_in
