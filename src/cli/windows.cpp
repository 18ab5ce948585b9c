#include "cli/windows.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "cli/model_session.h"
#include "cli/report.h"
#include "cli/run.h"
#include "core/convert.h"
#include "presentation/display_modes.h"
#include "ui/console/terminal_text.h"

namespace vantora::cli {
namespace {

using embedded::WindowPlace;

// Characters of the drawing's longer side, and how much higher than wide a character is.
constexpr int kColumns = 72;
constexpr double kCharacterHeight = 2;

// Windows as frames of characters, each with its labels inside.
class Drawing {
 public:
  Drawing(double width, double height)
      : points_a_column_(std::max(width, 1.0) / kColumns),
        rows_(std::clamp(
            static_cast<int>(std::lround(height / points_a_column_ / kCharacterHeight)), 4, 48)),
        points_a_row_(std::max(height, 1.0) / rows_),
        lines_(static_cast<std::size_t>(rows_ + 1), std::string(kColumns + 1, ' ')) {}

  // Covers what was drawn there. What lies outside of the area is cut off.
  void Add(const WindowPlace& window, const std::vector<std::string>& lines) {
    const int left = Column(window.left);
    const int right = Column(window.left + window.width);
    const int top = Row(window.top);
    const int bottom = Row(window.top + window.height);
    for (int row = top; row <= bottom; ++row) {
      const bool is_edge = row == top || row == bottom;
      for (int column = left; column <= right; ++column) {
        const bool is_side = column == left || column == right;
        lines_[row][column] = is_edge ? (is_side ? '+' : '-') : is_side ? '|' : ' ';
      }
    }
    int row = top + 1;
    for (const std::string& line : lines) {
      if (row >= bottom) return;
      labels_.push_back({row++, left + 1, std::max(right - left - 1, 0), line});
    }
  }

  std::string Text() const {
    std::string text;
    for (int row = 0; row <= rows_; ++row) {
      text += LineWithLabels(row) + '\n';
    }
    return text;
  }

 private:
  struct Label {
    int row, column, space;
    std::string text;
  };

  int Column(double points) const {
    return std::clamp(static_cast<int>(std::lround(points / points_a_column_)), 0, kColumns);
  }
  int Row(double points) const {
    return std::clamp(static_cast<int>(std::lround(points / points_a_row_)), 0, rows_);
  }
  // Without the blanks at its end. Labels are put in from the right: left of each, a column is
  // still a byte.
  std::string LineWithLabels(int row) const {
    std::string line = lines_[row];
    std::vector<Label> labels;
    std::ranges::copy_if(labels_, std::back_inserter(labels),
                         [&](const Label& label) { return label.row == row; });
    std::ranges::sort(labels, std::greater(), &Label::column);
    for (const Label& label : labels) {
      const int width = ui::DisplayWidth(label.text);
      if (width > label.space) continue;
      line.replace(static_cast<std::size_t>(label.column), static_cast<std::size_t>(width),
                   label.text);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
  }

  double points_a_column_;
  int rows_;
  double points_a_row_;
  std::vector<std::string> lines_;
  std::vector<Label> labels_;
};

std::string Points(double points) { return NumberToText(points); }

std::string SizeOf(const WindowPlace& window) {
  return Points(window.width) + " x " + Points(window.height) + " points";
}

void Write(const std::vector<WindowPlace>& windows, double width, double height,
           std::ostream& out) {
  Drawing drawing(width, height);
  // The active window comes first and lies on top.
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    drawing.Add(*window, {ui::Printable(window->sheet), SizeOf(*window)});
  }
  if (!windows.empty()) out << drawing.Text();
  for (const WindowPlace& window : windows) {
    out << ui::Printable(window.sheet) << ": " << SizeOf(window) << ", left " << Points(window.left)
        << ", top " << Points(window.top) << (&window == &windows.front() ? " (active)\n" : "\n");
  }
  if (windows.empty()) out << "No window is left.\n";
}

}  // namespace

ExitCode ShowWindows(const WindowsOptions& options, Environment& environment) {
  std::vector<WindowPlace> windows;
  double width = 0;
  double height = 0;
  const RunOutcome outcome =
      RunOperation(options.run, environment, [&](ModelSession& session, RunOutcome&) {
        clsDisplayModes display_modes(session.services());
        display_modes.Init(&session.globals());
        if (options.mode == WindowsOptions::Mode::kUpDown) {
          display_modes.MultiWindowUD();
        } else {
          display_modes.MultiWindowLR();
        }
        windows = session.workbook().Windows();
        width = session.application().UsableWidth();
        height = session.application().UsableHeight();
      });
  if (outcome.exit_code != ExitCode::kDone) {
    Report(outcome, options.run, environment.out, environment.err);
    return outcome.exit_code;
  }
  Write(windows, width, height, environment.out);
  return outcome.exit_code;
}

}  // namespace vantora::cli
