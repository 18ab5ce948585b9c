// A dialog as a series of prompts on a terminal.
#pragma once

#include <string>
#include <vector>

#include "core/form.h"
#include "ui/console/choice_prompt.h"
#include "ui/console/form_questions.h"
#include "ui/console/terminal.h"

namespace vantora::ui {

// Takes a visible form's user through its controls in tab order and then to its buttons, again and
// again until the form is hidden or unloaded. A form that asks too much for that is shown as a list
// of its questions with their answers, from which the user picks what to change. The controls are
// driven through their own calls, so the form's handlers run as they do for a window.
class FormPrompts {
 public:
  FormPrompts(Terminal& terminal, Form& form) : terminal_(terminal), form_(form) {}

  // Throws InputEnded when the input ends and the form can't be left without an answer.
  void Run();

 private:
  // What a prompt says about the rest: go on, or the user wants out.
  enum class Next { kGoOn, kCancel };

  bool Open() const { return form_.visible() && !form_.unloaded(); }
  // The form's labels, with or without those that are a question's heading.
  void ShowTexts(bool with_headings);
  Next AskControls();
  // Shows the questions and asks what to change, until a button was pressed.
  Next AskFromList(const std::vector<Question>& questions);
  Next AskQuestion(const Question& question);
  Next AskCheckBoxes(const Question& question);
  Next AskControl(std::size_t position);
  Next AskText(TextBox& box);
  Next AskMultiLineText(TextBox& box);
  Next AskList(ChoiceList& list);
  Next AskOptions(const OptionButton& first);
  Next AskCheckBox(CheckBox& box);
  Next AskButtons();
  void Cancel();
  std::vector<Button*> UsableButtons() const;
  std::vector<OptionButton*> UsableOptions(const std::string& group) const;

  Terminal& terminal_;
  Form& form_;
};

}  // namespace vantora::ui
