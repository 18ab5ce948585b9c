// clsDisplayModes as the workbook's macros see it.
#pragma once

#include "Orvanemcro1.h"
#include "component/com/bound_automation_object.h"
#include "presentation/display_modes.h"

namespace vantora::com {

class DisplayModesObject final : public BoundAutomationObject<_clsDisplayModes, clsDisplayModes> {
 public:
  explicit DisplayModesObject(const ComClass& com_class) : BoundAutomationObject(com_class) {}

  STDMETHODIMP MultiWindowUD() override { return Call(&clsDisplayModes::MultiWindowUD); }
  STDMETHODIMP MultiWindowLR() override { return Call(&clsDisplayModes::MultiWindowLR); }
  // Whatever is passed, also what is no cell value: nothing is done with it.
  STDMETHODIMP SetPresentationDisplay(VARIANT, VARIANT, VARIANT) override {
    return Run([&] { object().SetPresentationDisplay({}, {}, {}); });
  }
};

}  // namespace vantora::com
