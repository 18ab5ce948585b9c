// A form with every kind of control, and what was done to it.
#pragma once

#include <string>
#include <vector>

#include "core/form.h"

namespace vantora::ui {

class EveryControlForm final : public Form {
 public:
  EveryControlForm();

  // What the handlers were told, in order.
  std::vector<std::string> log;
  bool allows_close = true;

  TextBox& name;
  TextBox& remarks;
  ChoiceList& book;
  ChoiceList& sheets;
  OptionButton& all;
  OptionButton& selected;
  OptionButton& above;
  OptionButton& below;
  CheckBox& formats;
  Button& more;
  Button& copy;
  Button& cancel;

  // Makes the form change itself while it is shown.
  void AddNote(const std::string& text);
  std::size_t notes() const { return notes_; }

 private:
  bool AllowsCloseByUser() const override { return allows_close; }

  std::size_t notes_ = 0;
};

}  // namespace vantora::ui
