// Asks what to do with a name that is in use elsewhere in the model.
#pragma once

#include <string>
#include <string_view>

#include "dialogs/naming_dialog.h"

namespace vantora {

class frmNaming01 final : public NamingDialog {
 public:
  frmNaming01();

  void SetChoice1Caption(std::string_view caption) { option(1).SetCaption(caption); }
  void SetChoice2Caption(std::string_view caption) { option(2).SetCaption(caption); }
  // The new name. It is set without the blanks around it, and read so.
  void SetNameText(std::string_view text);
  std::string NameText() const;
  // The new name with the blanks that were typed.
  const std::string& TypedName() const { return new_name_.text(); }

 private:
  TextBox& new_name_;
};

}  // namespace vantora
