// Switching the model between normal mode and development mode.
#pragma once

#include "core/public_object.h"

namespace vantora {

// Every member does nothing unless the object is initialised. A failing host call ends it at that
// point: the HostError reaches the caller, the sheets already done keep their new state, and screen
// updating stays off.
class clsDevelopmentMode : public BoundObject {
 public:
  explicit clsDevelopmentMode(Services& services) : BoundObject("clsDevelopmentMode", services) {}

  // Enters development mode where the active sheet's row 1 is hidden, and goes back to normal mode
  // where it is not. Development mode shows row 1 of every worksheet, unprotects the protected
  // ones, lists the defined names and shows every column of the dashboard. Normal mode hides row 1,
  // protects the sheets flagged "P", checks the planning keys, rebuilds the chart list and the
  // dashboard's menu, and aligns the sheets. Throws HostError 91 when the session has no menus,
  // once they are needed, and before anything else when no worksheet is active.
  void DevelopmentMode();
  // Scrolls and freezes every worksheet as the flags in its cell A1 say.
  void AlignSheets();
  // Lists the model's planning keys and their discrepancies on the Reference Sheet.
  void CheckPlanningKeys();

 private:
  static void SwitchSheet(const host::WorksheetPtr& sheet, bool to_normal);
  void FinishNormalMode();
  void FinishDevelopmentMode();
  void AlignSheet(const host::WorksheetPtr& sheet);
  // Activates the sheet and gives the active window.
  host::WindowPtr WindowOn(host::Worksheet& sheet);
  clsMenuManagement& Menus();
};

}  // namespace vantora
