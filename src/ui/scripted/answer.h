// An answer given beforehand to a message box or a dialog.
//
//   OK  Cancel  Yes  No                          presses that button of a message box
//   frmSaveHistoryPrompt:cboYear=2;butGO         sets controls of a dialog in the order given, then
//                                                presses the button named last
//   frmSaveComments:close                        presses the dialog's close box
//   GetSaveAsFilename=Model 2027.xlsm            answers what the host asks: a file to save to,
//   InputRange=Planning!J4:N9,Planning!J12:N14   or cells; Cancel leaves either
//
// Names are compared without regard to case, and blanks around names don't count. A value depends
// on the control:
//   text box       the text as it stands, blanks included; a ";" in it is written "\;"
//   list           an entry's text (upper and lower case alike), else its 1-based position
//   check box      true, false, yes, no, 1 or 0
//   option button  named alone ("optTwo"), or true, yes or 1
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/user_interface.h"

namespace vantora::ui {

// What an answer does to one control. Without a value for an option button named alone.
struct ControlAnswer {
  std::string control;
  bool has_value = false;
  std::string value;
};

struct DialogAnswer {
  std::string form;
  std::vector<ControlAnswer> controls;
  // A button's name, or "close".
  std::string button;
};

// Names of what the host itself asks.
inline constexpr std::string_view kInputRange = "InputRange";
inline constexpr std::string_view kGetSaveAsFilename = "GetSaveAsFilename";

struct PromptAnswer {
  // One of the names above.
  std::string prompt;
  std::string value;
};

struct Answer {
  // As it was given, for messages.
  std::string text;
  std::variant<MessageBoxResult, DialogAnswer, PromptAnswer> action;
};

// Throws std::invalid_argument, with what is wrong and how it should look, for a text that is no
// answer. Whether it fits a dialog shows only when the dialog appears.
Answer ParseAnswer(std::string_view text);

// An answer does not fit the dialog or message box that appeared; the text names both.
class AnswerError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A dialog or message box appeared for which no answer was left; the text names it.
class MissingAnswer : public AnswerError {
 public:
  using AnswerError::AnswerError;
};

}  // namespace vantora::ui
