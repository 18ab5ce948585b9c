// Ctrl-C as a button: while one of these exists, the first interrupt signal only sets a flag.
#pragma once

#include <csignal>

namespace vantora::ui {

class InterruptAsButton {
 public:
  // Takes over the interrupt signal. A second Ctrl-C ends the program as usual; a program that
  // was started with the signal ignored keeps ignoring it. At most one may exist.
  InterruptAsButton();
  // Gives the signal back; an interrupt that nobody has taken yet then ends the program as usual.
  ~InterruptAsButton();
  InterruptAsButton(const InterruptAsButton&) = delete;
  InterruptAsButton& operator=(const InterruptAsButton&) = delete;

  // Whether Ctrl-C was pressed since the last call.
  bool Take();

 private:
  struct sigaction previous_ = {};
};

}  // namespace vantora::ui
