// clsRatiosCompDataSet as the workbook's macros see it.
#pragma once

#include "Orvanemcro1.h"
#include "component/com/bound_automation_object.h"
#include "maintenance/ratios_comp_data_set.h"

namespace vantora::com {

class RatiosCompDataSetObject final
    : public BoundAutomationObject<_clsRatiosCompDataSet, clsRatiosCompDataSet> {
 public:
  explicit RatiosCompDataSetObject(const ComClass& com_class) : BoundAutomationObject(com_class) {}

  STDMETHODIMP RatiosCompDataSet() override {
    return Call(&clsRatiosCompDataSet::RatiosCompDataSet);
  }
};

}  // namespace vantora::com
