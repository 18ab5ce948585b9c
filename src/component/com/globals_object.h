// clsGlobals as the workbook's macros see it.
#pragma once

#include "Orvanemcro1.h"
#include "component/com/automation_object.h"
#include "component/com/globals_access.h"
#include "core/globals.h"

namespace vantora::com {

class GlobalsObject final : public AutomationObject<_clsGlobals>, public GlobalsAccess {
 public:
  explicit GlobalsObject(const ComClass& com_class) : AutomationObject(com_class) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    return AutomationObject::QueryInterface(iid, object);
  }
  STDMETHODIMP_(ULONG) AddRef() override { return AutomationObject::AddRef(); }
  STDMETHODIMP_(ULONG) Release() override { return AutomationObject::Release(); }

  // _clsGlobals
  STDMETHODIMP putref_App(IDispatch* application) override;
  STDMETHODIMP get_App(IDispatch** application) override;
  STDMETHODIMP putref_Menus(IDispatch* menus) override;
  STDMETHODIMP get_Menus(IDispatch** menus) override;
  STDMETHODIMP get_Version(BSTR* version) override;

  // GlobalsAccess
  clsGlobals& Globals() override { return globals_; }

 private:
  void* FindOwn(REFIID iid) override;

  // Declared in this order so that the host application is released before the menus.
  ComPtr<IDispatch> menus_;
  clsGlobals globals_{services()};
};

}  // namespace vantora::com
