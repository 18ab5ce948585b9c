// What a form asks its user, question by question.
#pragma once

#include <string>
#include <vector>

#include "core/form.h"

namespace vantora::ui {

// One or more controls that are answered together: a text box or a list, the option buttons of a
// group, a run of check boxes.
struct Question {
  // The label right before the controls, else the caption of a single one, else its name.
  std::string heading;
  std::vector<Control*> controls;
};

// The questions of the controls that can be used, in tab order.
std::vector<Question> QuestionsOf(const Form& form);

// Whether the label says what the controls right behind it are.
bool IsHeading(const Form& form, const Label& label);

// What the controls hold now ("none" where no check box is checked).
std::string AnswerTo(const Question& question);

}  // namespace vantora::ui
