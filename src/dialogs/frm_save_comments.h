// Asks for the comment that a save puts on each saved column.
#pragma once

#include <string>
#include <string_view>

#include "core/form.h"
#include "core/user_interface.h"

namespace vantora {

class frmSaveComments final : public Form {
 public:
  // `clock` must outlive the dialog.
  explicit frmSaveComments(Clock& clock);

  // Whether the user chose to go on; read both before the dialog is unloaded.
  bool Continue() const { return continue_; }
  // Empty when no comment is wanted.
  const std::string& CommentText() const { return comment_text_; }

 private:
  void OnActivate() override;
  void OnUnload() override { continue_ = false; }
  // Takes the comment and ends the showing.
  void Accept(std::string_view comment);
  void Cancel();

  Clock& clock_;
  TextBox& comments_;
  bool continue_ = false;
  std::string comment_text_;
};

}  // namespace vantora
