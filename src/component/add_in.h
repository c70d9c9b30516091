#pragma once

#include "dual.h"
#include "module.h"
#include "pluvo_interface.h"

#include <atomic>

namespace pluvo::component {

/// The add-in: PLUVO's button in Word's ribbon. It makes nothing before the button is pressed, answers at
/// once, and lets nothing fail: Word turns off an add-in that is slow or fails.
class AddIn final : public Dual<_Connect>, public Dual<IDTExtensibility2>, public Dual<IRibbonExtensibility> {
 public:
  STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) noexcept override;
  STDMETHODIMP_(ULONG) AddRef() noexcept override;
  STDMETHODIMP_(ULONG) Release() noexcept override;

  STDMETHODIMP OnConnection(IDispatch* word, ext_ConnectMode mode, IDispatch* addIn,
                            SAFEARRAY** custom) noexcept override;
  STDMETHODIMP OnDisconnection(ext_DisconnectMode mode, SAFEARRAY** custom) noexcept override;
  STDMETHODIMP OnAddInsUpdate(SAFEARRAY** custom) noexcept override;
  STDMETHODIMP OnStartupComplete(SAFEARRAY** custom) noexcept override;
  STDMETHODIMP OnBeginShutdown(SAFEARRAY** custom) noexcept override;

  STDMETHODIMP GetCustomUI(BSTR ribbonId, BSTR* markup) noexcept override;

  STDMETHODIMP ButtonPressed(IDispatch* control) noexcept override;

 private:
  ~AddIn() = default;

  Alive alive_;
  std::atomic<ULONG> references_ = 1;
};

}  // namespace pluvo::component
