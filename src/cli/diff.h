// `vantora diff`: in what two workbooks differ.
#pragma once

#include <filesystem>

#include "cli/environment.h"
#include "cli/run_outcome.h"

namespace vantora::cli {

struct DiffOptions {
  std::filesystem::path before;
  std::filesystem::path after;
  bool json = false;
};

// Prints the differences on `environment.out`. A workbook that can't be opened is told on
// `environment.err` (kError); that the workbooks differ is no error.
ExitCode Diff(const DiffOptions& options, Environment& environment);

}  // namespace vantora::cli
