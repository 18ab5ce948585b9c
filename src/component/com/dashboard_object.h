// clsDashboard as the workbook's macros see it.
#pragma once

#include <vector>

#include "Orvanemcro1.h"
#include "component/com/array_argument.h"
#include "component/com/bound_automation_object.h"
#include "presentation/dashboard.h"

namespace vantora::com {

class DashboardObject final : public BoundAutomationObject<_clsDashboard, clsDashboard> {
 public:
  explicit DashboardObject(const ComClass& com_class) : BoundAutomationObject(com_class) {}

  STDMETHODIMP BuildChartList() override { return Call(&clsDashboard::BuildChartList); }
  STDMETHODIMP RetrieveColumnConfig(SHORT column, VARIANT* flags) override {
    if (!flags) return E_POINTER;
    return Run([&] {
      if (!object().initialized()) return;  // the client's array stays as it is
      ArrayArgument array(*flags);
      std::vector<bool> values = array.NumberedFlags();
      object().RetrieveColumnConfig(column, values);
      array.PutNumbered(values);
    });
  }
  STDMETHODIMP SaveColumnConfig(SHORT column, VARIANT* flags) override {
    if (!flags) return E_POINTER;
    return Run([&] {
      if (!object().initialized()) return;
      object().SaveColumnConfig(column, ArrayArgument(*flags).NumberedFlags());
    });
  }
  STDMETHODIMP DashboardConfigure() override { return Call(&clsDashboard::DashboardConfigure); }
};

}  // namespace vantora::com
