// Writing the result of a run.
#pragma once

#include <filesystem>
#include <optional>

#include "cli/run_options.h"
#include "host/session.h"

namespace vantora::cli {

struct SavedFiles {
  std::filesystem::path written;
  std::optional<std::filesystem::path> backup;
};

// Throws UsageError when `output` names the model itself, or has another ending than it.
void CheckOutput(const std::filesystem::path& model, const std::filesystem::path& output);

// Where the saves go that the operation itself makes: what the options name as the target, and
// nowhere else, whatever name the operation saves under.
embedded::SaveDirector DirectorOf(const RunOptions& options);

// Throws UsageError when a result can't go where the options say: a workbook that is opened (but
// the model with --in-place), the same file twice, or a name with another ending, which Excel would
// not open.
void CheckTarget(const RunOptions& options);

// Writes the session's workbooks where the options say (the model's target must not be nowhere),
// and only when all of them can be written: the model as it is, or as it was when the operation
// last saved it. Throws UsageError when that is of another format than the name's ending says. In
// place, the file before stays beside it as "<model>.bak", and at every moment the model's name
// refers to a whole file. Throws embedded::FileError and leaves the files as they were.
SavedFiles Save(embedded::Session& session, const RunOptions& options);

}  // namespace vantora::cli
