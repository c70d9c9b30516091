#pragma once

#include "dual.h"
#include "module.h"
#include "pluvo_interface.h"

#include <atomic>

namespace pluvo::component {

/// The automation class. All its objects share the one dialog.
class OpenPluvo final : public Dual<_clsOpenPLUVO>, public ISupportErrorInfo {
 public:
  // Nothing may be thrown out of here; each answers a status.
  STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) noexcept override;
  STDMETHODIMP_(ULONG) AddRef() noexcept override;
  STDMETHODIMP_(ULONG) Release() noexcept override;

  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID interfaceId) noexcept override;

  STDMETHODIMP OpenPLUVO() noexcept override;

 private:
  ~OpenPluvo() = default;

  Alive alive_;
  std::atomic<ULONG> references_ = 1;
};

}  // namespace pluvo::component
