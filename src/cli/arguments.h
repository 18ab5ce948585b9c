// The command line of `vantora`.
#pragma once

#include <string>
#include <vector>

#include "cli/run_options.h"

namespace vantora::cli {

struct Command {
  enum class Kind { kRun, kShowMenu, kPick, kList, kPrint };
  Kind kind = Kind::kPrint;
  RunOptions run;    // for kRun
  MenuOptions menu;  // for kShowMenu and kPick
  std::string text;  // for kPrint: help or version
};

// `arguments` without the program's name. Throws UsageError.
Command ParseArguments(const std::vector<std::string>& arguments);

// "Planning!C12=5" as a cell and its value; a sheet name in quotes may hold "=" itself. Throws
// UsageError.
CellToSet ParseCellToSet(const std::string& text);

}  // namespace vantora::cli
