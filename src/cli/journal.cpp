#include "cli/journal.h"

#include <nlohmann/json.hpp>

#include "cli/changes_json.h"
#include "cli/save.h"
#include "cli/writing_checks.h"
#include "package/journal.h"

namespace vantora::cli {

Journal::Journal(const std::filesystem::path& model)
    : before_(std::make_unique<embedded::ZipArchive>(model)) {}
Journal::~Journal() = default;

void Journal::Write(const std::filesystem::path& journal, const RunOptions& options,
                    const RunOutcome& outcome) const {
  nlohmann::ordered_json description = {{"operation", outcome.operation},
                                        {"arguments", options.arguments},
                                        {"model", options.model.string()},
                                        {"written", outcome.written->string()},
                                        {"changes", ChangesJson(outcome.changes)}};
  embedded::WriteJournal(
      journal, *before_, *outcome.written,
      description.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace));
}

ExitCode Undo(const UndoOptions& options, Environment& environment) {
  CheckOutput(options.result, options.output);
  std::error_code ignored;
  if (std::filesystem::equivalent(options.journal, options.output, ignored)) {
    throw UsageError("--output names the journal.");
  }
  try {
    RequireWritable(options.output);
    embedded::UndoRun(options.result, options.journal, options.output);
    environment.err << "Written: " << options.output.string() << '\n';
    return ExitCode::kDone;
  } catch (const std::exception& error) {
    environment.err << "vantora: " << error.what() << '\n';
    return ExitCode::kError;
  }
}

}  // namespace vantora::cli
