// clsYearEnd as the workbook's macros see it.
#pragma once

#include "Orvanemcro1.h"
#include "component/com/bound_automation_object.h"
#include "maintenance/year_end.h"

namespace vantora::com {

class YearEndObject final : public BoundAutomationObject<_clsYearEnd, clsYearEnd> {
 public:
  explicit YearEndObject(const ComClass& com_class) : BoundAutomationObject(com_class) {}

  STDMETHODIMP SaveHistoryYear() override { return Call(&clsYearEnd::SaveHistoryYear); }
  STDMETHODIMP SaveCurrentYear() override { return Call(&clsYearEnd::SaveCurrentYear); }
  STDMETHODIMP SaveLastYear() override { return Call(&clsYearEnd::SaveLastYear); }
  STDMETHODIMP ShiftHistory() override { return Call(&clsYearEnd::ShiftHistory); }
  STDMETHODIMP CopyCurrentYear() override { return Call(&clsYearEnd::CopyCurrentYear); }
};

}  // namespace vantora::com
