// The journal of a run, and `vantora undo`.
#pragma once

#include <filesystem>
#include <memory>

#include "cli/environment.h"
#include "cli/run_options.h"
#include "cli/run_outcome.h"

namespace vantora::embedded {
class ZipArchive;
}

namespace vantora::cli {

// Keeps the model as it is before a run.
class Journal {
 public:
  // Throws embedded::FileError when the model can't be read.
  explicit Journal(const std::filesystem::path& model);
  ~Journal();

  // Writes the journal of the run that left `outcome.written`, with the changes of `outcome`.
  // Throws embedded::FileError.
  void Write(const std::filesystem::path& journal, const RunOptions& options,
             const RunOutcome& outcome) const;

 private:
  std::unique_ptr<embedded::ZipArchive> before_;
};

struct UndoOptions {
  std::filesystem::path result;
  std::filesystem::path journal;
  std::filesystem::path output;
};

// Writes the workbook as it was before the journalled run. A file that changed since is refused
// (kError, told on `environment.err`). Throws UsageError for an output with another ending, or one
// that names the result or the journal.
ExitCode Undo(const UndoOptions& options, Environment& environment);

}  // namespace vantora::cli
