// clsHider as the workbook's macros see it.
#pragma once

#include "Orvanemcro1.h"
#include "component/com/bound_automation_object.h"
#include "workbook_tools/hider.h"

namespace vantora::com {

class HiderObject final : public BoundAutomationObject<_clsHider, clsHider> {
 public:
  explicit HiderObject(const ComClass& com_class) : BoundAutomationObject(com_class) {}

  STDMETHODIMP AtOpen() override { return Call(&clsHider::AtOpen); }
  STDMETHODIMP BeforeSave(VARIANT_BOOL save_as_ui) override {
    return Run([&] { object().BeforeSave(save_as_ui != VARIANT_FALSE); });
  }
};

}  // namespace vantora::com
