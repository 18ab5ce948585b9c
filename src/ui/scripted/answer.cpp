#include "ui/scripted/answer.h"

#include <optional>
#include <utility>

#include "core/convert.h"
#include "core/message_box.h"

namespace vantora::ui {
namespace {

std::invalid_argument Malformed(std::string_view text, const std::string& problem) {
  return std::invalid_argument(
      "The answer \"" + std::string(text) + "\" " + problem +
      ". An answer is OK, Cancel, Yes or No, or form:control=value;...;button, for example "
      "frmSaveHistoryPrompt:cboYear=2;butGO, or InputRange=CELLS or GetSaveAsFilename=FILE.");
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

// Nullopt for an answer of another kind.
std::optional<PromptAnswer> ParsePrompt(std::string_view text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string_view::npos) return std::nullopt;
  for (const std::string_view prompt : {kInputRange, kGetSaveAsFilename}) {
    if (!EqualsIgnoreCase(TrimBlanks(text.substr(0, equals)), prompt)) continue;
    PromptAnswer answer{std::string(prompt), std::string(TrimBlanks(text.substr(equals + 1)))};
    if (answer.value.empty()) throw Malformed(text, "has nothing behind the equals sign");
    return answer;
  }
  return std::nullopt;
}

}  // namespace

Answer ParseAnswer(std::string_view text) {
  if (auto result = ButtonOfCaption(TrimBlanks(text))) return {std::string(text), *result};
  if (auto prompt = ParsePrompt(text)) return {std::string(text), std::move(*prompt)};
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
