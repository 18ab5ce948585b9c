#include "ui/console/form_prompts.h"

#include <algorithm>
#include <optional>

#include "core/convert.h"
#include "ui/console/terminal_text.h"

namespace vantora::ui {
namespace {

bool IsReadOnlyText(const Control& control) {
  const auto* box = dynamic_cast<const TextBox*>(&control);
  return box && box->read_only();
}

bool IsUsable(const Control& control) {
  return control.visible() && control.enabled() && !IsReadOnlyText(control);
}

// Typed for an empty text, where Enter alone keeps the one that is there.
constexpr std::string_view kEmptyText = "\"\"";

// A form that asks more is shown as a list.
constexpr std::size_t kMostQuestionsInARow = 8;

bool SameControls(const std::vector<Question>& a, const std::vector<Question>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](const Question& x, const Question& y) { return x.controls == y.controls; });
}

// The entries that a text names, separated by blanks or commas; all or none of them by these words.
// Nullopt when it names something else.
std::optional<std::vector<bool>> MatchEntries(const std::vector<std::string>& entries,
                                              std::string_view typed) {
  if (EqualsIgnoreCase(typed, "all")) return std::vector<bool>(entries.size(), true);
  std::vector<bool> matched(entries.size());
  if (EqualsIgnoreCase(typed, "none")) return matched;
  while (!typed.empty()) {
    const std::size_t end = std::min(typed.find_first_of(" ,"), typed.size());
    const std::string_view word = typed.substr(0, end);
    typed.remove_prefix(std::min(end + 1, typed.size()));
    if (word.empty()) continue;
    const std::optional<int> index = MatchEntry(entries, word);
    if (!index) return std::nullopt;
    matched[static_cast<std::size_t>(*index)] = true;
  }
  return matched;
}

void WriteEntries(Terminal& terminal, const std::vector<std::string>& entries) {
  for (std::size_t i = 0; i < entries.size(); ++i) {
    terminal.WriteParagraph("  " + std::to_string(i + 1) + "  " + entries[i]);
  }
}

}  // namespace

void FormPrompts::Run() {
  terminal_.Write("\n");
  terminal_.WriteParagraph(form_.caption());
  terminal_.WriteParagraph(std::string(DisplayWidth(form_.caption()), '-'));
  while (Open()) {
    const std::vector<Question> questions = QuestionsOf(form_);
    const bool lists = questions.size() > kMostQuestionsInARow;
    ShowTexts(!lists);
    Next next = lists ? AskFromList(questions) : AskControls();
    if (!lists && next == Next::kGoOn && Open()) next = AskButtons();
    if (next == Next::kCancel) Cancel();
  }
}

void FormPrompts::ShowTexts(bool with_headings) {
  for (const auto& control : form_.controls()) {
    if (!control->visible()) continue;
    // A text of several lines ends in line breaks as a rule; blank lines at its end say nothing.
    if (IsReadOnlyText(*control)) {
      const std::string& text = static_cast<const TextBox&>(*control).text();
      const std::size_t end = text.find_last_not_of("\n");
      if (end != std::string::npos) terminal_.WriteParagraph(text.substr(0, end + 1));
    } else if (control->kind() == ControlKind::kLabel && !control->caption().empty()) {
      if (!with_headings && IsHeading(form_, static_cast<const Label&>(*control))) continue;
      terminal_.WriteParagraph(WithoutAccelerators(control->caption()));
    }
  }
}

// A control's handler may show, hide, enable or disable the ones after it, or close the form.
FormPrompts::Next FormPrompts::AskControls() {
  for (std::size_t i = 0; i < form_.controls().size() && Open(); ++i) {
    if (IsUsable(*form_.controls()[i]) && AskControl(i) == Next::kCancel) return Next::kCancel;
  }
  return Next::kGoOn;
}

FormPrompts::Next FormPrompts::AskControl(std::size_t position) {
  Control& control = *form_.controls()[position];
  switch (control.kind()) {
    case ControlKind::kTextBox: {
      auto& box = static_cast<TextBox&>(control);
      return box.multi_line() ? AskMultiLineText(box) : AskText(box);
    }
    case ControlKind::kComboBox:
    case ControlKind::kListBox:
      return AskList(static_cast<ChoiceList&>(control));
    case ControlKind::kCheckBox:
      return AskCheckBox(static_cast<CheckBox&>(control));
    case ControlKind::kOptionButton: {
      const auto& option = static_cast<OptionButton&>(control);
      const bool first_of_group = UsableOptions(option.group()).front() == &option;
      return first_of_group ? AskOptions(option) : Next::kGoOn;
    }
    case ControlKind::kLabel:
    case ControlKind::kButton:
      break;
  }
  return Next::kGoOn;
}

FormPrompts::Next FormPrompts::AskFromList(const std::vector<Question>& questions) {
  std::vector<std::string> entries;
  std::vector<std::string> lines;
  for (const Question& question : questions) {
    entries.push_back(question.heading);
    lines.push_back(question.heading + " [" + AnswerTo(question) + "]");
  }
  const std::vector<Button*> buttons = UsableButtons();
  Button* on_enter = nullptr;
  for (Button* button : buttons) {
    entries.push_back(WithoutAccelerators(button->caption()));
    lines.push_back(entries.back());
    if (button->is_default()) on_enter = button;
  }
  WriteEntries(terminal_, lines);
  const std::string prompt =
      "What to change, or button" +
      (on_enter ? " [" + WithoutAccelerators(on_enter->caption()) + "]" : "") + ": ";
  while (true) {
    const Chosen chosen = AskChoice(terminal_, prompt, entries);
    if (chosen.kind == Chosen::Kind::kCancelled) return Next::kCancel;
    const auto index = static_cast<std::size_t>(chosen.index);
    if (chosen.kind == Chosen::Kind::kEntry && index < questions.size()) {
      const Question& question = questions[index];
      if (AskQuestion(question) == Next::kCancel) return Next::kCancel;
      terminal_.WriteParagraph(question.heading + " [" + AnswerTo(question) + "]");
      // What the answer changed in the form shows in a list of its own.
      if (!Open() || !SameControls(questions, QuestionsOf(form_))) return Next::kGoOn;
      continue;
    }
    Button* button =
        chosen.kind == Chosen::Kind::kEntry ? buttons[index - questions.size()] : on_enter;
    if (button != nullptr) {
      button->Press();
      return Next::kGoOn;
    }
    terminal_.WriteParagraph("Enter presses none of the buttons: type a number or a caption.");
  }
}

FormPrompts::Next FormPrompts::AskQuestion(const Question& question) {
  if (question.controls.size() > 1 && question.controls.front()->kind() == ControlKind::kCheckBox) {
    return AskCheckBoxes(question);
  }
  const auto& controls = form_.controls();
  const auto first = std::find_if(controls.begin(), controls.end(), [&](const auto& control) {
    return control.get() == question.controls.front();
  });
  return AskControl(static_cast<std::size_t>(first - controls.begin()));
}

FormPrompts::Next FormPrompts::AskCheckBoxes(const Question& question) {
  std::vector<std::string> captions;
  for (const Control* control : question.controls) {
    captions.push_back(WithoutAccelerators(control->caption()));
  }
  const std::string prompt =
      "Which of " + captions.front() + " to " + captions.back() + " (or all, none): ";
  while (true) {
    const std::optional<std::string> typed = terminal_.Ask(prompt);
    if (!typed || EqualsIgnoreCase(*typed, "cancel")) return Next::kCancel;
    if (typed->empty()) return Next::kGoOn;
    const std::optional<std::vector<bool>> checked = MatchEntries(captions, *typed);
    if (!checked) {
      terminal_.WriteParagraph("Type them with blanks or commas between, \"all\" or \"none\".");
      continue;
    }
    for (std::size_t i = 0; i < captions.size(); ++i) {
      static_cast<CheckBox*>(question.controls[i])->SetChecked((*checked)[i]);
    }
    return Next::kGoOn;
  }
}

FormPrompts::Next FormPrompts::AskText(TextBox& box) {
  const std::string prompt = box.text().empty()
                                 ? "Text: "
                                 : "Text [" + box.text() + "] (Enter keeps it, \"\" empties it): ";
  const std::optional<std::string> typed = terminal_.AskVerbatim(prompt);
  if (!typed) return Next::kCancel;
  if (!typed->empty()) box.SetText(*typed == kEmptyText ? "" : *typed);
  return Next::kGoOn;
}

FormPrompts::Next FormPrompts::AskMultiLineText(TextBox& box) {
  if (!box.text().empty()) terminal_.WriteParagraph("Text: " + box.text());
  terminal_.WriteParagraph(box.text().empty()
                               ? "Type the text, then an empty line:"
                               : "Enter keeps it, \"\" empties it; or type another, then an empty "
                                 "line:");
  std::string text;
  while (true) {
    const std::optional<std::string> line = terminal_.AskVerbatim("> ");
    if (!line) return Next::kCancel;
    if (line->empty()) break;
    if (text.empty() && *line == kEmptyText) {
      box.SetText("");
      return Next::kGoOn;
    }
    text += (text.empty() ? "" : "\n") + *line;
  }
  if (!text.empty()) box.SetText(text);
  return Next::kGoOn;
}

FormPrompts::Next FormPrompts::AskList(ChoiceList& list) {
  if (list.items().empty()) {
    terminal_.WriteParagraph("  (the list is empty)");
    return Next::kGoOn;
  }
  WriteEntries(terminal_, list.items());
  const int chosen_before = list.list_index();
  const std::string prompt =
      chosen_before >= 0 ? "Choice [" + std::to_string(chosen_before + 1) + " " +
                               list.items()[chosen_before] + "]: "
                         : (list.initial_text().empty() ? "Choice" : list.initial_text()) + ": ";
  const Chosen chosen = AskChoice(terminal_, prompt, list.items());
  if (chosen.kind == Chosen::Kind::kCancelled) return Next::kCancel;
  if (chosen.kind == Chosen::Kind::kEntry) list.Choose(chosen.index);
  return Next::kGoOn;
}

FormPrompts::Next FormPrompts::AskOptions(const OptionButton& first) {
  const std::vector<OptionButton*> options = UsableOptions(first.group());
  std::vector<std::string> captions;
  std::string pressed;
  for (const OptionButton* option : options) {
    captions.push_back(WithoutAccelerators(option->caption()));
    if (option->pressed()) pressed = " [" + std::to_string(captions.size()) + "]";
  }
  WriteEntries(terminal_, captions);
  const Chosen chosen = AskChoice(terminal_, "Choice" + pressed + ": ", captions);
  if (chosen.kind == Chosen::Kind::kCancelled) return Next::kCancel;
  if (chosen.kind == Chosen::Kind::kEntry) form_.PressOption(*options[chosen.index]);
  return Next::kGoOn;
}

FormPrompts::Next FormPrompts::AskCheckBox(CheckBox& box) {
  const std::string prompt =
      WithoutAccelerators(box.caption()) + " (y/n) [" + (box.checked() ? "y" : "n") + "]: ";
  while (true) {
    const std::optional<std::string> typed = terminal_.Ask(prompt);
    if (!typed || EqualsIgnoreCase(*typed, "cancel")) return Next::kCancel;
    if (typed->empty()) return Next::kGoOn;
    const bool yes = EqualsIgnoreCase(*typed, "y") || EqualsIgnoreCase(*typed, "yes");
    const bool no = EqualsIgnoreCase(*typed, "n") || EqualsIgnoreCase(*typed, "no");
    if (yes || no) {
      if (box.checked() != yes) box.SetChecked(yes);
      return Next::kGoOn;
    }
    terminal_.WriteParagraph("Type y for yes or n for no.");
  }
}

FormPrompts::Next FormPrompts::AskButtons() {
  const std::vector<Button*> buttons = UsableButtons();
  std::vector<std::string> captions;
  Button* on_enter = buttons.size() == 1 ? buttons.front() : nullptr;
  for (Button* button : buttons) {
    captions.push_back(WithoutAccelerators(button->caption()));
    if (button->is_default()) on_enter = button;
  }
  WriteEntries(terminal_, captions);
  const std::string on_enter_caption =
      on_enter != nullptr ? " [" + WithoutAccelerators(on_enter->caption()) + "]" : "";
  while (true) {
    const Chosen chosen = AskChoice(terminal_, "Button" + on_enter_caption + ": ", captions);
    if (chosen.kind == Chosen::Kind::kCancelled) return Next::kCancel;
    Button* button = chosen.kind == Chosen::Kind::kEntry ? buttons[chosen.index] : on_enter;
    if (button != nullptr) {
      button->Press();
      return Next::kGoOn;
    }
    terminal_.WriteParagraph("Enter presses none of the buttons: type a number or a caption.");
  }
}

void FormPrompts::Cancel() {
  for (Button* button : UsableButtons()) {
    if (!button->is_cancel()) continue;
    button->Press();
    if (!Open()) return;
  }
  if (form_.CloseByUser()) return;
  throw InputEnded("The dialog \"" + form_.caption() + "\" can't be left without an answer.");
}

std::vector<Button*> FormPrompts::UsableButtons() const {
  std::vector<Button*> buttons;
  for (const auto& control : form_.controls()) {
    if (control->kind() == ControlKind::kButton && IsUsable(*control)) {
      buttons.push_back(static_cast<Button*>(control.get()));
    }
  }
  return buttons;
}

std::vector<OptionButton*> FormPrompts::UsableOptions(const std::string& group) const {
  std::vector<OptionButton*> options;
  for (const auto& control : form_.controls()) {
    if (control->kind() != ControlKind::kOptionButton || !IsUsable(*control)) continue;
    auto* option = static_cast<OptionButton*>(control.get());
    if (option->group() == group) options.push_back(option);
  }
  return options;
}

}  // namespace vantora::ui
