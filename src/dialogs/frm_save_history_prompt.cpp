#include "dialogs/frm_save_history_prompt.h"

namespace vantora {

frmSaveHistoryPrompt::frmSaveHistoryPrompt()
    : Form("frmSaveHistoryPrompt", "Vantora Save History Year Selection", 288, 96),
      years_([this]() -> ChoiceList& {
        Add<Label>("lblPromptString",
                   "Please select the history year that you want to save, then click GO, or else "
                   "Cancel:",
                   Bounds{.left = 12, .top = 9, .width = 264, .height = 24});
        return Add<ChoiceList>(ControlKind::kComboBox, "cboYear",
                               Bounds{.left = 12, .top = 39, .width = 264, .height = 18});
      }()),
      go_(Add<Button>("butGO", "GO", Bounds{.left = 144, .top = 66, .width = 60, .height = 21})) {
  years_.SetInitialText("Choose year to be saved");
  years_.on_change = [this] { ChooseYear(); };
  go_.SetDefault();
  go_.on_click = [this] { Answer(true); };
  Button& cancel =
      Add<Button>("butCancel", "Cancel", Bounds{.left = 216, .top = 66, .width = 60, .height = 21});
  cancel.SetCancel();
  cancel.on_click = [this] { Answer(false); };
}

void frmSaveHistoryPrompt::OnActivate() {
  continue_ = false;
  years_.Choose(0);
  continue_ = true;
  choice_ = 1;
}

void frmSaveHistoryPrompt::ChooseYear() {
  choice_ = years_.list_index() + 1;
  go_.SetEnabled(choice_ >= 1);
}

void frmSaveHistoryPrompt::Answer(bool go_on) {
  continue_ = go_on;
  Hide();
}

}  // namespace vantora
