#pragma once

#include <oaidl.h>
#include <wrl/client.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace pluvo::word_com {

/// Every call, as "Range.SetRange(I4 3, I4 5)"; a property that is set as "Find.Text = BSTR a".
using CallLog = std::vector<std::string>;

/// An automation object that does what a test says, and writes down what it is asked.
class ScriptedObject final : public IDispatch, public ISupportErrorInfo {
 public:
  /// Arguments come in the order of their declaration. The result is empty before.
  using Member =
      std::function<HRESULT(std::vector<VARIANT>& arguments, VARIANT& result, EXCEPINFO& exception)>;

  static Microsoft::WRL::ComPtr<ScriptedObject> make(std::string name, std::shared_ptr<CallLog> log);

  void on(const std::wstring& member, Member script) { members_[member] = std::move(script); }
  /// A property that keeps what it is given.
  void keeps(const std::wstring& member, std::int32_t value);
  void answers(const std::wstring& member, std::function<std::int32_t()> value);
  void answersText(const std::wstring& member, std::function<std::wstring()> value);
  void answersObject(const std::wstring& member, std::function<IDispatch*()> object);
  void accepts(const std::wstring& member);

  /// How often ids were asked for.
  int idQuestions = 0;
  /// Whether it says that it leaves error objects.
  bool leavesErrors = false;

  STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override;
  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override;
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO* exception, UINT* wrong) override;
  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID) override { return leavesErrors ? S_OK : S_FALSE; }

 private:
  ScriptedObject(std::string name, std::shared_ptr<CallLog> log)
      : name_(std::move(name)), log_(std::move(log)) {}
  ~ScriptedObject() = default;

  std::string name_;
  std::shared_ptr<CallLog> log_;
  ULONG references_ = 0;
  std::map<std::wstring, Member> members_;
};

}  // namespace pluvo::word_com
