// Dialogs without a platform: a form builds its controls, reacts to their events and exposes the
// user's answer. It never draws; a user interface (windows, a terminal, answers given beforehand)
// shows it and drives its controls through the same calls that a user's actions make.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantora {

// Position and size of a control within its form, in points.
struct Bounds {
  double left = 0;
  double top = 0;
  double width = 0;
  double height = 0;
};

// Top left corner of a form on the screen, in points.
struct FormPosition {
  double left = 0;
  double top = 0;
};

enum class ControlKind { kLabel, kTextBox, kComboBox, kListBox, kOptionButton, kCheckBox, kButton };

// One control. Its name is the model's own (`cboYear`, `butGO`), and answers address it by it.
class Control {
 public:
  Control(ControlKind kind, std::string name, std::string caption, Bounds bounds)
      : kind_(kind), name_(std::move(name)), caption_(std::move(caption)), bounds_(bounds) {}
  virtual ~Control() = default;

  ControlKind kind() const { return kind_; }
  const std::string& name() const { return name_; }
  // The text of a label, button, check box or option; an accelerator is marked with '&'.
  const std::string& caption() const { return caption_; }
  void SetCaption(std::string_view caption) { caption_ = caption; }
  const Bounds& bounds() const { return bounds_; }
  void SetBounds(const Bounds& bounds) { bounds_ = bounds; }
  bool enabled() const { return enabled_; }
  void SetEnabled(bool enabled) { enabled_ = enabled; }
  bool visible() const { return visible_; }
  void SetVisible(bool visible) { visible_ = visible; }

 private:
  ControlKind kind_;
  std::string name_;
  std::string caption_;
  Bounds bounds_;
  bool enabled_ = true;
  bool visible_ = true;
};

class Label : public Control {
 public:
  Label(std::string name, std::string caption, Bounds bounds)
      : Control(ControlKind::kLabel, std::move(name), std::move(caption), bounds) {}
};

class TextBox : public Control {
 public:
  TextBox(std::string name, Bounds bounds, bool multi_line = false)
      : Control(ControlKind::kTextBox, std::move(name), "", bounds), multi_line_(multi_line) {}

  const std::string& text() const { return text_; }
  bool multi_line() const { return multi_line_; }
  // Replaces the text and runs `on_change` when it differs. Users and the form's code both call it.
  void SetText(std::string_view text);
  // A text that users can only read.
  bool read_only() const { return read_only_; }
  void SetReadOnly() { read_only_ = true; }
  bool bold() const { return bold_; }
  void SetBold(bool bold) { bold_ = bold; }
  // The letters' colour, red in the lowest byte and blue in the third (0x00BBGGRR).
  unsigned fore_color() const { return fore_color_; }
  void SetForeColor(unsigned color) { fore_color_ = color; }

  std::function<void()> on_change;

 private:
  std::string text_;
  bool multi_line_;
  bool read_only_ = false;
  bool bold_ = false;
  unsigned fore_color_ = 0;
};

// A drop-down list or an open list of which one entry can be chosen.
class ChoiceList : public Control {
 public:
  // `kind` is kComboBox or kListBox.
  ChoiceList(ControlKind kind, std::string name, Bounds bounds)
      : Control(kind, std::move(name), "", bounds) {}

  const std::vector<std::string>& items() const { return items_; }
  void AddItem(std::string_view text) { items_.emplace_back(text); }
  void ClearItems();
  // What a combo box shows while nothing is chosen.
  const std::string& initial_text() const { return initial_text_; }
  void SetInitialText(std::string_view text) { initial_text_ = text; }
  // 0-based position of the chosen entry, -1 while nothing is chosen.
  int list_index() const { return list_index_; }
  // Chooses an entry and runs `on_change`, also when it was chosen already (as picking it again
  // does). Throws std::out_of_range for a position that does not exist.
  void Choose(int list_index);

  std::function<void()> on_change;

 private:
  std::vector<std::string> items_;
  std::string initial_text_;
  int list_index_ = -1;
};

// One of the option buttons of a form that share a group: pressing it releases the others.
class OptionButton : public Control {
 public:
  OptionButton(std::string name, std::string caption, std::string group, Bounds bounds)
      : Control(ControlKind::kOptionButton, std::move(name), std::move(caption), bounds),
        group_(std::move(group)) {}

  const std::string& group() const { return group_; }
  bool pressed() const { return pressed_; }

  std::function<void()> on_click;

 private:
  friend class Form;
  std::string group_;
  bool pressed_ = false;
};

class CheckBox : public Control {
 public:
  CheckBox(std::string name, std::string caption, Bounds bounds)
      : Control(ControlKind::kCheckBox, std::move(name), std::move(caption), bounds) {}

  bool checked() const { return checked_; }
  void SetChecked(bool checked);

  std::function<void()> on_click;

 private:
  bool checked_ = false;
};

class Button : public Control {
 public:
  Button(std::string name, std::string caption, Bounds bounds)
      : Control(ControlKind::kButton, std::move(name), std::move(caption), bounds) {}

  // Enter presses the default button, Escape the cancel button.
  bool is_default() const { return is_default_; }
  void SetDefault(bool is_default = true) { is_default_ = is_default; }
  bool is_cancel() const { return is_cancel_; }
  void SetCancel() { is_cancel_ = true; }
  // What a user's press does; nothing when the button is disabled or hidden.
  void Press();

  std::function<void()> on_click;

 private:
  bool is_default_ = false;
  bool is_cancel_ = false;
};

class UserInterface;

// A dialog. Derived classes add their controls in the constructor, in tab order, and set the event
// handlers. A form is created hidden, shown through a user interface, hidden by its own buttons,
// and unloaded by its owner or by the user's close box.
class Form {
 public:
  // `name` is the dialog's name in the model (`frmSaveComments`); sizes in points.
  Form(std::string name, std::string caption, double width, double height);
  virtual ~Form();
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  const std::string& name() const { return name_; }
  const std::string& caption() const { return caption_; }
  void SetCaption(std::string_view caption);
  double width() const { return width_; }
  double height() const { return height_; }
  // Nullopt leaves the place to the user interface.
  const std::optional<FormPosition>& position() const { return position_; }
  bool visible() const { return visible_; }
  bool unloaded() const { return unloaded_; }

  const std::vector<std::unique_ptr<Control>>& controls() const { return controls_; }
  // The control of that name (case-insensitive), null when there is none.
  Control* Find(std::string_view name) const;

  // Presses an option button and releases the others of its group; runs its `on_click`.
  void PressOption(OptionButton& option);

  // Hides the form: a modal showing ends, its answer can be read.
  void Hide();
  // The owner's unload: hides the form, runs OnUnload. Does nothing when it is unloaded already.
  void Unload();
  // The user's close box (or closing shortcut): unloads the form unless it refuses. Returns false
  // when it refused.
  bool CloseByUser();

  // What the showing user interface attached, told of Hide, SetCaption and control changes through
  // Refresh; null while none shows the form.
  void Attach(UserInterface* shown_by) { shown_by_ = shown_by; }
  UserInterface* shown_by() const { return shown_by_; }
  // A user interface calls it when it makes the form visible: sets visible, then runs OnActivate. A
  // form that was unloaded starts over.
  void Activate();

 protected:
  template <typename ControlType, typename... Arguments>
  ControlType& Add(Arguments&&... arguments) {
    auto control = std::make_unique<ControlType>(std::forward<Arguments>(arguments)...);
    ControlType& added = *control;
    controls_.push_back(std::move(control));
    return added;
  }

  // Before the form is shown.
  void SetPosition(const FormPosition& position) { position_ = position; }
  // Runs each time the form is shown.
  virtual void OnActivate() {}
  // Runs when the form is unloaded.
  virtual void OnUnload() {}
  // False refuses the user's close box.
  virtual bool AllowsCloseByUser() const { return true; }

 private:
  std::string name_;
  std::string caption_;
  double width_;
  double height_;
  std::optional<FormPosition> position_;
  bool visible_ = false;
  bool unloaded_ = false;
  std::vector<std::unique_ptr<Control>> controls_;
  UserInterface* shown_by_ = nullptr;
};

}  // namespace vantora
