#include "component/com/class_factory.h"

#include "component/com/automation_error.h"

namespace vantora::com {

STDMETHODIMP ClassFactory::QueryInterface(REFIID iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (iid != IID_IUnknown && iid != IID_IClassFactory) return E_NOINTERFACE;
  AddRef();
  *object = static_cast<IClassFactory*>(this);
  return S_OK;
}

STDMETHODIMP_(ULONG) ClassFactory::AddRef() { return ++references_; }

STDMETHODIMP_(ULONG) ClassFactory::Release() {
  ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

STDMETHODIMP ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (outer) return CLASS_E_NOAGGREGATION;
  HRESULT found = S_OK;
  HRESULT outcome = Guarded(IID_IClassFactory, com_class_.name, [&] {
    auto created = ComPtr<IUnknown>::Adopt(com_class_.create(com_class_));
    found = created->QueryInterface(iid, object);
  });
  return FAILED(outcome) ? outcome : found;
}

STDMETHODIMP ClassFactory::LockServer(BOOL lock) {
  lock ? ModuleUse::Add() : ModuleUse::Remove();
  return S_OK;
}

}  // namespace vantora::com
