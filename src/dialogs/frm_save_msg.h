// Lies over the host's window while the model is being saved.
#pragma once

#include "core/form.h"
#include "core/user_interface.h"

namespace vantora {

class frmSaveMsg final : public Form {
 public:
  // `user_interface` must outlive the dialog.
  explicit frmSaveMsg(UserInterface& user_interface);

  // Places the dialog in the middle of the host's window, whose rectangle is given in points.
  void OuterWindow(double top, double left, double height, double width);
  // Shows the dialog and returns at once.
  void ShowForm();

 private:
  bool AllowsCloseByUser() const override { return false; }

  UserInterface& user_interface_;
};

}  // namespace vantora
