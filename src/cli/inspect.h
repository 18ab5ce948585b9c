// `vantora inspect`: what the operations see of a model.
#pragma once

#include <filesystem>

#include "cli/environment.h"
#include "cli/run_outcome.h"

namespace vantora::cli {

struct InspectOptions {
  std::filesystem::path model;
  bool json = false;
};

// Prints the inspection on `environment.out`; a workbook that can't be opened is told on
// `environment.err` (kError). Problems of the model are part of the result and no error.
ExitCode Inspect(const InspectOptions& options, Environment& environment);

}  // namespace vantora::cli
