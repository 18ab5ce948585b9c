#include "cli/cell_text.h"

#include "ui/console/terminal_text.h"

namespace vantora::cli {

std::string OnOneLine(const std::string& text) {
  if (text.empty()) return "(empty)";
  std::string line;
  for (const char c : text) {
    if (c == '\n') {
      line += "\\n";
    } else if (c != '\r') {
      line += c;
    }
  }
  return ui::Printable(line);
}

std::string ContentText(const embedded::CellContent& content) {
  if (content.formula.empty()) return OnOneLine(content.value);
  return OnOneLine(content.formula) + " [" + OnOneLine(content.value) + "]";
}

std::string Count(std::size_t count, const std::string& one, const std::string& many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

}  // namespace vantora::cli
