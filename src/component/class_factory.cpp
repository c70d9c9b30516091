#include "class_factory.h"

namespace pluvo::component {

STDMETHODIMP ClassFactory::QueryInterface(REFIID interfaceId, void** object) noexcept {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (interfaceId != IID_IUnknown && interfaceId != IID_IClassFactory) return E_NOINTERFACE;
  *object = static_cast<IClassFactory*>(this);
  AddRef();
  return S_OK;
}

STDMETHODIMP_(ULONG) ClassFactory::AddRef() noexcept { return ++references_; }

STDMETHODIMP_(ULONG) ClassFactory::Release() noexcept {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

STDMETHODIMP ClassFactory::CreateInstance(IUnknown* outer, REFIID interfaceId, void** object) noexcept {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (outer != nullptr) return CLASS_E_NOAGGREGATION;
  IUnknown* made = maker_();
  if (made == nullptr) return E_OUTOFMEMORY;
  const HRESULT status = made->QueryInterface(interfaceId, object);
  made->Release();
  return status;
}

STDMETHODIMP ClassFactory::LockServer(BOOL lock) noexcept {
  lockServer(lock != FALSE);
  return S_OK;
}

}  // namespace pluvo::component
