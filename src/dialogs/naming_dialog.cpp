#include "dialogs/naming_dialog.h"

#include <utility>

namespace vantora {

NamingDialog::NamingDialog(std::string name, std::string caption, double height,
                           std::string_view message, const std::vector<std::string>& captions)
    : Form(std::move(name), std::move(caption), kWidth, height),
      message_(Add<Label>("lblMessage", std::string(message),
                          Bounds{.left = kMargin,
                                 .top = 9,
                                 .width = kWidth - 2 * kMargin,
                                 .height = kOptionsTop - 18})) {
  for (std::size_t index = 0; index < captions.size(); ++index) {
    const int choice = static_cast<int>(index) + 1;
    OptionButton& added =
        Add<OptionButton>("optChoice" + std::to_string(choice), captions[index], "optChoice",
                          Bounds{.left = kMargin,
                                 .top = kOptionsTop + kOptionHeight * static_cast<double>(index),
                                 .width = kWidth - 2 * kMargin,
                                 .height = kOptionHeight - 3});
    added.on_click = [this, choice] { choice_ = choice; };
    options_.push_back(&added);
  }
}

void NamingDialog::AddButtons(double top) {
  Button& go =
      Add<Button>("butGO", "GO", Bounds{.left = 276, .top = top, .width = 60, .height = 21});
  go.SetDefault();
  go.on_click = [this] { Answer(true); };
  Button& cancel = Add<Button>("butCancel", "Cancel",
                               Bounds{.left = 348, .top = top, .width = 60, .height = 21});
  cancel.SetCancel();
  cancel.on_click = [this] { Answer(false); };
}

void NamingDialog::OnActivate() {
  continue_ = false;
  Choose(1);
}

void NamingDialog::Answer(bool go_on) {
  continue_ = go_on;
  Hide();
}

}  // namespace vantora
