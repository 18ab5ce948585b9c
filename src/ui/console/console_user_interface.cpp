#include "ui/console/console_user_interface.h"

#include <string>
#include <vector>

#include "core/convert.h"
#include "core/message_box.h"
#include "ui/console/choice_prompt.h"
#include "ui/console/form_prompts.h"

namespace vantora::ui {

ConsoleUserInterface::ConsoleUserInterface(Terminal terminal, Progress progress)
    : terminal_(std::move(terminal)), shows_progress_(progress == Progress::kShown) {}

ConsoleUserInterface::~ConsoleUserInterface() { EndProgress(); }

void ConsoleUserInterface::WriteMessageBox(std::string_view text, int style,
                                           std::string_view title) {
  const std::string_view icon = IconWordOf(style);
  terminal_.Write("\n");
  std::string heading = title.empty() ? "" : "[" + std::string(title) + "]";
  if (!heading.empty() && !icon.empty()) heading += " ";
  heading += icon;
  if (!heading.empty()) terminal_.WriteParagraph(heading);
  terminal_.WriteParagraph(text);
}

MessageBoxResult ConsoleUserInterface::MessageBox(std::string_view text, int style,
                                                  std::string_view title) {
  SuspendProgress();
  WriteMessageBox(text, style, title);
  const std::vector<MessageBoxResult> buttons = ButtonsOf(style);
  const std::size_t on_enter = DefaultButtonOf(style);
  std::vector<std::string> captions;
  std::string prompt;
  for (const MessageBoxResult button : buttons) {
    captions.emplace_back(CaptionOf(button));
    prompt += std::to_string(captions.size()) + " " + captions.back() + "   ";
  }
  prompt += "[Enter: " + captions[on_enter] + "]: ";
  const Chosen chosen = AskChoice(terminal_, prompt, captions);
  if (chosen.kind == Chosen::Kind::kEntry) return buttons[chosen.index];
  if (chosen.kind == Chosen::Kind::kKept) return buttons[on_enter];
  if (const std::optional<MessageBoxResult> closed = CloseResultOf(style)) return *closed;
  throw InputEnded("The message box \"" + std::string(title) + "\" must be answered Yes or No.");
}

void ConsoleUserInterface::ShowAnswered(std::string_view text, int style, std::string_view title,
                                        MessageBoxResult answer) {
  line_.Clear();
  WriteMessageBox(text, style, title);
  terminal_.WriteParagraph("(answered: " + std::string(CaptionOf(answer)) + ")");
}

void ConsoleUserInterface::WriteQuestion(std::string_view title, std::string_view text) {
  terminal_.Write("\n");
  terminal_.WriteParagraph("[" + std::string(title) + "]");
  if (!text.empty()) terminal_.WriteParagraph(text);
}

std::optional<std::string> ConsoleUserInterface::AskLine(std::string_view title,
                                                         std::string_view text,
                                                         std::string_view initial) {
  SuspendProgress();
  WriteQuestion(title, text);
  const std::string prompt = initial.empty() ? "> " : "[" + std::string(initial) + "]: ";
  while (true) {
    const std::optional<std::string> typed = terminal_.Ask(prompt);
    if (!typed || EqualsIgnoreCase(*typed, "cancel")) return std::nullopt;
    if (!typed->empty()) return typed;
    if (!initial.empty()) return std::string(initial);
  }
}

void ConsoleUserInterface::ShowAnsweredLine(std::string_view title, std::string_view text,
                                            std::string_view answer) {
  line_.Clear();
  WriteQuestion(title, text);
  terminal_.WriteParagraph("(answered: " + std::string(answer) + ")");
}

void ConsoleUserInterface::ShowModal(Form& form) {
  SuspendProgress();
  form.Attach(this);
  form.Activate();
  FormPrompts(terminal_, form).Run();
}

void ConsoleUserInterface::ShowModeless(Form& form) {
  if (!form.visible()) {
    form.Attach(this);
    form.Activate();
  }
  if (!shows_progress_) return;
  progress_ = &form;
  DrawProgress();
}

void ConsoleUserInterface::Refresh(Form& form) {
  if (&form != progress_) return;
  if (form.visible() && !form.unloaded()) {
    DrawProgress();
  } else {
    EndProgress();
  }
}

void ConsoleUserInterface::Forget(Form& form) {
  if (&form == progress_) EndProgress();
}

void ConsoleUserInterface::DoEvents() {
  if (!interrupt_ || !interrupt_->Take()) return;
  for (const auto& control : progress_->controls()) {
    if (control->kind() != ControlKind::kButton) continue;
    auto& button = static_cast<Button&>(*control);
    if (button.is_cancel()) button.Press();
  }
  if (progress_ != nullptr) line_.Draw(*progress_);
}

void ConsoleUserInterface::DrawProgress() {
  if (!interrupt_) interrupt_.emplace();
  line_.Draw(*progress_);
}

// Until the line is drawn again Ctrl-C ends the program, so that a prompt can be left with it.
void ConsoleUserInterface::SuspendProgress() {
  line_.Clear();
  interrupt_.reset();
}

void ConsoleUserInterface::EndProgress() {
  SuspendProgress();
  progress_ = nullptr;
}

}  // namespace vantora::ui
