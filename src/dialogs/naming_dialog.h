// What the two naming dialogs share: option buttons of which one is always chosen, GO and Cancel.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/form.h"

namespace vantora {

class NamingDialog : public Form {
 public:
  void SetMessageText(std::string_view text) { message_.SetCaption(text); }

  // Whether the dialog was left with GO.
  bool Continue() const { return continue_; }
  // The chosen option, from 1.
  int Choice() const { return choice_; }

 protected:
  // `captions` are the options' texts by choice number; the derived class adds what else it has
  // below them and ends with AddButtons.
  NamingDialog(std::string name, std::string caption, double height, std::string_view message,
               const std::vector<std::string>& captions);
  void AddButtons(double top);

  // Each showing starts with the first option.
  void OnActivate() override;
  void OnUnload() override { continue_ = false; }
  OptionButton& option(int choice) { return *options_[static_cast<std::size_t>(choice - 1)]; }
  void Choose(int choice) { PressOption(option(choice)); }

  static constexpr double kWidth = 420;
  static constexpr double kMargin = 12;
  static constexpr double kOptionsTop = 96;
  static constexpr double kOptionHeight = 30;

 private:
  void Answer(bool go_on);

  Label& message_;
  std::vector<OptionButton*> options_;
  bool continue_ = false;
  int choice_ = 1;
};

}  // namespace vantora
