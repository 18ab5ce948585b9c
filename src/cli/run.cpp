#include "cli/run.h"

#include <memory>
#include <optional>
#include <utility>

#include "cli/call.h"
#include "cli/journal.h"
#include "cli/report.h"
#include "cli/run_user_interface.h"
#include "cli/save.h"
#include "cli/writing_checks.h"
#include "core/convert.h"
#include "package/file_error.h"

namespace vantora::cli {
namespace {

std::vector<ui::Answer> ParseAnswers(const std::vector<std::string>& texts) {
  std::vector<ui::Answer> answers;
  for (const std::string& text : texts) {
    try {
      answers.push_back(ui::ParseAnswer(text));
    } catch (const std::invalid_argument& error) {
      throw UsageError(error.what());
    }
  }
  return answers;
}

RunUserInterface::Unanswered WhoAnswers(const RunOptions& options, const Environment& environment) {
  if (options.yes) return RunUserInterface::Unanswered::kYes;
  return environment.interactive ? RunUserInterface::Unanswered::kTerminal
                                 : RunUserInterface::Unanswered::kFail;
}

host::WorksheetPtr SheetOf(embedded::Session& session, const std::string& name) {
  try {
    return session.Worksheet(name);
  } catch (const HostError&) {
    throw UsageError("The workbook has no worksheet \"" + name + "\".");
  }
}

// The sheet that a reference to cells names, as it is written but for the quotes around it; "" when
// it names none.
std::string SheetIn(const std::string& reference) {
  const std::size_t mark = reference.rfind('!');
  if (mark == std::string::npos) return "";
  const bool quoted = mark >= 2 && reference.front() == '\'' && reference[mark - 1] == '\'';
  return quoted ? reference.substr(1, mark - 2) : reference.substr(0, mark);
}

// The range that an option names. A reference that is none is a mistake of the command line.
host::RangePtr RangeOf(embedded::Session& session, const std::string& reference) {
  try {
    return session.Range(reference);
  } catch (const HostError& error) {
    if (const std::string sheet = SheetIn(reference); !sheet.empty()) SheetOf(session, sheet);
    throw UsageError(error.description());
  }
}

void NameCaller(embedded::Session& session, const std::string& shape) {
  try {
    session.SetCaller(shape);
  } catch (const HostError& error) {
    throw UsageError(error.description());
  }
}

// Calls `prepare` for an option; what the host refuses is told with the option.
template <typename Function>
void ForOption(const std::string& option, Function prepare) {
  try {
    prepare();
  } catch (const HostError& error) {
    throw HostError(error.number(), option + ": " + error.description(), error.source());
  }
}

void SetCell(embedded::Session& session, const CellToSet& cell) {
  const host::RangePtr range = RangeOf(session, cell.reference);
  if (range->Areas().size() > 1) {
    throw UsageError("--set writes one area at a time, not \"" + cell.reference + "\".");
  }
  ForOption("--set \"" + cell.reference + "=" + cell.value + "\"",
            [&] { range->SetValue(Value(cell.value)); });
}

void Select(embedded::Session& session, const std::string& selection) {
  const host::RangePtr range = RangeOf(session, selection);
  const std::string sheet = SheetIn(selection);
  const host::WorksheetPtr active = session.application()->ActiveSheet();
  if (!sheet.empty() && (!active || !EqualsIgnoreCase(sheet, active->Name()))) {
    throw UsageError("--select \"" + selection + "\" is not on the active sheet: add --sheet \"" +
                     sheet + "\".");
  }
  ForOption("--select \"" + selection + "\"", [&] { range->Select(); });
}

void Prepare(embedded::Session& session, const RunOptions& options) {
  if (!options.sheet.empty()) SheetOf(session, options.sheet)->Activate();
  for (const CellToSet& cell : options.cells_to_set) SetCell(session, cell);
  if (!options.selection.empty()) Select(session, options.selection);
  if (!options.caller.empty()) NameCaller(session, options.caller);
}

// `prefix` stands before the sheets' names.
void TellUncalculated(embedded::Session& session, int workbook, const std::string& prefix,
                      RunOutcome& outcome) {
  for (const embedded::Uncalculated& formula : session.Calculate(workbook)) {
    outcome.uncalculated.push_back({prefix + session.file(workbook).model().NameOf(formula.sheet),
                                    formula.cell, formula.reason});
  }
}

bool IsEmpty(const embedded::ChangeList& changes) {
  return changes.inserted.empty() && changes.cells.empty() && changes.others.empty();
}

// Whether the list of changes is wanted.
bool RecordsChanges(const RunOptions& options) {
  return options.changes || options.json || !options.journal.empty();
}

void TellState(embedded::Session& session, const RunOptions& options, RunOutcome& outcome) {
  const bool tells_changes = RecordsChanges(options);
  TellUncalculated(session, 0, "", outcome);
  if (tells_changes) outcome.changes = session.Changes();
  for (int workbook = 1; workbook < session.workbook_count(); ++workbook) {
    FurtherOutcome further;
    further.name = options.further[workbook - 1].path.filename().string();
    TellUncalculated(session, workbook, "[" + further.name + "]", outcome);
    embedded::ChangeList changes = session.Changes(workbook);
    further.changed = !IsEmpty(changes);
    if (tells_changes) further.changes = std::move(changes);
    outcome.further.push_back(std::move(further));
  }
}

// What the operation called and no workbook without macros has.
void TellSkippedRoutines(const embedded::Session& session, RunOutcome& outcome) {
  if (session.SkippedRoutines().empty()) return;
  outcome.remarks.push_back("The workbook has no macros, so its routine \"" +
                            session.SkippedRoutines().front() +
                            "\" was not run; it only restores the look of sort buttons.");
}

void SaveResult(embedded::Session& session, const RunOptions& options, RunOutcome& outcome) {
  if (options.target == Target::kNowhere) return;
  SavedFiles files = Save(session, options);
  outcome.written = std::move(files.written);
  outcome.backup = std::move(files.backup);
  for (std::size_t i = 0; i < outcome.further.size(); ++i) {
    const std::filesystem::path& output = options.further[i].output;
    if (!output.empty()) outcome.further[i].written = output;
  }
}

// The result is written by now; a journal that can't be must say so.
void WriteJournal(const Journal& journal, const RunOptions& options, const RunOutcome& outcome) {
  try {
    journal.Write(options.journal, options, outcome);
  } catch (const embedded::FileError& error) {
    throw embedded::FileError(error.code(), "The result was written to " +
                                                outcome.written->string() +
                                                ", but not its journal: " + error.what());
  }
}

// The run itself; throws what ends it early.
void Execute(const RunOptions& options, const Operation& operation,
             RunUserInterface& user_interface, Environment& environment, RunOutcome& outcome) {
  std::optional<Journal> journal;
  if (!options.journal.empty()) journal.emplace(options.model);
  const std::unique_ptr<embedded::Session> session = embedded::Session::Open(options.model);
  for (const FurtherWorkbook& workbook : options.further) session->OpenFurther(workbook.path);
  session->SetPrompts(user_interface);
  session->DirectSaves(DirectorOf(options));
  // Whether another workbook is left with unsaved changes is always told.
  if (RecordsChanges(options) || !options.further.empty()) session->RecordChanges();
  Prepare(*session, options);
  ModelSession model(*session, user_interface, environment);
  operation(model, outcome);
  if (user_interface.reported_error()) {
    outcome.exit_code = ExitCode::kError;
    outcome.error = {.text = *user_interface.reported_error(),
                     .number = {},
                     .source = "",
                     .was_shown = true,
                     .save_failure = session->saves().failure()};
    return;
  }
  if (user_interface.cancelled()) {
    outcome.exit_code = ExitCode::kCancelled;
    return;
  }
  TellState(*session, options, outcome);
  TellSkippedRoutines(*session, outcome);
  SaveResult(*session, options, outcome);
  if (journal) WriteJournal(*journal, options, outcome);
}

void Fail(RunOutcome& outcome, ExitCode exit_code, ReportedError error) {
  outcome.exit_code = exit_code;
  outcome.error = std::move(error);
  outcome.arrays.clear();
  outcome.changes = {};
  outcome.uncalculated.clear();
  outcome.further.clear();
}

// Calls `run` and puts what it throws into the outcome.
template <typename Function>
void Catching(RunOutcome& outcome, Function run) {
  const auto text_only = [](const std::exception& error) {
    return ReportedError{.text = error.what(), .number = {}, .source = ""};
  };
  try {
    run();
  } catch (const UsageError& error) {
    Fail(outcome, ExitCode::kUsage, text_only(error));
  } catch (const HostError& error) {
    Fail(outcome, ExitCode::kError,
         {.text = error.description(), .number = error.number(), .source = error.source()});
  } catch (const ui::MissingAnswer& error) {
    ReportedError missing = text_only(error);
    missing.text += " Give one with --answer, or run the command on a terminal.";
    Fail(outcome, ExitCode::kUnanswered, std::move(missing));
  } catch (const ui::AnswerError& error) {
    Fail(outcome, ExitCode::kUnanswered, text_only(error));
  } catch (const ui::InputEnded& error) {
    Fail(outcome, ExitCode::kUnanswered, text_only(error));
  } catch (const embedded::FileError& error) {
    Fail(outcome, ExitCode::kError, ReportedFileError(error));
  } catch (const std::bad_alloc&) {
    Fail(outcome, ExitCode::kError,
         {.text = "There is not enough memory for this workbook.", .number = {}, .source = ""});
  } catch (const std::exception& error) {
    Fail(outcome, ExitCode::kError, text_only(error));
  }
}

}  // namespace

RunOutcome RunOperation(const RunOptions& options, Environment& environment,
                        const Operation& operation) {
  RunOutcome outcome;
  Catching(outcome, [&] {
    CheckTarget(options);
    RequireWritableTargets(options);
    ui::ConsoleUserInterface console(
        ui::Terminal(environment.in, environment.err, environment.width),
        environment.shows_progress ? ui::ConsoleUserInterface::Progress::kShown
                                   : ui::ConsoleUserInterface::Progress::kHidden);
    RunUserInterface user_interface(console, ParseAnswers(options.answers),
                                    WhoAnswers(options, environment));
    Catching(outcome, [&] { Execute(options, operation, user_interface, environment, outcome); });
    outcome.messages = user_interface.messages();
    outcome.unused_answers = user_interface.UnusedAnswers();
  });
  return outcome;
}

RunOutcome Run(const RunOptions& options, Environment& environment) {
  RunOutcome outcome;
  std::optional<Call> call;
  Catching(outcome,
           [&] { call.emplace(options.class_name, options.method_name, options.arguments); });
  if (!call) return outcome;
  return RunOperation(options, environment, [&](ModelSession& session, RunOutcome& called) {
    called.operation = options.class_name + "." + options.method_name;
    called.result = call->Run(session.services(), session.globals());
    called.arrays = call->FilledArrays();
  });
}

}  // namespace vantora::cli
