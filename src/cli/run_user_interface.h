// The user interface of a run: questions go to the answers given beforehand and then to the
// terminal, progress to the terminal; it keeps what was shown and how the last question was
// answered.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/run_outcome.h"
#include "core/user_interface.h"
#include "host/prompts.h"
#include "ui/console/console_user_interface.h"
#include "ui/scripted/scripted_user_interface.h"

namespace vantora::cli {

class RunUserInterface : public UserInterface, public embedded::Prompts {
 public:
  // Who answers when no answer is left.
  enum class Unanswered {
    kFail,      // nobody: ScriptedUserInterface throws MissingAnswer
    kYes,       // OK or Yes to a message box, the default button of a dialog
    kTerminal,  // the person at the terminal
  };

  // `console` must outlive this object.
  RunUserInterface(ui::ConsoleUserInterface& console, std::vector<ui::Answer> answers,
                   Unanswered unanswered);

  // A message box that has only OK takes none of the answers.
  MessageBoxResult MessageBox(std::string_view text, int style, std::string_view title) override;
  // A form with a text to read that leaves only one button to press needs no answer.
  void ShowModal(Form& form) override;
  void ShowModeless(Form& form) override;
  void Refresh(Form& form) override { console_.Refresh(form); }
  void Forget(Form& form) override { console_.Forget(form); }
  void DoEvents() override { console_.DoEvents(); }

  // What the host asks. An answer given beforehand that is no reference throws ui::AnswerError.
  std::optional<std::string> InputRange(std::string_view prompt, std::string_view title,
                                        std::string_view refusal) override;
  std::optional<std::string> GetSaveAsFilename(std::string_view initial_filename,
                                               std::string_view file_filter,
                                               std::string_view title) override;

  const std::vector<ShownMessage>& messages() const { return messages_; }
  std::vector<std::string> UnusedAnswers() const;
  // The text of the first message box with the critical icon.
  const std::optional<std::string>& reported_error() const { return reported_error_; }
  // Whether the last question was left with Cancel or the close box, or the progress was cancelled.
  bool cancelled() const { return question_cancelled_ || progress_cancelled_; }

 private:
  void ShowOutcome(Form& form, Button& only);
  MessageBoxResult Answer(std::string_view text, int style, std::string_view title);
  // Asks a question of the host's whose answer is a line of text; `name` is what answers call it.
  std::optional<std::string> Ask(std::string_view name, std::string_view title,
                                 std::string_view text, std::string_view initial);

  ui::ConsoleUserInterface& console_;
  ui::ScriptedUserInterface scripted_;
  Unanswered unanswered_;
  std::vector<ShownMessage> messages_;
  std::optional<std::string> reported_error_;
  // The last question of the host's was answered beforehand.
  bool prompt_was_scripted_ = false;
  bool question_cancelled_ = false;
  bool progress_cancelled_ = false;
};

}  // namespace vantora::cli
