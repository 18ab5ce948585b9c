// Runs one method of the component on a workbook file.
#pragma once

#include "cli/environment.h"
#include "cli/run_options.h"
#include "cli/run_outcome.h"

namespace vantora::cli {

// Opens the workbook, prepares it as the options say, calls the method, and writes the result if
// the run is done (and not otherwise: on an error, a cancellation or a missing answer every file
// stays as it was). Message boxes, questions and progress appear on `environment.err` meanwhile;
// the rest is in the outcome. Throws nothing that a model, a file or an answer can cause.
RunOutcome Run(const RunOptions& options, Environment& environment);

}  // namespace vantora::cli
