// An object in place of Excel: it has every member, and refuses every call.
#pragma once

#include "component/com/automation.h"

namespace vantora::com {

class RefusingApplication : public IDispatch {
 public:
  static constexpr wchar_t kSource[] = L"Microsoft Excel";
  static constexpr wchar_t kText[] =
      L"Method 'ActiveSheet' of object '_Application' failed \u2013 \u00e9";

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    *object = iid == IID_IUnknown || iid == IID_IDispatch ? this : nullptr;
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override { return --references_; }
  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT count, LCID, DISPID* ids) override {
    for (UINT i = 0; i < count; ++i) ids[i] = static_cast<DISPID>(i + 1);
    return S_OK;
  }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO* exception,
                      UINT*) override {
    ++calls_;
    *exception = {};
    exception->scode = static_cast<SCODE>(0x800A03EC);
    exception->bstrSource = SysAllocString(kSource);
    exception->bstrDescription = SysAllocString(kText);
    return DISP_E_EXCEPTION;
  }

  // References that others hold.
  ULONG references() const { return references_; }
  int calls() const { return calls_; }

 private:
  ULONG references_ = 0;
  int calls_ = 0;
};

}  // namespace vantora::com
