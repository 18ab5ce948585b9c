// The two streams a terminal is, and what is known of it.
#pragma once

#include <functional>
#include <istream>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace vantora::ui {

// The input ended (Ctrl-D) at a question that has no way out: its answer is missing.
class InputEnded : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class Terminal {
 public:
  // The streams must outlive the terminal. `width` gives the current number of columns.
  Terminal(std::istream& in, std::ostream& out, std::function<int()> width)
      : in_(in), out_(out), width_(std::move(width)) {}

  // Columns of a line, at least 8 whatever the terminal says.
  int Width() const;
  // Writes one line of text, wrapped to the width; control characters are replaced.
  void WriteParagraph(std::string_view text);
  // Writes as it stands, without a line break.
  void Write(std::string_view text);
  // Shows `prompt` and reads one line, without its line break and the blanks around it. Nullopt
  // when the input ended or Escape was typed; asks again for text that can't be one (arrow keys).
  std::optional<std::string> Ask(std::string_view prompt);
  // Same, but keeps the blanks of what was typed.
  std::optional<std::string> AskVerbatim(std::string_view prompt);

 private:
  std::istream& in_;
  std::ostream& out_;
  std::function<int()> width_;
};

// The number of columns of the terminal behind a file descriptor; 80 when it does not tell.
int TerminalWidth(int file_descriptor);

}  // namespace vantora::ui
