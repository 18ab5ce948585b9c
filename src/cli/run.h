// Runs an operation, such as one method of the component, on a workbook file.
#pragma once

#include <functional>

#include "cli/environment.h"
#include "cli/model_session.h"
#include "cli/run_options.h"
#include "cli/run_outcome.h"

namespace vantora::cli {

// Works on the model and puts the results into the outcome; throws what ends it early.
using Operation = std::function<void(ModelSession& session, RunOutcome& outcome)>;

// Opens the workbook, prepares it as the options say, runs the operation, and writes the result if
// the run is done (and not otherwise: on an error, a cancellation or a missing answer every file
// stays as it was). Message boxes, questions and progress appear on `environment.err` meanwhile;
// the rest is in the outcome. Throws nothing that a model, a file or an answer can cause.
RunOutcome RunOperation(const RunOptions& options, Environment& environment,
                        const Operation& operation);

// The same with the method that the options name.
RunOutcome Run(const RunOptions& options, Environment& environment);

}  // namespace vantora::cli
