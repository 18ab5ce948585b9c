// clsFreeze as the workbook's macros see it.
#pragma once

#include "Orvanemcro1.h"
#include "component/com/bound_automation_object.h"
#include "maintenance/freeze.h"

namespace vantora::com {

class FreezeObject final : public BoundAutomationObject<_clsFreeze, clsFreeze> {
 public:
  explicit FreezeObject(const ComClass& com_class) : BoundAutomationObject(com_class) {}

  STDMETHODIMP FreezeCurrentResults() override { return Call(&clsFreeze::FreezeCurrentResults); }
  STDMETHODIMP SetSpinnerstoBase() override { return Call(&clsFreeze::SetSpinnerstoBase); }
};

}  // namespace vantora::com
