// A user interface that is run from answers given beforehand: each presses real controls of the
// dialog that appears.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/user_interface.h"
#include "ui/scripted/answer.h"

namespace vantora::ui {

// A message box that was shown and answered. `style` is a sum of MessageBoxStyle values.
struct ShownMessageBox {
  std::string title;
  std::string text;
  int style = 0;
  MessageBoxResult result = MessageBoxResult::kOk;
};

// The answers are consumed in order, one for each message box and each showing of a dialog; a
// dialog that is still visible after its answer takes the next one. When none is left, the mode
// decides what happens.
//
// MessageBox and ShowModal throw AnswerError when the answer does not fit what appeared, when it
// names a control that the dialog does not have, a value the control can't take, or a disabled or
// hidden control; MissingAnswer when none is left.
class ScriptedUserInterface : public UserInterface {
 public:
  enum class WhenExhausted {
    kAsk,  // the fallback shows the message box or dialog; without one, MissingAnswer is thrown
    kYes,  // OK or Yes for each message box, the default button for each dialog
  };

  explicit ScriptedUserInterface(std::vector<Answer> answers = {},
                                 WhenExhausted when_exhausted = WhenExhausted::kAsk);

  // Shows what is left to ask, and all that is shown modeless. Must outlive this object and the
  // forms it showed.
  void SetFallback(UserInterface* fallback) { fallback_ = fallback; }
  // Called for each message box once it has been answered, whoever answered it.
  void SetObserver(std::function<void(const ShownMessageBox&)> observer) {
    observer_ = std::move(observer);
  }

  const std::vector<ShownMessageBox>& message_boxes() const { return message_boxes_; }
  // The answers that nothing has asked for yet.
  const std::deque<Answer>& unused_answers() const { return answers_; }

  // Takes the next answer for what the host itself asks, `prompt` being its name (kInputRange) and
  // `text` its wording: the value, or nullopt inside for Cancel. Nullopt outside when no answer is
  // left. Throws AnswerError when the answer is for something else.
  std::optional<std::optional<std::string>> AnswerPrompt(std::string_view prompt,
                                                         std::string_view text);

  MessageBoxResult MessageBox(std::string_view text, int style, std::string_view title) override;
  void ShowModal(Form& form) override;
  void ShowModeless(Form& form) override;
  void Refresh(Form& form) override;
  void Forget(Form& form) override;
  void DoEvents() override;
  WindowSystem* windows() override;

 private:
  MessageBoxResult AnswerMessageBox(std::string_view text, int style, std::string_view title);
  Answer TakeAnswer();

  std::deque<Answer> answers_;
  WhenExhausted when_exhausted_;
  UserInterface* fallback_ = nullptr;
  std::function<void(const ShownMessageBox&)> observer_;
  std::vector<ShownMessageBox> message_boxes_;
};

}  // namespace vantora::ui
