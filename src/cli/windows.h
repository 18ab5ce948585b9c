// The window arrangements of a model.
#pragma once

#include "cli/environment.h"
#include "cli/run_options.h"
#include "cli/run_outcome.h"

namespace vantora::cli {

// Makes the arrangement `options.mode` and draws what comes of it on `environment.out`, the windows
// with their sheets and sizes in points. Writes nothing to the model. Returns the exit code; what
// went wrong is told on `environment.err`.
ExitCode ShowWindows(const WindowsOptions& options, Environment& environment);

}  // namespace vantora::cli
