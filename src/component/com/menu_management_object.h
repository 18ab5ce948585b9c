// clsMenuManagement as the workbook's macros see it.
#pragma once

#include "Orvanemcro1.h"
#include "component/com/bound_automation_object.h"
#include "component/com/menus_access.h"
#include "presentation/menu_management.h"

namespace vantora::com {

class MenuManagementObject final
    : public BoundAutomationObject<_clsMenuManagement, clsMenuManagement>,
      public MenusAccess {
 public:
  explicit MenuManagementObject(const ComClass& com_class) : BoundAutomationObject(com_class) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    return AutomationObject::QueryInterface(iid, object);
  }
  STDMETHODIMP_(ULONG) AddRef() override { return AutomationObject::AddRef(); }
  STDMETHODIMP_(ULONG) Release() override { return AutomationObject::Release(); }

  // _clsMenuManagement
  STDMETHODIMP CreateVAMenuBar() override { return Call(&clsMenuManagement::CreateVAMenuBar); }
  STDMETHODIMP RemoveVAMenuBar() override { return Call(&clsMenuManagement::RemoveVAMenuBar); }
  STDMETHODIMP CreateDashboardMenuBar() override {
    return Call(&clsMenuManagement::CreateDashboardMenuBar);
  }
  STDMETHODIMP RemoveDashboardMenuBar() override {
    return Call(&clsMenuManagement::RemoveDashboardMenuBar);
  }
  STDMETHODIMP SetDashboardMenuPanes() override {
    return Call(&clsMenuManagement::SetDashboardMenuPanes);
  }
  STDMETHODIMP ExposeDashMenu(VARIANT_BOOL visible) override {
    return Run([&] { object().ExposeDashMenu(visible != VARIANT_FALSE); });
  }
  STDMETHODIMP SelectConfig(SHORT config_number) override {
    return Run([&] { object().SelectConfig(config_number); });
  }

  // MenusAccess
  clsMenuManagement& Menus() override { return object(); }

 private:
  void* FindOwn(REFIID iid) override {
    return iid == kMenusAccessId ? static_cast<MenusAccess*>(this) : nullptr;
  }
};

}  // namespace vantora::com
