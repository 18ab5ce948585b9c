// clsClearAllData as the workbook's macros see it.
#pragma once

#include "Orvanemcro1.h"
#include "component/com/bound_automation_object.h"
#include "maintenance/clear_all_data.h"

namespace vantora::com {

class ClearAllDataObject final : public BoundAutomationObject<_clsClearAllData, clsClearAllData> {
 public:
  explicit ClearAllDataObject(const ComClass& com_class) : BoundAutomationObject(com_class) {}

  STDMETHODIMP ClearAllData() override { return Call(&clsClearAllData::ClearAllData); }
};

}  // namespace vantora::com
