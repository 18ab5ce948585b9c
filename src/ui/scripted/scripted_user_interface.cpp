#include "ui/scripted/scripted_user_interface.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "core/convert.h"
#include "core/message_box.h"

namespace vantora::ui {
namespace {

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

std::string DescribeBox(std::string_view text, int style, std::string_view title) {
  std::string buttons;
  for (MessageBoxResult button : ButtonsOf(style)) {
    if (!buttons.empty()) buttons += ", ";
    buttons += CaptionOf(button);
  }
  return "the message box " + (title.empty() ? "" : Quoted(title) + " ") + "(" + buttons +
         ") with the text " + Quoted(text);
}

std::string DescribeForm(const Form& form) {
  return "the dialog " + form.name() + " " + Quoted(form.caption());
}

std::optional<bool> ParseYesNo(std::string_view text) {
  std::string_view word = TrimBlanks(text);
  for (std::string_view yes : {"true", "yes", "1"}) {
    if (EqualsIgnoreCase(word, yes)) return true;
  }
  for (std::string_view no : {"false", "no", "0"}) {
    if (EqualsIgnoreCase(word, no)) return false;
  }
  return std::nullopt;
}

std::optional<int> FindEntry(const ChoiceList& list, std::string_view value) {
  const auto& items = list.items();
  auto found = std::find(items.begin(), items.end(), value);
  if (found == items.end()) {
    found = std::find_if(items.begin(), items.end(), [&](const std::string& item) {
      return EqualsIgnoreCase(TrimBlanks(item), TrimBlanks(value));
    });
  }
  if (found != items.end()) return static_cast<int>(found - items.begin());
  std::string_view digits = TrimBlanks(value);
  if (digits.empty() || digits.find_first_not_of("0123456789") != std::string_view::npos) {
    return std::nullopt;
  }
  std::optional<int> position = TextToInteger(digits);
  if (!position || *position < 1 || *position > static_cast<int>(items.size())) {
    return std::nullopt;
  }
  return *position - 1;
}

// One answer at work on the dialog that appeared.
class Attempt {
 public:
  Attempt(Form& form, const Answer& answer) : form_(form), answer_(answer) {}

  void Run() {
    const auto* dialog = std::get_if<DialogAnswer>(&answer_.action);
    if (!dialog || !EqualsIgnoreCase(dialog->form, form_.name())) {
      throw AnswerError("The answer " + Quoted(answer_.text) + " does not fit " +
                        DescribeForm(form_) + ", which appeared.");
    }
    for (const ControlAnswer& control : dialog->controls) Set(control);
    Press(dialog->button);
  }

 private:
  void Set(const ControlAnswer& answer) {
    Control& control = Usable(answer.control);
    if (auto* option = dynamic_cast<OptionButton*>(&control)) {
      if (answer.has_value && ParseYesNo(answer.value) != true) Refuse(answer);
      return form_.PressOption(*option);
    }
    if (!answer.has_value) {
      Fail("names the control " + control.name() + " without a value; write " + control.name() +
           "=value");
    }
    if (auto* text_box = dynamic_cast<TextBox*>(&control)) {
      if (text_box->read_only()) {
        Fail("sets the control " + control.name() + ", which can only be read");
      }
      text_box->SetText(answer.value);
    } else if (auto* list = dynamic_cast<ChoiceList*>(&control)) {
      std::optional<int> entry = FindEntry(*list, answer.value);
      if (!entry) RefuseEntry(*list, answer);
      list->Choose(*entry);
    } else if (auto* check_box = dynamic_cast<CheckBox*>(&control)) {
      std::optional<bool> checked = ParseYesNo(answer.value);
      if (!checked) Refuse(answer);
      check_box->SetChecked(*checked);
    } else {
      Fail("sets the control " + control.name() + ", which takes no value");
    }
  }

  void Press(const std::string& name) {
    if (EqualsIgnoreCase(name, "close")) {
      form_.CloseByUser();
      return;
    }
    auto* button = dynamic_cast<Button*>(&Usable(name));
    if (!button) Fail("ends with " + name + ", which is no button");
    button->Press();
  }

  // The control of that name, which the user could use.
  Control& Usable(const std::string& name) {
    Control* control = form_.Find(name);
    if (!control) Fail("names the control " + name + ", which is not there");
    if (!control->visible()) Fail("uses the control " + control->name() + ", which is hidden");
    if (!control->enabled()) Fail("uses the control " + control->name() + ", which is disabled");
    return *control;
  }

  [[noreturn]] void Refuse(const ControlAnswer& answer) {
    Fail("gives the control " + answer.control + " the value " + Quoted(answer.value) +
         ", which it can't take");
  }

  [[noreturn]] void RefuseEntry(const ChoiceList& list, const ControlAnswer& answer) {
    std::string entries;
    for (const std::string& item : list.items()) entries += (entries.empty() ? "" : ", ") + item;
    Fail("chooses " + Quoted(answer.value) + " in the list " + list.name() +
         ", whose entries are: " + (entries.empty() ? "none" : entries));
  }

  [[noreturn]] void Fail(const std::string& problem) {
    throw AnswerError("The answer " + Quoted(answer_.text) + " " + problem + " (in " +
                      DescribeForm(form_) + ").");
  }

  Form& form_;
  const Answer& answer_;
};

void PressDefaultButton(Form& form) {
  for (const auto& control : form.controls()) {
    auto* button = dynamic_cast<Button*>(control.get());
    if (!button || !button->is_default()) continue;
    button->Press();
    if (!form.visible()) return;
  }
  throw AnswerError("There is no answer for " + DescribeForm(form) +
                    ", and its default button does not end it.");
}

}  // namespace

ScriptedUserInterface::ScriptedUserInterface(std::vector<Answer> answers,
                                             WhenExhausted when_exhausted)
    : answers_(std::make_move_iterator(answers.begin()), std::make_move_iterator(answers.end())),
      when_exhausted_(when_exhausted) {}

MessageBoxResult ScriptedUserInterface::MessageBox(std::string_view text, int style,
                                                   std::string_view title) {
  MessageBoxResult result = AnswerMessageBox(text, style, title);
  message_boxes_.push_back({std::string(title), std::string(text), style, result});
  if (observer_) observer_(message_boxes_.back());
  return result;
}

MessageBoxResult ScriptedUserInterface::AnswerMessageBox(std::string_view text, int style,
                                                         std::string_view title) {
  std::vector<MessageBoxResult> buttons = ButtonsOf(style);
  if (answers_.empty()) {
    if (when_exhausted_ == WhenExhausted::kYes) return buttons.front();
    if (fallback_) return fallback_->MessageBox(text, style, title);
    throw MissingAnswer("No answer is left for " + DescribeBox(text, style, title) + ".");
  }
  Answer answer = TakeAnswer();
  const auto* result = std::get_if<MessageBoxResult>(&answer.action);
  if (!result || std::find(buttons.begin(), buttons.end(), *result) == buttons.end()) {
    throw AnswerError("The answer " + Quoted(answer.text) + " does not fit " +
                      DescribeBox(text, style, title) + ", which appeared.");
  }
  return *result;
}

std::optional<std::optional<std::string>> ScriptedUserInterface::AnswerPrompt(
    std::string_view prompt, std::string_view text) {
  if (answers_.empty()) return std::nullopt;
  Answer answer = TakeAnswer();
  if (auto* value = std::get_if<PromptAnswer>(&answer.action); value && value->prompt == prompt) {
    return std::optional(std::move(value->value));
  }
  const auto* button = std::get_if<MessageBoxResult>(&answer.action);
  if (button && *button == MessageBoxResult::kCancel) return std::optional<std::string>();
  throw AnswerError("The answer " + Quoted(answer.text) + " does not fit " + std::string(prompt) +
                    " " + Quoted(text) + ", which was asked.");
}

void ScriptedUserInterface::ShowModal(Form& form) {
  bool asks = fallback_ && when_exhausted_ == WhenExhausted::kAsk;
  if (asks && answers_.empty()) return fallback_->ShowModal(form);
  form.Activate();
  while (form.visible()) {
    if (!answers_.empty()) {
      Answer answer = TakeAnswer();
      Attempt(form, answer).Run();
    } else if (when_exhausted_ == WhenExhausted::kYes) {
      PressDefaultButton(form);
    } else if (asks) {
      // The dialog starts over, without what the answers have set in it.
      fallback_->ShowModal(form);
    } else {
      throw MissingAnswer("No answer is left for " + DescribeForm(form) + ".");
    }
  }
}

Answer ScriptedUserInterface::TakeAnswer() {
  Answer answer = std::move(answers_.front());
  answers_.pop_front();
  return answer;
}

void ScriptedUserInterface::ShowModeless(Form& form) {
  if (fallback_) return fallback_->ShowModeless(form);
  if (!form.visible()) form.Activate();
}

// This user interface attaches itself to no form: what comes here is about a form that the fallback
// shows or is about to show.
void ScriptedUserInterface::Refresh(Form& form) {
  if (fallback_) fallback_->Refresh(form);
}

void ScriptedUserInterface::Forget(Form& form) {
  if (fallback_) fallback_->Forget(form);
}

void ScriptedUserInterface::DoEvents() {
  if (fallback_) fallback_->DoEvents();
}

WindowSystem* ScriptedUserInterface::windows() {
  return fallback_ ? fallback_->windows() : nullptr;
}

}  // namespace vantora::ui
