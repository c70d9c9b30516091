#include "open_pluvo.h"

#include "session.h"
#include "status.h"

namespace pluvo::component {

STDMETHODIMP OpenPluvo::QueryInterface(REFIID interfaceId, void** object) noexcept {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (interfaceId == IID_IUnknown || interfaceId == IID_IDispatch || interfaceId == IID__clsOpenPLUVO) {
    *object = static_cast<_clsOpenPLUVO*>(this);
  } else if (interfaceId == IID_ISupportErrorInfo) {
    *object = static_cast<ISupportErrorInfo*>(this);
  } else {
    return E_NOINTERFACE;
  }
  AddRef();
  return S_OK;
}

STDMETHODIMP_(ULONG) OpenPluvo::AddRef() noexcept { return ++references_; }

STDMETHODIMP_(ULONG) OpenPluvo::Release() noexcept {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT OpenPluvo::needTypeInfo() noexcept {
  if (typeInfo_) return S_OK;
  return guardedStatus([&] {
    Microsoft::WRL::ComPtr<ITypeLib> library;
    const HRESULT status = LoadTypeLibEx(modulePath().c_str(), REGKIND_NONE, &library);
    return FAILED(status) ? status : library->GetTypeInfoOfGuid(IID__clsOpenPLUVO, &typeInfo_);
  });
}

STDMETHODIMP OpenPluvo::GetTypeInfoCount(UINT* count) noexcept {
  if (count == nullptr) return E_POINTER;
  *count = 1;
  return S_OK;
}

STDMETHODIMP OpenPluvo::GetTypeInfo(UINT index, LCID /*locale*/, ITypeInfo** info) noexcept {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  if (const HRESULT status = needTypeInfo(); FAILED(status)) return status;
  return typeInfo_.CopyTo(info);
}

STDMETHODIMP OpenPluvo::GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID /*locale*/,
                                      DISPID* ids) noexcept {
  if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (const HRESULT status = needTypeInfo(); FAILED(status)) return status;
  return DispGetIDsOfNames(typeInfo_.Get(), names, count, ids);
}

STDMETHODIMP OpenPluvo::Invoke(DISPID member, REFIID reserved, LCID /*locale*/, WORD kind,
                               DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                               UINT* wrong) noexcept {
  if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (const HRESULT status = needTypeInfo(); FAILED(status)) return status;
  // The caller may let go of the object while the dialog is up.
  const Microsoft::WRL::ComPtr<OpenPluvo> kept(this);
  return DispInvoke(static_cast<_clsOpenPLUVO*>(this), typeInfo_.Get(), member, kind, parameters, result,
                    exception, wrong);
}

STDMETHODIMP OpenPluvo::InterfaceSupportsErrorInfo(REFIID interfaceId) noexcept {
  return interfaceId == IID__clsOpenPLUVO ? S_OK : S_FALSE;
}

STDMETHODIMP OpenPluvo::OpenPLUVO() noexcept {
  const Microsoft::WRL::ComPtr<OpenPluvo> kept(this);
  return guardedStatus([] {
    openDialog();
    return S_OK;
  });
}

}  // namespace pluvo::component
