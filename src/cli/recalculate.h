// `vantora recalculate`: every formula calculated afresh.
#pragma once

#include <filesystem>
#include <optional>

#include "cli/environment.h"
#include "cli/run_outcome.h"

namespace vantora::cli {

struct RecalculateOptions {
  std::filesystem::path model;
  // Tell which cells' stored values differ from the calculated ones.
  bool compare = false;
  bool json = false;
  // Where the recalculated workbook goes; it is not written without.
  std::optional<std::filesystem::path> output;
};

// Prints what differs and which formulas can't be calculated on `environment.out`. A workbook that
// can't be opened or written is told on `environment.err` (kError). Throws UsageError for an output
// that names the model itself or has another ending.
ExitCode Recalculate(const RecalculateOptions& options, Environment& environment);

}  // namespace vantora::cli
