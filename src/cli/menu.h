// The menus of a model: showing them, and running one of their entries.
#pragma once

#include "cli/environment.h"
#include "cli/run_options.h"
#include "cli/run_outcome.h"

namespace vantora::cli {

// Builds the menus as the workbook's own open event does and writes them to `environment.out` as a
// tree, or as JSON. Returns the exit code; what went wrong is told on `environment.err`.
ExitCode ShowMenu(const MenuOptions& options, Environment& environment);

// Builds the menus, then does what the entry `options.pick` does, with everything that belongs to a
// run (run.h).
RunOutcome PickFromMenu(const MenuOptions& options, Environment& environment);

}  // namespace vantora::cli
