// The command line of `vantora`.
#pragma once

#include <string>
#include <vector>

#include "cli/diff.h"
#include "cli/inspect.h"
#include "cli/journal.h"
#include "cli/recalculate.h"
#include "cli/run_options.h"

namespace vantora::cli {

struct Command {
  enum class Kind {
    kRun,
    kShowMenu,
    kPick,
    kWindows,
    kList,
    kInspect,
    kRecalculate,
    kDiff,
    kUndo,
    kPrint
  };
  Kind kind = Kind::kPrint;
  RunOptions run;                  // for kRun
  MenuOptions menu;                // for kShowMenu and kPick
  WindowsOptions windows;          // for kWindows
  InspectOptions inspect;          // for kInspect
  RecalculateOptions recalculate;  // for kRecalculate
  DiffOptions diff;                // for kDiff
  UndoOptions undo;                // for kUndo
  std::string text;                // for kPrint: help or version
};

// `arguments` without the program's name. Throws UsageError.
Command ParseArguments(const std::vector<std::string>& arguments);

// "Planning!C12=5" as a cell and its value; a sheet name in quotes may hold "=" itself. Throws
// UsageError.
CellToSet ParseCellToSet(const std::string& text);

}  // namespace vantora::cli
