#include "cli/run_user_interface.h"

#include <algorithm>
#include <utility>

#include "core/convert.h"
#include "core/message_box.h"
#include "ui/console/terminal_text.h"

namespace vantora::cli {
namespace {

constexpr int kIconMask = 0xF0;

// The button that leaves a form without an answer; null when it has none.
Button* CancelButtonOf(const Form& form) {
  for (const auto& control : form.controls()) {
    if (control->kind() != ControlKind::kButton) continue;
    auto* button = static_cast<Button*>(control.get());
    if (button->is_cancel()) return button;
  }
  return nullptr;
}

// "Save as: Excel 2007 (*.xlsm), Excel 2003 (*.xls)" for a filter of descriptions and patterns.
std::string FileTypesText(std::string_view file_filter) {
  std::string text = "Save as:";
  for (bool is_description = true; !file_filter.empty(); is_description = !is_description) {
    const std::size_t comma = std::min(file_filter.find(','), file_filter.size());
    if (is_description) {
      text += text.back() == ':' ? " " : ", ";
      text += TrimBlanks(file_filter.substr(0, comma));
    }
    file_filter.remove_prefix(std::min(comma + 1, file_filter.size()));
  }
  return text;
}

// Tells whether a form's cancel button is pressed while this object exists.
class CancelWatch {
 public:
  explicit CancelWatch(const Form& form) : button_(CancelButtonOf(form)) {
    if (button_ == nullptr) return;
    original_ = button_->on_click;
    button_->on_click = [this] {
      pressed_ = true;
      if (original_) original_();
    };
  }
  ~CancelWatch() {
    if (button_ != nullptr) button_->on_click = original_;
  }
  CancelWatch(const CancelWatch&) = delete;
  CancelWatch& operator=(const CancelWatch&) = delete;

  bool pressed() const { return pressed_; }

 private:
  Button* button_;
  std::function<void()> original_;
  bool pressed_ = false;
};

// The one button that a form leaves to press; null when there are several. A form that has a text
// to read and no other button asks nothing: it tells how an operation ended.
Button* OnlyButtonOf(const Form& form) {
  Button* only = nullptr;
  for (const auto& control : form.controls()) {
    auto* button = dynamic_cast<Button*>(control.get());
    if (button == nullptr || !button->enabled() || !button->visible()) continue;
    if (only != nullptr) return nullptr;
    only = button;
  }
  return only;
}

// What it has for reading.
std::string TextOf(const Form& form) {
  std::string text;
  for (const auto& control : form.controls()) {
    const auto* box = dynamic_cast<const TextBox*>(control.get());
    if (box == nullptr || !box->read_only()) continue;
    text += (text.empty() ? "" : "\n") + box->text();
  }
  return text;
}

}  // namespace

RunUserInterface::RunUserInterface(ui::ConsoleUserInterface& console,
                                   std::vector<ui::Answer> answers, Unanswered unanswered)
    : console_(console),
      scripted_(std::move(answers), unanswered == Unanswered::kYes
                                        ? ui::ScriptedUserInterface::WhenExhausted::kYes
                                        : ui::ScriptedUserInterface::WhenExhausted::kAsk),
      unanswered_(unanswered) {
  if (unanswered == Unanswered::kTerminal) scripted_.SetFallback(&console_);
}

MessageBoxResult RunUserInterface::MessageBox(std::string_view text, int style,
                                              std::string_view title) {
  const MessageBoxResult result = Answer(text, style, title);
  ShownMessage message{
      std::string(title), std::string(text), style, {}, std::string(CaptionOf(result))};
  for (const MessageBoxResult button : ButtonsOf(style)) {
    message.buttons.emplace_back(CaptionOf(button));
  }
  const bool is_question = message.buttons.size() > 1;
  messages_.push_back(std::move(message));
  if (is_question) question_cancelled_ = result == MessageBoxResult::kCancel;
  // A critical question is a warning; without a choice it reports an error.
  if (!is_question && (style & kIconMask) == kCritical && !reported_error_) reported_error_ = text;
  return result;
}

MessageBoxResult RunUserInterface::Answer(std::string_view text, int style,
                                          std::string_view title) {
  const bool is_question = ButtonsOf(style).size() > 1;
  const bool answered_beforehand = is_question && !scripted_.unused_answers().empty();
  if (unanswered_ == Unanswered::kTerminal && !answered_beforehand) {
    return console_.MessageBox(text, style, title);
  }
  const MessageBoxResult result =
      is_question ? scripted_.MessageBox(text, style, title) : MessageBoxResult::kOk;
  console_.ShowAnswered(text, style, title, result);
  return result;
}

std::optional<std::string> RunUserInterface::InputRange(std::string_view prompt,
                                                        std::string_view title,
                                                        std::string_view refusal) {
  if (refusal.empty()) return Ask(ui::kInputRange, title, prompt, "");
  if (prompt_was_scripted_) throw ui::AnswerError(std::string(refusal));
  return Ask(ui::kInputRange, title, refusal, "");
}

std::optional<std::string> RunUserInterface::GetSaveAsFilename(std::string_view initial_filename,
                                                               std::string_view file_filter,
                                                               std::string_view title) {
  return Ask(ui::kGetSaveAsFilename, title, FileTypesText(file_filter), initial_filename);
}

std::optional<std::string> RunUserInterface::Ask(std::string_view name, std::string_view title,
                                                 std::string_view text, std::string_view initial) {
  const auto scripted = scripted_.AnswerPrompt(name, text);
  prompt_was_scripted_ = scripted.has_value();
  std::optional<std::string> answer;
  if (scripted) {
    answer = *scripted;
    console_.ShowAnsweredLine(title, text, answer.value_or("Cancel"));
  } else if (unanswered_ == Unanswered::kTerminal) {
    answer = console_.AskLine(title, text, initial);
  } else {
    throw ui::MissingAnswer("No answer is left for " + std::string(name) + " \"" +
                            std::string(text) + "\"; it looks like " + std::string(name) + "=...");
  }
  question_cancelled_ = !answer.has_value();
  messages_.push_back({std::string(title),
                       std::string(text),
                       kOkCancel,
                       {"OK", "Cancel"},
                       answer.value_or("Cancel")});
  return answer;
}

void RunUserInterface::ShowModal(Form& form) {
  Button* only = OnlyButtonOf(form);
  if (only != nullptr && !TextOf(form).empty()) return ShowOutcome(form, *only);
  CancelWatch watch(form);
  scripted_.ShowModal(form);
  question_cancelled_ = watch.pressed() || form.unloaded();
}

void RunUserInterface::ShowOutcome(Form& form, Button& only) {
  const std::string text = TextOf(form);
  messages_.push_back(
      {form.caption(), text, kInformation, {}, ui::WithoutAccelerators(only.caption())});
  if (unanswered_ == Unanswered::kTerminal && scripted_.unused_answers().empty()) {
    return console_.ShowModal(form);
  }
  console_.ShowAnswered(text, kInformation, form.caption(), MessageBoxResult::kOk);
  if (!scripted_.unused_answers().empty()) return scripted_.ShowModal(form);
  form.Activate();
  only.Press();
}

void RunUserInterface::ShowModeless(Form& form) {
  Button* cancel = form.visible() ? nullptr : CancelButtonOf(form);
  if (cancel != nullptr) {
    cancel->on_click = [this, original = cancel->on_click] {
      progress_cancelled_ = true;
      if (original) original();
    };
  }
  console_.ShowModeless(form);
}

std::vector<std::string> RunUserInterface::UnusedAnswers() const {
  std::vector<std::string> texts;
  for (const ui::Answer& answer : scripted_.unused_answers()) texts.push_back(answer.text);
  return texts;
}

}  // namespace vantora::cli
