// clsFormatting as the workbook's macros see it.
#pragma once

#include <optional>

#include "Orvanemcro1.h"
#include "component/com/bound_automation_object.h"
#include "workbook_tools/formatting.h"

namespace vantora::com {

class FormattingObject final : public BoundAutomationObject<_clsFormatting, clsFormatting> {
 public:
  explicit FormattingObject(const ComClass& com_class) : BoundAutomationObject(com_class) {}

  // Both arguments go by reference, as a macro's do; neither is changed.
  STDMETHODIMP RangeSelect(VARIANT_BOOL* direction, VARIANT* index) override {
    if (!direction) return E_POINTER;
    return Run([&] {
      if (!object().initialized()) return;
      object().RangeSelect(*direction != VARIANT_FALSE, index ? IntegerIn(*index) : std::nullopt);
    });
  }
  STDMETHODIMP LeftFormat() override { return Call(&clsFormatting::LeftFormat); }
  STDMETHODIMP RightFormat() override { return Call(&clsFormatting::RightFormat); }
  STDMETHODIMP PasteFormula() override { return Call(&clsFormatting::PasteFormula); }

 private:
  // The number of 16 bits in an optional argument. HostError 13 for what is no number, 6 for one
  // that is too large.
  static std::optional<int> IntegerIn(const VARIANT& argument) {
    if (argument.vt == VT_ERROR && argument.scode == DISP_E_PARAMNOTFOUND) return std::nullopt;
    OwnedVariant value;
    OwnedVariant number;
    VariantCopyInd(&value, const_cast<VARIANT*>(&argument));
    const HRESULT converted =
        VariantChangeTypeEx(&number, &value, LOCALE_USER_DEFAULT, VARIANT_ALPHABOOL, VT_I2);
    if (converted == DISP_E_OVERFLOW) {
      throw HostError(HostError::kOverflow, "Overflow", "Orvanemcro1");
    }
    if (FAILED(converted)) {
      throw HostError(HostError::kTypeMismatch, "Type mismatch: a number is expected.",
                      "Orvanemcro1");
    }
    return number.iVal;
  }
};

}  // namespace vantora::com
