// A console user interface on string streams: what was typed beforehand, and what was shown.
#pragma once

#include <sstream>
#include <string>

#include "ui/console/console_user_interface.h"

namespace vantora::ui {

class TypedConsole {
 public:
  explicit TypedConsole(
      const std::string& typed, int width = 80,
      ConsoleUserInterface::Progress progress = ConsoleUserInterface::Progress::kShown)
      : in_(typed),
        width_(width),
        user_interface_(Terminal(in_, out_, [this] { return width_; }), progress) {}

  ConsoleUserInterface& user_interface() { return user_interface_; }
  std::string shown() const { return out_.str(); }
  // What was typed and not read.
  std::string unread() {
    std::string rest;
    std::getline(in_, rest, '\0');
    return rest;
  }
  void SetWidth(int width) { width_ = width; }

 private:
  std::istringstream in_;
  std::ostringstream out_;
  int width_;
  ConsoleUserInterface user_interface_;
};

// A user's clock that stands still.
class StoppedClock : public Clock {
 public:
  std::string NowAsGeneralDate() override { return "11/21/2026 2:31:05 PM"; }
};

}  // namespace vantora::ui
