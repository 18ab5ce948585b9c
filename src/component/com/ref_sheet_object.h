// clsRefSheet as the workbook's macros see it.
#pragma once

#include "Orvanemcro1.h"
#include "component/com/bound_automation_object.h"
#include "hosts/excel/text.h"
#include "refsheet/ref_sheet.h"

namespace vantora::com {

class RefSheetObject final : public BoundAutomationObject<_clsRefSheet, clsRefSheet> {
 public:
  explicit RefSheetObject(const ComClass& com_class) : BoundAutomationObject(com_class) {}

  STDMETHODIMP PutDLLVersion(BSTR version_text) override {
    return Run([&] { object().PutDLLVersion(excel::ToUtf8(version_text)); });
  }
};

}  // namespace vantora::com
