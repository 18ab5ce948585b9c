// clsPlanningSpinners as the workbook's macros see it.
#pragma once

#include "Orvanemcro1.h"
#include "component/com/bound_automation_object.h"
#include "maintenance/planning_spinners.h"

namespace vantora::com {

class PlanningSpinnersObject final
    : public BoundAutomationObject<_clsPlanningSpinners, clsPlanningSpinners> {
 public:
  explicit PlanningSpinnersObject(const ComClass& com_class) : BoundAutomationObject(com_class) {}

  STDMETHODIMP SpinnerChange() override { return Call(&clsPlanningSpinners::SpinnerChange); }
};

}  // namespace vantora::com
