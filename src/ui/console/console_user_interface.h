// The user interface on a terminal: message boxes and dialogs as prompts, a progress dialog as one
// line that is redrawn in place.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/user_interface.h"
#include "ui/console/interrupt.h"
#include "ui/console/progress_line.h"
#include "ui/console/terminal.h"

namespace vantora::ui {

class ConsoleUserInterface : public UserInterface {
 public:
  // Whether modeless forms are drawn: only on a terminal, where a line can be redrawn.
  enum class Progress { kShown, kHidden };

  ConsoleUserInterface(Terminal terminal, Progress progress);
  ~ConsoleUserInterface() override;

  // Throws InputEnded when the input ends and the box has neither OK nor Cancel.
  MessageBoxResult MessageBox(std::string_view text, int style, std::string_view title) override;
  // Shows a message box that has been answered elsewhere, without asking.
  void ShowAnswered(std::string_view text, int style, std::string_view title,
                    MessageBoxResult answer);
  // Asks for a line of text, `title` and `text` above it. Enter alone gives `initial`, or asks
  // again where that is empty. Nullopt for Ctrl-D, Escape and the word "cancel".
  std::optional<std::string> AskLine(std::string_view title, std::string_view text,
                                     std::string_view initial);
  // Shows such a question that has been answered elsewhere.
  void ShowAnsweredLine(std::string_view title, std::string_view text, std::string_view answer);
  // Throws InputEnded when the input ends and the form can't be left without an answer.
  void ShowModal(Form& form) override;
  void ShowModeless(Form& form) override;
  void Refresh(Form& form) override;
  void Forget(Form& form) override;
  // Ctrl-C since the last call presses the progress dialog's cancel button.
  void DoEvents() override;

 private:
  void WriteQuestion(std::string_view title, std::string_view text);
  void WriteMessageBox(std::string_view text, int style, std::string_view title);
  void DrawProgress();
  void SuspendProgress();
  void EndProgress();

  Terminal terminal_;
  bool shows_progress_;
  ProgressLineWriter line_{terminal_};
  // The form that the line shows; null while there is none. Only then is Ctrl-C a button.
  Form* progress_ = nullptr;
  std::optional<InterruptAsButton> interrupt_;
};

}  // namespace vantora::ui
