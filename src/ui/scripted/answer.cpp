#include "ui/scripted/answer.h"

#include "core/convert.h"
#include "core/message_box.h"

namespace vantora::ui {
namespace {

std::invalid_argument Malformed(std::string_view text, const std::string& problem) {
  return std::invalid_argument(
      "The answer \"" + std::string(text) + "\" " + problem +
      ". An answer is OK, Cancel, Yes or No, or form:control=value;...;button, for example "
      "frmSaveHistoryPrompt:cboYear=2;butGO.");
}

// The parts between the semicolons; "\;" is a semicolon within a part, any other backslash stands
// for itself.
std::vector<std::string> SplitParts(std::string_view text) {
  std::vector<std::string> parts(1);
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text.substr(at, 2) == "\\;") {
      parts.back() += text[++at];
    } else if (text[at] == ';') {
      parts.emplace_back();
    } else {
      parts.back() += text[at];
    }
  }
  return parts;
}

ControlAnswer ParseControl(std::string_view part, std::string_view whole) {
  std::size_t equals = part.find('=');
  ControlAnswer answer;
  answer.control = TrimBlanks(part.substr(0, equals));
  if (answer.control.empty()) throw Malformed(whole, "has a part without a control's name");
  if (equals != std::string_view::npos) {
    answer.has_value = true;
    answer.value = part.substr(equals + 1);
  }
  return answer;
}

}  // namespace

Answer ParseAnswer(std::string_view text) {
  if (auto result = ButtonOfCaption(TrimBlanks(text))) return {std::string(text), *result};
  std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) {
    throw Malformed(text, "is no button of a message box and names no dialog");
  }
  DialogAnswer dialog;
  dialog.form = TrimBlanks(text.substr(0, colon));
  if (dialog.form.empty()) throw Malformed(text, "has no dialog's name before the colon");
  std::vector<std::string> parts = SplitParts(text.substr(colon + 1));
  dialog.button = TrimBlanks(parts.back());
  if (dialog.button.empty() || dialog.button.find('=') != std::string::npos) {
    throw Malformed(text, "does not end with the button to press");
  }
  parts.pop_back();
  for (const std::string& part : parts) dialog.controls.push_back(ParseControl(part, text));
  return {std::string(text), std::move(dialog)};
}

}  // namespace vantora::ui
