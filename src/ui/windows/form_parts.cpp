#include "ui/windows/form_parts.h"

#include <string>

namespace vantora::ui {
namespace {

const Label* FindLabel(const Form& form, std::string_view name) {
  return dynamic_cast<const Label*>(form.Find(name));
}

const std::string& GroupOf(const Control& control) {
  static const std::string no_group;
  if (control.kind() != ControlKind::kOptionButton) return no_group;
  return static_cast<const OptionButton&>(control).group();
}

}  // namespace

std::optional<Meter> FindMeter(const Form& form) {
  const Meter meter{.back = FindLabel(form, "lblBack"),
                    .bar = FindLabel(form, "lblBar"),
                    .front = FindLabel(form, "lblFront")};
  if (!meter.back || !meter.bar || !meter.front) return std::nullopt;
  return meter;
}

bool MarksAccelerator(const Form& form, std::size_t label) {
  if (label + 1 >= form.controls().size()) return false;
  const ControlKind next = form.controls()[label + 1]->kind();
  return next == ControlKind::kTextBox || next == ControlKind::kComboBox ||
         next == ControlKind::kListBox || next == ControlKind::kCheckBox;
}

bool StartsGroup(const Form& form, std::size_t control) {
  if (control == 0) return true;
  const Control& before = *form.controls()[control - 1];
  const Control& self = *form.controls()[control];
  const bool same_kind =
      (before.kind() == ControlKind::kOptionButton) == (self.kind() == ControlKind::kOptionButton);
  return !same_kind || GroupOf(before) != GroupOf(self);
}

bool IsTabStop(const Form& form, const OptionButton& option) {
  const OptionButton* first = nullptr;
  for (const auto& control : form.controls()) {
    if (control->kind() != ControlKind::kOptionButton) continue;
    const auto& other = static_cast<const OptionButton&>(*control);
    if (other.group() != option.group()) continue;
    if (other.pressed()) return &other == &option;
    if (!first) first = &other;
  }
  return first == &option;
}

}  // namespace vantora::ui
