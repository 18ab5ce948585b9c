// A modeless form as one line of a terminal, redrawn in place.
#pragma once

#include <string>

#include "core/form.h"
#include "ui/console/terminal.h"

namespace vantora::ui {

// The line: the form's caption, its message and, when a label reads as a percentage, a bar with it;
// the texts are cut so that the line stays within `width` columns.
std::string ProgressLine(const Form& form, int width);

class ProgressLineWriter {
 public:
  explicit ProgressLineWriter(Terminal& terminal) : terminal_(terminal) {}

  // Draws the line over the one shown before; nothing is written while it stays the same.
  void Draw(const Form& form);
  // Removes the line and leaves the cursor at its start.
  void Clear();

 private:
  Terminal& terminal_;
  std::string shown_;
};

}  // namespace vantora::ui
