// What became of a run.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "cli/call.h"
#include "core/value.h"
#include "host/session.h"

namespace vantora::cli {

// What the command exits with.
enum class ExitCode : int {
  kDone = 0,
  kError = 1,       // the host or the model reported an error, or a file can't be read or written
  kUsage = 2,       // the command line can't be followed
  kCancelled = 3,   // an answer, or Ctrl-C at the progress, cancelled the operation
  kUnanswered = 4,  // an answer was missing or did not fit
};

struct ReportedError {
  std::string text;
  // Of a failing host call.
  std::optional<int> number;
  std::string source;
  // It was a message box of the model, which the user has seen.
  bool was_shown = false;
  // Why a save that the operation made failed, which the model's message box does not say; "" for
  // none.
  std::string save_failure = {};
  // Of a file that can't be opened or written: the number of its embedded::FileError::Code, the
  // package's part and the place in it ("" where there is none).
  std::optional<int> file_error = {};
  std::string part = {};
  std::string place = {};
};

struct ShownMessage {
  std::string title;
  std::string text;
  int style = 0;
  std::vector<std::string> buttons;
  std::string answer;
};

struct UncalculatedFormula {
  std::string sheet;
  embedded::CellAddress cell;
  std::string reason;
};

// What became of a workbook beside the model.
struct FurtherOutcome {
  std::string name;
  bool changed = false;
  // Filled when the options ask for them.
  embedded::ChangeList changes;
  std::optional<std::filesystem::path> written;
};

struct RunOutcome {
  ExitCode exit_code = ExitCode::kDone;
  std::optional<ReportedError> error;
  // What was run: a method, or the menu entry that was picked.
  std::string operation;
  // What the method returned; empty for a method without a result.
  Value result;
  // Arrays that the method filled.
  std::vector<FilledArray> arrays;
  std::vector<ShownMessage> messages;
  // Filled for a run that was done, when the options ask for them.
  embedded::ChangeList changes;
  std::vector<UncalculatedFormula> uncalculated;
  std::vector<FurtherOutcome> further;
  std::vector<std::string> unused_answers;
  // What the user should know of how the run was made, in sentences.
  std::vector<std::string> remarks;
  // The file that holds the result, and the one that holds what it replaced.
  std::optional<std::filesystem::path> written;
  std::optional<std::filesystem::path> backup;
};

}  // namespace vantora::cli
