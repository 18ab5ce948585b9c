#include "ui/console/progress_line.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "ui/console/terminal_text.h"

namespace vantora::ui {
namespace {

constexpr int kBarColumns = 10;
// A narrower terminal shows the percentage without the bar.
constexpr int kLeastColumnsWithBar = 50;

// 54 for "54%".
std::optional<int> Percentage(std::string_view text) {
  if (!text.ends_with('%')) return std::nullopt;
  text.remove_suffix(1);
  int percent = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), percent);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return percent;
}

std::string Bar(int percent, int width) {
  std::string number = std::to_string(percent) + "%";
  number.insert(0, number.size() < 4 ? 4 - number.size() : 0, ' ');
  if (width < kLeastColumnsWithBar) return " " + number;
  const int filled = std::clamp(percent, 0, 100) * kBarColumns / 100;
  return " [" + std::string(filled, '#') + std::string(kBarColumns - filled, '-') + "] " + number;
}

}  // namespace

std::string ProgressLine(const Form& form, int width) {
  std::string text = form.caption();
  std::optional<int> percent;
  for (const auto& control : form.controls()) {
    if (control->kind() != ControlKind::kLabel || !control->visible()) continue;
    if (control->caption().empty()) continue;
    if (const std::optional<int> number = Percentage(control->caption())) {
      percent = number;
    } else {
      text += (text.empty() ? "" : ": ") + control->caption();
    }
  }
  text = Printable(text);
  std::replace(text.begin(), text.end(), '\n', ' ');
  const std::string bar = percent ? Bar(*percent, width) : "";
  return CutToWidth(text, width - static_cast<int>(bar.size())) + bar;
}

void ProgressLineWriter::Draw(const Form& form) {
  // One column stays free: a full line would make the terminal go on to the next one.
  const int width = terminal_.Width() - 1;
  std::string line = ProgressLine(form, width);
  if (line == shown_) return;
  // Blanks cover what the line before left over, as far as the terminal is still that wide.
  const int left_over = std::min(DisplayWidth(shown_), width) - DisplayWidth(line);
  terminal_.Write("\r" + line + std::string(std::max(left_over, 0), ' '));
  shown_ = std::move(line);
}

void ProgressLineWriter::Clear() {
  if (shown_.empty()) return;
  const int width = std::min(DisplayWidth(shown_), terminal_.Width() - 1);
  terminal_.Write("\r" + std::string(width, ' ') + "\r");
  shown_.clear();
}

}  // namespace vantora::ui
