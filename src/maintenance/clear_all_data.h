// Emptying a model of everything that was entered.
#pragma once

#include "core/public_object.h"

namespace vantora {

class frmProgressBar;

class clsClearAllData : public BoundObject {
 public:
  explicit clsClearAllData(Services& services) : BoundObject("clsClearAllData", services) {}

  // After two warnings, empties the cells without a fill in columns J to Y of the worksheets of the
  // active workbook that carry a "Z" in cell A1; no sheet is activated. Does nothing unless the
  // object is initialised. A failing host call ends it at that point: the HostError reaches the
  // caller, the cells already emptied stay empty, and screen updating stays off.
  void ClearAllData();

 private:
  bool IsConfirmed();
  void ClearSheet(const host::WorksheetPtr& sheet, frmProgressBar& progress);
};

}  // namespace vantora
