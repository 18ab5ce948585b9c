#include "dialogs/frm_save_msg.h"

namespace vantora {

frmSaveMsg::frmSaveMsg(UserInterface& user_interface)
    : Form("frmSaveMsg", "Vantora", 240, 60), user_interface_(user_interface) {
  Add<Label>("lblMessage", "Saving your Vantora model, please wait...",
             Bounds{.left = 12, .top = 21, .width = 216, .height = 18});
}

void frmSaveMsg::OuterWindow(double top, double left, double height, double width) {
  SetPosition(
      {.left = left + (width - this->width()) / 2, .top = top + (height - this->height()) / 2});
}

void frmSaveMsg::ShowForm() {
  user_interface_.ShowModeless(*this);
  user_interface_.DoEvents();
}

}  // namespace vantora
