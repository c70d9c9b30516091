#pragma once

#include "module.h"
#include "status.h"

#include <oaidl.h>
#include <wrl/client.h>

namespace pluvo::component {

/// A dual interface of the type library: its members can be called by number, too.
template <class Interface>
class Dual : public Interface {
 public:
  STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept final {
    if (count == nullptr) return E_POINTER;
    *count = 1;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT index, LCID /*locale*/, ITypeInfo** info) noexcept final {
    if (info == nullptr) return E_POINTER;
    *info = nullptr;
    if (index != 0) return DISP_E_BADINDEX;
    if (const HRESULT status = needTypeInfo(); FAILED(status)) return status;
    return typeInfo_.CopyTo(info);
  }
  STDMETHODIMP GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID /*locale*/,
                             DISPID* ids) noexcept final {
    if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (const HRESULT status = needTypeInfo(); FAILED(status)) return status;
    return DispGetIDsOfNames(typeInfo_.Get(), names, count, ids);
  }
  STDMETHODIMP Invoke(DISPID member, REFIID reserved, LCID /*locale*/, WORD kind, DISPPARAMS* parameters,
                      VARIANT* result, EXCEPINFO* exception, UINT* wrong) noexcept final {
    if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (const HRESULT status = needTypeInfo(); FAILED(status)) return status;
    // The caller may let go of the object while the dialog is up.
    const Microsoft::WRL::ComPtr<Interface> kept(this);
    return DispInvoke(static_cast<Interface*>(this), typeInfo_.Get(), member, kind, parameters, result,
                      exception, wrong);
  }

 protected:
  ~Dual() = default;

 private:
  HRESULT needTypeInfo() noexcept {
    if (typeInfo_) return S_OK;
    return guardedStatus([&] {
      Microsoft::WRL::ComPtr<ITypeLib> library;
      const HRESULT status = LoadTypeLibEx(modulePath().c_str(), REGKIND_NONE, &library);
      return FAILED(status) ? status : library->GetTypeInfoOfGuid(__uuidof(Interface), &typeInfo_);
    });
  }

  Microsoft::WRL::ComPtr<ITypeInfo> typeInfo_;
};

}  // namespace pluvo::component
