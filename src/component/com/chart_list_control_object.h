// clsChartListControl as the workbook's macros see it.
#pragma once

#include "Orvanemcro1.h"
#include "component/com/bound_automation_object.h"
#include "presentation/chart_list_control.h"

namespace vantora::com {

class ChartListControlObject final
    : public BoundAutomationObject<_clsChartListControl, clsChartListControl> {
 public:
  explicit ChartListControlObject(const ComClass& com_class) : BoundAutomationObject(com_class) {}
};

}  // namespace vantora::com
