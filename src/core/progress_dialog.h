// The dialog that long operations show while they loop over sheets, rows or columns.
#pragma once

#include <string>
#include <string_view>

#include "core/form.h"
#include "core/user_interface.h"

namespace vantora {

// Created hidden. The operation sets Title (and Min and Max), calls ShowForm, then sets Text and
// Progress after each step; the dialog itself never stops the operation, which has to poll
// Cancelled. Unload ends it; the user can't close it.
class frmProgressBar final : public Form {
 public:
  // `user_interface` must outlive the dialog.
  explicit frmProgressBar(UserInterface& user_interface);

  const std::string& Title() const { return caption(); }
  void SetTitle(std::string_view title);
  // The message line.
  const std::string& Text() const { return message_.caption(); }
  void SetText(std::string_view text);
  // The range of Progress, 0 to 100 unless set. Setting it redraws nothing.
  double Min() const { return min_; }
  void SetMin(double min) { min_ = min; }
  double Max() const { return max_; }
  void SetMax(double max) { max_ = max; }
  // True once the user has pressed Cancel, which can happen only while Progress is set.
  bool Cancelled() const { return cancelled_; }
  // Shows the dialog and returns at once.
  void ShowForm();
  double Progress() const { return progress_; }
  // Redraws the bar and processes pending messages when the bar moves by more than half a percent.
  void SetProgress(double progress);

 private:
  bool AllowsCloseByUser() const override { return false; }
  void Load();
  void RemoveSystemMenu();
  void DrawBar(double fraction);
  void PressCancel();
  void Redraw();

  UserInterface& user_interface_;
  Label& message_;
  Label& back_;
  Label& bar_;
  Label& front_;
  Button& cancel_;
  WindowHandle window_ = WindowHandle::kNone;
  double min_ = 0;
  double max_ = 100;
  double progress_ = 0;
  double shown_fraction_ = 0;
  bool cancelled_ = false;
};

}  // namespace vantora
