#include "cli/command.h"

#include "cli/arguments.h"
#include "cli/class_list.h"
#include "cli/diff.h"
#include "cli/inspect.h"
#include "cli/journal.h"
#include "cli/menu.h"
#include "cli/recalculate.h"
#include "cli/report.h"
#include "cli/run.h"
#include "cli/windows.h"

namespace vantora::cli {

namespace {

ExitCode Follow(const Command& command, Environment& environment) {
  switch (command.kind) {
    case Command::Kind::kPrint:
      environment.out << command.text;
      break;
    case Command::Kind::kList:
      WriteClassList(environment.out);
      break;
    case Command::Kind::kInspect:
      return Inspect(command.inspect, environment);
    case Command::Kind::kRecalculate:
      return Recalculate(command.recalculate, environment);
    case Command::Kind::kDiff:
      return Diff(command.diff, environment);
    case Command::Kind::kUndo:
      return Undo(command.undo, environment);
    case Command::Kind::kShowMenu:
      return ShowMenu(command.menu, environment);
    case Command::Kind::kPick: {
      const RunOutcome outcome = PickFromMenu(command.menu, environment);
      Report(outcome, command.menu.run, environment.out, environment.err);
      return outcome.exit_code;
    }
    case Command::Kind::kWindows:
      return ShowWindows(command.windows, environment);
    case Command::Kind::kRun: {
      const RunOutcome outcome = Run(command.run, environment);
      Report(outcome, command.run, environment.out, environment.err);
      return outcome.exit_code;
    }
  }
  return ExitCode::kDone;
}

}  // namespace

int RunCommand(const std::vector<std::string>& arguments, Environment& environment) {
  try {
    return static_cast<int>(Follow(ParseArguments(arguments), environment));
  } catch (const UsageError& error) {
    environment.err << "vantora: " << error.what() << '\n';
    return static_cast<int>(ExitCode::kUsage);
  }
}

}  // namespace vantora::cli
