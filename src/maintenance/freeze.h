// Freezing the current results as the base case, and setting the spinner inputs back to it.
#pragma once

#include "core/public_object.h"

namespace vantora {

// Both operations work on the worksheets of the active workbook that carry an "F" in cell A1,
// without activating them, and do nothing unless the object is initialised. A base row is marked in
// column AB; its live row is the one above. A failing host call ends the operation at that point:
// the HostError reaches the caller, the rows already done keep their changes, screen updating stays
// off and calculation manual.
class clsFreeze : public BoundObject {
 public:
  explicit clsFreeze(Services& services) : BoundObject("clsFreeze", services) {}

  // After a confirmation, replaces columns F to Y of each base row by the values of its live row.
  void FreezeCurrentResults();
  // Puts the values of columns F to O of each spinner base row into those cells of its live row
  // that hold no formula.
  void SetSpinnerstoBase();

 private:
  void FreezeSheet(host::Worksheet& sheet);
  void SetSheetToBase(host::Worksheet& sheet);
  // Runs work(sheet) on each sheet that takes part, with screen updating off and calculation
  // manual; then the sheet that was active is selected.
  template <typename Work>
  void RunOnFreezeSheets(Work&& work);
};

}  // namespace vantora
