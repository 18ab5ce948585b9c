// The `vantora` command on the process's own streams.
#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <limits>

#include "cli/command.h"
#include "ui/console/terminal.h"
#include "ui/console/user_clock.h"

int main(int argument_count, char** arguments) {
  // So that std::cin can be read on after Ctrl-D.
  std::ios::sync_with_stdio(false);
  const bool err_is_terminal = isatty(STDERR_FILENO) != 0;
  vantora::ui::UserClock clock;
  vantora::ui::NoFileVersions file_versions;
  vantora::cli::Environment environment{.in = std::cin,
                                        .out = std::cout,
                                        .err = std::cerr,
                                        .clock = clock,
                                        .file_versions = file_versions,
                                        .interactive = isatty(STDIN_FILENO) != 0 && err_is_terminal,
                                        .shows_progress = err_is_terminal,
                                        .width = [err_is_terminal] {
                                          // In a file the lines stay as they are.
                                          return err_is_terminal
                                                     ? vantora::ui::TerminalWidth(STDERR_FILENO)
                                                     : std::numeric_limits<int>::max();
                                        }};
  const int exit_code = vantora::cli::RunCommand(
      {arguments + std::min(argument_count, 1), arguments + argument_count}, environment);
  if (!std::cout.flush()) {
    std::cerr << "vantora: standard output can't be written.\n";
    return exit_code == 0 ? 1 : exit_code;
  }
  return exit_code;
}
