// The outcome of a run in words and as JSON.
#pragma once

#include <exception>
#include <ostream>

#include "cli/run_options.h"
#include "cli/run_outcome.h"

namespace vantora::cli {

// What changed, grouped by sheet, a line a cell, at most `cells_of_a_sheet` of each sheet.
void WriteChanges(const embedded::ChangeList& changes, std::ostream& out,
                  std::size_t cells_of_a_sheet = 40);

// The method's result and, where asked for, the changes go to `out`, all else to `err`; with --json
// one JSON object goes to `out` and everything in words to `err`.
void Report(const RunOutcome& outcome, const RunOptions& options, std::ostream& out,
            std::ostream& err);

// A file's error with its number, part and place.
ReportedError ReportedFileError(const embedded::FileError& error);

// What kept a command without a run from doing its work: in words to `err` and, with --json, as one
// object with `error` to `out`.
void ReportFailure(const std::exception& error, bool json, std::ostream& out, std::ostream& err);

}  // namespace vantora::cli
