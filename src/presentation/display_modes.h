// The window arrangements that show the dashboard beside the sheet that the user works on.
#pragma once

#include "core/public_object.h"
#include "core/value.h"

namespace vantora {

// Nothing is done unless the object is initialised. Lengths are points. A failing host call ends a
// method at that point: the HostError reaches the caller, and screen updating stays off. Throws
// HostError 91 when no workbook is open.
class clsDisplayModes : public BoundObject {
 public:
  explicit clsDisplayModes(Services& services) : BoundObject("clsDisplayModes", services) {}

  // With one window, opens a second one on the dashboard above it. With more, closes those up to
  // the first one that does not stand in the top left corner, and those behind it, and gives that
  // one the whole usable area; when all stand in the corner all are closed.
  void MultiWindowUD();
  // The same with the dashboard on the left.
  void MultiWindowLR();
  // Does nothing: the workbook's macros call it.
  void SetPresentationDisplay(const Value& a, const Value& b, const Value& c);

 private:
  enum class Arrangement { kUpDown, kLeftRight };

  void Toggle(Arrangement arrangement);
  void ReturnToOneWindow(host::Workbook& workbook);
  void ArrangeUpDown(host::Workbook& workbook);
  void ArrangeLeftRight(host::Workbook& workbook);
  // What full-screen display takes off the height of a window at the bottom.
  double FullScreenAllowance();
  // In the active window; without a dashboard the sheet stays.
  void SelectDashboard();
};

}  // namespace vantora
