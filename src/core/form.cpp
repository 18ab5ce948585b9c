#include "core/form.h"

#include <stdexcept>

#include "core/convert.h"
#include "core/user_interface.h"

namespace vantora {

void TextBox::SetText(std::string_view text) {
  if (text == text_) return;
  text_ = text;
  if (on_change) on_change();
}

void ChoiceList::ClearItems() {
  items_.clear();
  list_index_ = -1;
}

void ChoiceList::Choose(int list_index) {
  if (list_index < 0 || list_index >= static_cast<int>(items_.size())) {
    throw std::out_of_range("the list " + name() + " has no entry at position " +
                            std::to_string(list_index));
  }
  list_index_ = list_index;
  if (on_change) on_change();
}

void CheckBox::SetChecked(bool checked) {
  if (checked == checked_) return;
  checked_ = checked;
  if (on_click) on_click();
}

void Button::Press() {
  if (enabled() && visible() && on_click) on_click();
}

Form::Form(std::string name, std::string caption, double width, double height)
    : name_(std::move(name)), caption_(std::move(caption)), width_(width), height_(height) {}

Form::~Form() {
  if (shown_by_) shown_by_->Forget(*this);
}

void Form::SetCaption(std::string_view caption) {
  caption_ = caption;
  if (shown_by_) shown_by_->Refresh(*this);
}

Control* Form::Find(std::string_view name) const {
  for (const auto& control : controls_) {
    if (EqualsIgnoreCase(control->name(), name)) return control.get();
  }
  return nullptr;
}

void Form::PressOption(OptionButton& option) {
  for (const auto& control : controls_) {
    auto* other = dynamic_cast<OptionButton*>(control.get());
    if (other && other->group() == option.group()) other->pressed_ = other == &option;
  }
  if (option.on_click) option.on_click();
}

void Form::Hide() {
  visible_ = false;
  if (shown_by_) shown_by_->Refresh(*this);
}

void Form::Unload() {
  if (unloaded_) return;
  unloaded_ = true;
  visible_ = false;
  OnUnload();
  if (shown_by_) shown_by_->Refresh(*this);
}

bool Form::CloseByUser() {
  if (!AllowsCloseByUser()) return false;
  Unload();
  return true;
}

void Form::Activate() {
  visible_ = true;
  unloaded_ = false;
  OnActivate();
}

}  // namespace vantora
