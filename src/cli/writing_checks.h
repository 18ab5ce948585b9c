// Checks of the files that a command is to write, before its work begins: so that nobody answers
// questions and waits for a result that then has no place.
#pragma once

#include <filesystem>

#include "cli/run_options.h"

namespace vantora::cli {

// Throws embedded::FileError (kCannotWrite) when a folder has the file's name, when there is such a
// file and it is write-protected, and when the folder that it would stand in does not exist or
// can't be written to.
void RequireWritable(const std::filesystem::path& file);

// The same for everything that the run would write. Throws UsageError for a journal that would
// take the place of a workbook of the run.
void RequireWritableTargets(const RunOptions& options);

}  // namespace vantora::cli
