// clsNameManagement as the workbook's macros see it.
#pragma once

#include "Orvanemcro1.h"
#include "component/com/bound_automation_object.h"
#include "workbook_tools/name_management.h"

namespace vantora::com {

class NameManagementObject final
    : public BoundAutomationObject<_clsNameManagement, clsNameManagement> {
 public:
  explicit NameManagementObject(const ComClass& com_class) : BoundAutomationObject(com_class) {}

  STDMETHODIMP NameDefinition() override { return Call(&clsNameManagement::NameDefinition); }
  STDMETHODIMP NameCleanup() override { return Call(&clsNameManagement::NameCleanup); }
};

}  // namespace vantora::com
