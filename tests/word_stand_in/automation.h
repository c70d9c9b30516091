#pragma once

#include "errors/fault.h"

#include <oaidl.h>
#include <wrl/client.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

/// Objects that are driven by name (IDispatch), each with a table of its members.
namespace pluvo::stand_in {

using Microsoft::WRL::ComPtr;

class CallBook;

/// A call that Word refuses by a number of its own, which reaches the caller as an exception.
errors::Fault refusal(std::int32_t number);

/// A call that fails with a bare status.
struct Failure {
  HRESULT status;
};

/// What a member returns; owns what it holds.
class Value {
 public:
  Value() { VariantInit(&variant_); }
  Value(std::int32_t number);              // NOLINT(google-explicit-constructor)
  Value(bool flag);                        // NOLINT(google-explicit-constructor)
  Value(const std::u16string& text);       // NOLINT(google-explicit-constructor)
  Value(const ComPtr<IDispatch>& object);  // NOLINT(google-explicit-constructor)
  Value(const void*) = delete;             ///< so that no pointer is a truth
  Value(Value&& other) noexcept : variant_(std::exchange(other.variant_, VARIANT{})) {}
  Value& operator=(Value&&) = delete;
  ~Value() { VariantClear(&variant_); }

  VARIANT release() { return std::exchange(variant_, VARIANT{}); }

 private:
  VARIANT variant_;
};

/// The arguments of one call in the order of their declaration. They are taken for what they can be changed
/// into; what cannot, or is not there, fails the call.
class Arguments {
 public:
  explicit Arguments(const DISPPARAMS& given) : given_(given) {}
  std::int32_t number(UINT i) const { return changed(i, VT_I4).lVal; }
  std::int32_t number(UINT i, std::int32_t ifMissing) const {
    return i < given_.cArgs ? number(i) : ifMissing;
  }
  UINT count() const { return given_.cArgs; }
  bool flag(UINT i, bool ifMissing) const { return isMissing(i) ? ifMissing : flag(i); }
  bool isMissing(UINT i) const {
    return i >= given_.cArgs || given_.rgvarg[given_.cArgs - 1 - i].vt == VT_ERROR;
  }
  bool flag(UINT i) const { return changed(i, VT_BOOL).boolVal != VARIANT_FALSE; }
  std::u16string text(UINT i) const;
  /// As they were given, in words: `VT_I4 0, missing`.
  std::u16string words() const;

 private:
  VARIANT changed(UINT i, VARTYPE type) const;

  const DISPPARAMS& given_;
};

struct Member {
  /// "get Text", "put Text", "call Select".
  std::u16string call;
  std::function<Value(const Arguments&)> run;

  /// The work may take the arguments or not, and may return something or not.
  template <class Work>
  Member(std::u16string_view name, Work work)
      : call(name), run([work](const Arguments& arguments) -> Value {
          if constexpr (!std::is_invocable_v<const Work&, const Arguments&>) {
            return Member(u"", [work](const Arguments&) { return work(); }).run(arguments);
          } else if constexpr (std::is_void_v<std::invoke_result_t<const Work&, const Arguments&>>) {
            work(arguments);
            return {};
          } else {
            return work(arguments);
          }
        }) {}
};

/// One object driven by name. Its members keep what they work on. Not for several threads.
class Object final : public IDispatch, public ISupportErrorInfo {
 public:
  /// Without a book its calls are nobody's business.
  Object(std::u16string_view name, std::vector<Member> members, CallBook* calls);
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  STDMETHODIMP QueryInterface(REFIID id, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override;
  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override;
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* given, VARIANT* result,
                      EXCEPINFO* exception, UINT*) override;
  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID) override;

 private:
  ~Object();
  const Member* memberOf(DISPID id, WORD kind) const;

  std::u16string name_;
  std::vector<Member> members_;
  CallBook* calls_;
  ULONG references_ = 0;
};

}  // namespace pluvo::stand_in
