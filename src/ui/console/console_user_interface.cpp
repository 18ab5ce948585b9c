#include "ui/console/console_user_interface.h"

#include <string>
#include <vector>

#include "ui/console/choice_prompt.h"
#include "ui/console/form_prompts.h"

namespace vantora::ui {
namespace {

struct BoxButton {
  std::string caption;
  MessageBoxResult result;
};

std::vector<BoxButton> ButtonsOf(int style) {
  switch (style & 0xF) {
    case kOkCancel:
      return {{"OK", MessageBoxResult::kOk}, {"Cancel", MessageBoxResult::kCancel}};
    case kYesNo:
      return {{"Yes", MessageBoxResult::kYes}, {"No", MessageBoxResult::kNo}};
    default:
      return {{"OK", MessageBoxResult::kOk}};
  }
}

std::string_view IconWord(int style) {
  switch (style & 0x70) {
    case kCritical:
      return "Error";
    case kQuestion:
      return "Question";
    case kExclamation:
      return "Warning";
    case kInformation:
      return "Information";
    default:
      return "";
  }
}

// What closing the box answers; nullopt for one that can't be closed.
std::optional<MessageBoxResult> CloseResult(int style) {
  switch (style & 0xF) {
    case kOkCancel:
      return MessageBoxResult::kCancel;
    case kYesNo:
      return std::nullopt;
    default:
      return MessageBoxResult::kOk;
  }
}

}  // namespace

ConsoleUserInterface::ConsoleUserInterface(Terminal terminal, Progress progress)
    : terminal_(std::move(terminal)), shows_progress_(progress == Progress::kShown) {}

ConsoleUserInterface::~ConsoleUserInterface() { EndProgress(); }

MessageBoxResult ConsoleUserInterface::MessageBox(std::string_view text, int style,
                                                  std::string_view title) {
  SuspendProgress();
  const std::string_view icon = IconWord(style);
  terminal_.Write("\n");
  terminal_.WriteParagraph("[" + std::string(title) + "]" + (icon.empty() ? "" : " ") +
                           std::string(icon));
  terminal_.WriteParagraph(text);
  const std::vector<BoxButton> buttons = ButtonsOf(style);
  const std::size_t on_enter = (style & kDefaultButton2) != 0 && buttons.size() > 1 ? 1 : 0;
  std::vector<std::string> captions;
  std::string prompt;
  for (const BoxButton& button : buttons) {
    captions.push_back(button.caption);
    prompt += std::to_string(captions.size()) + " " + button.caption + "   ";
  }
  prompt += "[Enter: " + buttons[on_enter].caption + "]: ";
  const Chosen chosen = AskChoice(terminal_, prompt, captions);
  if (chosen.kind == Chosen::Kind::kEntry) return buttons[chosen.index].result;
  if (chosen.kind == Chosen::Kind::kKept) return buttons[on_enter].result;
  if (const std::optional<MessageBoxResult> closed = CloseResult(style)) return *closed;
  throw InputEnded("The message box \"" + std::string(title) + "\" must be answered Yes or No.");
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
