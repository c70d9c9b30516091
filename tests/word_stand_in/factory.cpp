#include "factory.h"

#include "word_objects.h"

namespace pluvo::stand_in {
namespace {

LONG locked = 0;

}  // namespace

bool Factory::knows(const GUID& id) { return IsEqualGUID(id, kWordClass) || IsEqualGUID(id, kControlClass); }

LONG Factory::locks() { return locked; }

HRESULT Factory::QueryInterface(REFIID id, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IClassFactory)) return E_NOINTERFACE;
  *object = static_cast<IClassFactory*>(this);
  AddRef();
  return S_OK;
}

ULONG Factory::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT Factory::CreateInstance(IUnknown* outer, REFIID id, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (outer != nullptr) return CLASS_E_NOAGGREGATION;
  if (IsEqualGUID(id_, kWordClass)) return ApplicationObject::instance()->QueryInterface(id, object);
  return make<ControlObject>()->QueryInterface(id, object);
}

HRESULT Factory::LockServer(BOOL lock) {
  locked += lock != FALSE ? 1 : -1;
  return S_OK;
}

}  // namespace pluvo::stand_in
