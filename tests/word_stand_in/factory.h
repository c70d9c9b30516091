#pragma once

#include <unknwn.h>
#include <windows.h>

namespace pluvo::stand_in {

/// Makes objects of one class: Word's application, or the control.
class Factory : public IClassFactory {
 public:
  explicit Factory(const GUID& id) : id_(id) {}
  virtual ~Factory() = default;

  /// Whether there is such a class here.
  static bool knows(const GUID& id);
  /// Server locks held.
  static LONG locks();

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** object) override;
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;

 private:
  GUID id_;
  ULONG references_ = 0;
};

}  // namespace pluvo::stand_in
