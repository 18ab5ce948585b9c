#include "ui/console/form_questions.h"

#include <algorithm>

#include "ui/console/terminal_text.h"

namespace vantora::ui {
namespace {

bool IsAsked(const Control& control) {
  return control.visible() && control.enabled() && control.kind() != ControlKind::kLabel &&
         control.kind() != ControlKind::kButton;
}

// The control belongs to the question that was asked last.
bool Continues(const Question& question, const Control& control) {
  const Control& first = *question.controls.front();
  if (control.kind() != first.kind()) return false;
  if (control.kind() == ControlKind::kCheckBox) return true;
  return control.kind() == ControlKind::kOptionButton &&
         static_cast<const OptionButton&>(control).group() ==
             static_cast<const OptionButton&>(first).group();
}

std::string CaptionsOf(const Question& question, bool (*holds)(const Control&)) {
  std::string captions;
  for (const Control* control : question.controls) {
    if (!holds(*control)) continue;
    captions += (captions.empty() ? "" : ", ") + WithoutAccelerators(control->caption());
  }
  return captions.empty() ? "none" : captions;
}

}  // namespace

std::vector<Question> QuestionsOf(const Form& form) {
  std::vector<Question> questions;
  const Control* label = nullptr;
  bool continues = false;
  for (const auto& control : form.controls()) {
    if (!control->visible()) continue;
    if (!IsAsked(*control)) {
      label = control->kind() == ControlKind::kLabel ? control.get() : nullptr;
      continues = false;
      continue;
    }
    if (continues && Continues(questions.back(), *control)) {
      questions.back().controls.push_back(control.get());
      continue;
    }
    const std::string heading = WithoutAccelerators(label ? label->caption() : control->caption());
    questions.push_back({heading.empty() ? control->name() : heading, {control.get()}});
    label = nullptr;
    continues = true;
  }
  return questions;
}

bool IsHeading(const Form& form, const Label& label) {
  const auto& controls = form.controls();
  auto next = std::find_if(controls.begin(), controls.end(),
                           [&](const auto& control) { return control.get() == &label; });
  next = std::find_if(next + 1, controls.end(),
                      [](const auto& control) { return control->visible(); });
  return next != controls.end() && IsAsked(**next);
}

std::string AnswerTo(const Question& question) {
  const Control& first = *question.controls.front();
  switch (first.kind()) {
    case ControlKind::kTextBox:
      return static_cast<const TextBox&>(first).text();
    case ControlKind::kComboBox:
    case ControlKind::kListBox: {
      const auto& list = static_cast<const ChoiceList&>(first);
      if (list.list_index() < 0) return list.initial_text();
      return list.items()[static_cast<std::size_t>(list.list_index())];
    }
    case ControlKind::kOptionButton:
      return CaptionsOf(question, [](const Control& control) {
        return static_cast<const OptionButton&>(control).pressed();
      });
    case ControlKind::kCheckBox:
      if (question.controls.size() == 1) {
        return static_cast<const CheckBox&>(first).checked() ? "yes" : "no";
      }
      return CaptionsOf(question, [](const Control& control) {
        return static_cast<const CheckBox&>(control).checked();
      });
    default:
      return "";
  }
}

}  // namespace vantora::ui
