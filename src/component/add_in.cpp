#include "add_in.h"

#include "errors/context.h"
#include "session.h"
#include "status.h"
#include "word_window.h"

#include <oleauto.h>

#include <string>

namespace pluvo::component {

namespace {

/// The form of Word 2007, which later ones take as well. The attribute onAction names a member of _Connect.
constexpr const wchar_t* kRibbon =
    LR"(<customUI xmlns="http://schemas.microsoft.com/office/2006/01/customui">)"
    LR"(<ribbon><tabs><tab idMso="TabHome"><group id="PLUVO_group" label="PLUVO">)"
    LR"(<button id="PLUVO_open" label="PLUVO" size="large" imageMso="FindDialog" keytip="PV")"
    LR"( screentip="Find and work on blocks of text")"
    LR"( supertip="Finds text by how it begins, ends and what it contains, and inserts, replaces, deletes or )"
    LR"(highlights, in this document or in all files of a folder." onAction="ButtonPressed"/>)"
    LR"(</group></tab></tabs></ribbon></customUI>)";

/// Office ignores the answer of a callback.
void tellFailure(const errors::Fault& fault) {
  const std::u16string text = u"PLUVO could not be opened.\r\n\r\n" + fault.description;
  MessageBoxW(wordWindow(), reinterpret_cast<const wchar_t*>(text.c_str()), L"P.L.U.V.O.",
              MB_OK | MB_ICONWARNING | MB_SETFOREGROUND);
}

}  // namespace

STDMETHODIMP AddIn::QueryInterface(REFIID interfaceId, void** object) noexcept {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  // What Word calls by name are the callbacks.
  if (interfaceId == IID_IUnknown || interfaceId == IID_IDispatch || interfaceId == IID__Connect) {
    *object = static_cast<_Connect*>(this);
  } else if (interfaceId == IID_IDTExtensibility2) {
    *object = static_cast<IDTExtensibility2*>(this);
  } else if (interfaceId == IID_IRibbonExtensibility) {
    *object = static_cast<IRibbonExtensibility*>(this);
  } else {
    return E_NOINTERFACE;
  }
  AddRef();
  return S_OK;
}

STDMETHODIMP_(ULONG) AddIn::AddRef() noexcept { return ++references_; }

STDMETHODIMP_(ULONG) AddIn::Release() noexcept {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

STDMETHODIMP AddIn::OnConnection(IDispatch* word, ext_ConnectMode /*mode*/, IDispatch* /*addIn*/,
                                 SAFEARRAY** /*custom*/) noexcept {
  guardedStatus([&] {
    connectTo(word);
    return S_OK;
  });
  return S_OK;
}

STDMETHODIMP AddIn::OnDisconnection(ext_DisconnectMode /*mode*/, SAFEARRAY** /*custom*/) noexcept {
  guardedStatus([] {
    endDialog();
    connectTo(nullptr);
    return S_OK;
  });
  return S_OK;
}

STDMETHODIMP AddIn::OnAddInsUpdate(SAFEARRAY** /*custom*/) noexcept { return S_OK; }

STDMETHODIMP AddIn::OnStartupComplete(SAFEARRAY** /*custom*/) noexcept { return S_OK; }

/// Word answers yet, so that a run can be ended as by its user.
STDMETHODIMP AddIn::OnBeginShutdown(SAFEARRAY** /*custom*/) noexcept {
  guardedStatus([] {
    endDialog();
    return S_OK;
  });
  return S_OK;
}

STDMETHODIMP AddIn::GetCustomUI(BSTR /*ribbonId*/, BSTR* markup) noexcept {
  if (markup == nullptr) return E_POINTER;
  *markup = SysAllocString(kRibbon);
  return *markup == nullptr ? E_OUTOFMEMORY : S_OK;
}

STDMETHODIMP AddIn::ButtonPressed(IDispatch* /*control*/) noexcept {
  const Microsoft::WRL::ComPtr<_Connect> kept(this);
  guardedStatus([] {
    try {
      openDialog();
    } catch (...) {
      tellFailure(errors::faultInFlight());
    }
    return S_OK;
  });
  return S_OK;
}

}  // namespace pluvo::component
