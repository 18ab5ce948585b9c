// clsDevelopmentMode as the workbook's macros see it.
#pragma once

#include "Orvanemcro1.h"
#include "component/com/bound_automation_object.h"
#include "maintenance/development_mode.h"

namespace vantora::com {

class DevelopmentModeObject final
    : public BoundAutomationObject<_clsDevelopmentMode, clsDevelopmentMode> {
 public:
  explicit DevelopmentModeObject(const ComClass& com_class) : BoundAutomationObject(com_class) {}

  STDMETHODIMP DevelopmentMode() override { return Call(&clsDevelopmentMode::DevelopmentMode); }
  STDMETHODIMP AlignSheets() override { return Call(&clsDevelopmentMode::AlignSheets); }
  STDMETHODIMP CheckPlanningKeys() override { return Call(&clsDevelopmentMode::CheckPlanningKeys); }
};

}  // namespace vantora::com
