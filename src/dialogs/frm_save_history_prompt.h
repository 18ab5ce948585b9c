// Asks which of the history years is to be saved.
#pragma once

#include <string_view>

#include "core/form.h"

namespace vantora {

class frmSaveHistoryPrompt final : public Form {
 public:
  frmSaveHistoryPrompt();

  // Appends one entry to the list of years; before the dialog is shown.
  void YearCaptionAdd(std::string_view caption) { years_.AddItem(caption); }

  // Whether the user chose to go on; read it before the dialog is unloaded.
  bool Continue() const { return continue_; }
  // 1-based position of the chosen entry.
  int Choice() const { return choice_; }

 private:
  void OnActivate() override;
  void OnUnload() override { continue_ = false; }
  void ChooseYear();
  void Answer(bool go_on);

  ChoiceList& years_;
  Button& go_;
  bool continue_ = false;
  int choice_ = 0;
};

}  // namespace vantora
