#pragma once

#include "module.h"
#include "pluvo_interface.h"

#include <wrl/client.h>

#include <atomic>

namespace pluvo::component {

/// The automation class. All its objects share the one dialog.
class OpenPluvo final : public _clsOpenPLUVO, public ISupportErrorInfo {
 public:
  // Nothing may be thrown out of here; each answers a status.
  STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) noexcept override;
  STDMETHODIMP_(ULONG) AddRef() noexcept override;
  STDMETHODIMP_(ULONG) Release() noexcept override;

  STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override;
  STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) noexcept override;
  STDMETHODIMP GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                             DISPID* ids) noexcept override;
  STDMETHODIMP Invoke(DISPID member, REFIID reserved, LCID locale, WORD kind, DISPPARAMS* parameters,
                      VARIANT* result, EXCEPINFO* exception, UINT* wrong) noexcept override;

  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID interfaceId) noexcept override;

  STDMETHODIMP OpenPLUVO() noexcept override;

 private:
  ~OpenPluvo() = default;
  HRESULT needTypeInfo() noexcept;

  Alive alive_;
  std::atomic<ULONG> references_ = 1;
  Microsoft::WRL::ComPtr<ITypeInfo> typeInfo_;
};

}  // namespace pluvo::component
