// clsCopyWorksheet as the workbook's macros see it.
#pragma once

#include "Orvanemcro1.h"
#include "component/com/bound_automation_object.h"
#include "workbook_tools/copy_worksheet.h"

namespace vantora::com {

class CopyWorksheetObject final
    : public BoundAutomationObject<_clsCopyWorksheet, clsCopyWorksheet> {
 public:
  explicit CopyWorksheetObject(const ComClass& com_class) : BoundAutomationObject(com_class) {}

  STDMETHODIMP CopyWorksheet() override { return Call(&clsCopyWorksheet::CopyWorksheet); }
};

}  // namespace vantora::com
