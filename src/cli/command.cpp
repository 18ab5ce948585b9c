#include "cli/command.h"

#include "cli/arguments.h"
#include "cli/class_list.h"
#include "cli/menu.h"
#include "cli/report.h"
#include "cli/run.h"

namespace vantora::cli {

int RunCommand(const std::vector<std::string>& arguments, Environment& environment) {
  Command command;
  try {
    command = ParseArguments(arguments);
  } catch (const UsageError& error) {
    environment.err << "vantora: " << error.what() << '\n';
    return static_cast<int>(ExitCode::kUsage);
  }
  switch (command.kind) {
    case Command::Kind::kPrint:
      environment.out << command.text;
      break;
    case Command::Kind::kList:
      WriteClassList(environment.out);
      break;
    case Command::Kind::kShowMenu:
      return static_cast<int>(ShowMenu(command.menu, environment));
    case Command::Kind::kPick: {
      const RunOutcome outcome = PickFromMenu(command.menu, environment);
      Report(outcome, command.menu.run, environment.out, environment.err);
      return static_cast<int>(outcome.exit_code);
    }
    case Command::Kind::kRun: {
      const RunOutcome outcome = Run(command.run, environment);
      Report(outcome, command.run, environment.out, environment.err);
      return static_cast<int>(outcome.exit_code);
    }
  }
  return static_cast<int>(ExitCode::kDone);
}

}  // namespace vantora::cli
