#pragma once

#include "module.h"

#include <unknwn.h>

#include <atomic>

namespace pluvo::component {

/// Makes an object; null where there is no memory.
using Maker = IUnknown* (*)();

/// Makes objects of one class.
class ClassFactory final : public IClassFactory {
 public:
  explicit ClassFactory(Maker maker) : maker_(maker) {}
  STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) noexcept override;
  STDMETHODIMP_(ULONG) AddRef() noexcept override;
  STDMETHODIMP_(ULONG) Release() noexcept override;
  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID interfaceId, void** object) noexcept override;
  STDMETHODIMP LockServer(BOOL lock) noexcept override;

 private:
  ~ClassFactory() = default;

  Maker maker_;
  Alive alive_;
  std::atomic<ULONG> references_ = 1;
};

}  // namespace pluvo::component
