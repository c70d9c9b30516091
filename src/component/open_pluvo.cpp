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
