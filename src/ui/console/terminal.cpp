#include "ui/console/terminal.h"

#include <sys/ioctl.h>

#include <algorithm>

#include "ui/console/terminal_text.h"

namespace vantora::ui {

int TerminalWidth(int file_descriptor) {
  winsize size = {};
  if (ioctl(file_descriptor, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return 80;
  return size.ws_col;
}

int Terminal::Width() const { return std::max(width_(), 8); }

void Terminal::WriteParagraph(std::string_view text) {
  for (const std::string& line : WrapText(Printable(text), Width())) out_ << line << '\n';
}

void Terminal::Write(std::string_view text) { out_ << text << std::flush; }

std::optional<std::string> Terminal::AskVerbatim(std::string_view prompt) {
  while (true) {
    Write(Printable(prompt));
    std::string line;
    if (!std::getline(in_, line)) {
      // On a terminal Ctrl-D ends this question only; the next one is read afresh.
      in_.clear();
      Write("\n");
      return std::nullopt;
    }
    if (line.ends_with('\r')) line.pop_back();
    const bool escape = !line.empty() && line.find_first_not_of('\x1b') == std::string::npos;
    if (escape) return std::nullopt;
    if (IsPlainText(line)) return line;
    WriteParagraph("That holds characters that are no text (such as those of the arrow keys).");
  }
}

std::optional<std::string> Terminal::Ask(std::string_view prompt) {
  std::optional<std::string> line = AskVerbatim(prompt);
  if (!line) return line;
  const std::size_t first = line->find_first_not_of(" \t");
  if (first == std::string::npos) return "";
  return line->substr(first, line->find_last_not_of(" \t") + 1 - first);
}

}  // namespace vantora::ui
