#include "cli/arguments.h"

#include <CLI/CLI.hpp>

#include "core/convert.h"
#include "package/xml_encoding.h"
#include "ui/console/terminal_text.h"

namespace vantora::cli {
namespace {

constexpr const char* kModelHelp = "The workbook (.xlsx, .xlsm)";
constexpr const char* kSeeHelp = "\nRun with --help for more information.";

struct RawRun {
  std::string model;
  std::string method;
  bool dashboard = false;
  std::string pick;
  std::string output;
  bool in_place = false;
  bool dry_run = false;
  std::vector<std::string> cells_to_set;
  std::vector<std::string> further;
  std::vector<std::string> further_outputs;
  RunOptions options;
};

// A list option that takes one value each time it is given.
void AddRepeated(CLI::App& app, const std::string& name, std::vector<std::string>& values,
                 const std::string& help, const std::string& value_name) {
  app.add_option(name, values, help)
      ->allow_extra_args(false)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
      ->type_name(value_name);
}

void AddText(CLI::App& app, const std::string& name, std::string& value, const std::string& help,
             const std::string& value_name) {
  app.add_option(name, value, help)->type_name(value_name);
}

void DescribeModel(CLI::App& app, RawRun& raw) {
  app.add_option("MODEL", raw.model, kModelHelp)->required()->type_name("");
}

// What run and menu have in common.
void DescribeOptions(CLI::App& run, RawRun& raw) {
  RunOptions& options = raw.options;
  AddText(run, "--output", raw.output, "Write the result to FILE", "FILE");
  run.add_flag("--in-place", raw.in_place,
               "Replace MODEL and keep the file before it as MODEL.bak");
  run.add_flag("--dry-run", raw.dry_run, "Write nothing");
  AddRepeated(run, "--with", raw.further, "Open this workbook as well (repeatable)", "OTHER");
  AddRepeated(run, "--output-for", raw.further_outputs,
              "Write what became of a workbook opened with --with to FILE (repeatable)",
              "OTHER=FILE");
  AddRepeated(run, "--answer", options.answers,
              "Answer of the next message box or dialog (repeatable, in order)", "TEXT");
  run.add_flag("--yes", options.yes,
               "Once no answer is left, press OK, Yes or a dialog's default button");
  AddRepeated(run, "--set", raw.cells_to_set,
              "Write a cell first, as if typed: 'Sheet!A1=value' (repeatable)", "CELL=VALUE");
  AddText(run, "--sheet", options.sheet, "Activate this sheet first", "NAME");
  AddText(run, "--select", options.selection, "Select this address of the active sheet first",
          "ADDRESS");
  AddText(run, "--caller", options.caller,
          "The shape or control of the active sheet that runs the macro", "SHAPE");
  run.add_option("--journal", options.journal,
                 "Keep what the run replaces in FILE, for 'vantora undo'")
      ->type_name("FILE");
  run.add_flag("--changes", options.changes, "Print what changed, a line a cell");
  run.add_flag("--json", options.json, "Print the outcome as one JSON object on standard output");
}

void DescribeRun(CLI::App& run, RawRun& raw) {
  DescribeModel(run, raw);
  run.add_option("CLASS.METHOD", raw.method,
                 "What to run, with its arguments behind it; 'vantora list' shows all")
      ->required()
      ->type_name("");
  // The method's arguments: as a list option they would be split at commas when in brackets, and a
  // negative number would be no argument.
  run.allow_extras();
  DescribeOptions(run, raw);
}

void DescribeMenu(CLI::App& menu, RawRun& raw) {
  DescribeModel(menu, raw);
  AddText(menu, "--pick", raw.pick, "Run the entry, such as 'Vantora > Year end > Shift history'",
          "ENTRY");
  menu.add_flag("--dashboard", raw.dashboard,
                "Activate the dashboard first, so that its menu is shown as well");
  DescribeOptions(menu, raw);
}

void DescribeWindows(CLI::App& windows, RawRun& raw, std::string& mode) {
  DescribeModel(windows, raw);
  windows.add_option("--mode", mode, "ud: the dashboard above the sheet; lr: left of it")
      ->required()
      ->type_name("MODE");
  AddText(windows, "--sheet", raw.options.sheet, "Activate this sheet first", "NAME");
}

void DescribeInspect(CLI::App& inspect, InspectOptions& options) {
  inspect.add_option("MODEL", options.model, kModelHelp)->required()->type_name("");
  inspect.add_flag("--json", options.json, "Print one JSON object");
}

void DescribeRecalculate(CLI::App& recalculate, RecalculateOptions& options) {
  recalculate.add_option("MODEL", options.model, kModelHelp)->required()->type_name("");
  recalculate.add_flag("--compare", options.compare, "List the cells whose stored value differs");
  recalculate.add_flag("--json", options.json, "Print one JSON object");
  recalculate.add_option("--output", options.output, "Write the recalculated workbook to FILE")
      ->type_name("FILE");
}

void DescribeDiff(CLI::App& diff, DiffOptions& options) {
  diff.add_option("OLD", options.before, kModelHelp)->required()->type_name("");
  diff.add_option("NEW", options.after, "The workbook to compare with it")
      ->required()
      ->type_name("");
  diff.add_flag("--json", options.json, "Print one JSON object");
}

void DescribeUndo(CLI::App& undo, UndoOptions& options) {
  undo.add_option("RESULT", options.result, "The workbook that a run wrote")
      ->required()
      ->type_name("");
  undo.add_option("--journal", options.journal, "The journal of that run")
      ->required()
      ->type_name("FILE");
  undo.add_option("--output", options.output, "Write the workbook as it was before to FILE")
      ->required()
      ->type_name("FILE");
}

// Texts that go into the workbook, or are looked for in it; names of files may hold any byte.
void RequireText(const std::string& text) {
  if (embedded::FirstInvalidCharacter(text) == std::string::npos) return;
  throw UsageError("The argument \"" + ui::Printable(text) +
                   "\" is not UTF-8, or holds control characters. Use a terminal, or save the "
                   "script, in that encoding.");
}

void SplitMethod(const std::string& text, RunOptions& options) {
  const std::size_t dot = text.find('.');
  if (dot == std::string::npos || dot == 0 || dot + 1 == text.size()) {
    throw UsageError("\"" + text + "\" is no CLASS.METHOD, such as clsYearEnd.SaveCurrentYear.");
  }
  options.class_name = text.substr(0, dot);
  options.method_name = text.substr(dot + 1);
}

std::vector<std::string> MethodArguments(const std::vector<std::string>& remaining) {
  for (const std::string& text : remaining) {
    if (text.starts_with('-') && text.size() > 1 && !TextToNumber(text)) {
      throw UsageError("There is no option " + text + "." + kSeeHelp);
    }
    RequireText(text);
  }
  return remaining;
}

// The workbook that stands before a "=" of the text, by its path or its file name; the output goes
// behind it.
void SetOutput(const std::string& text, std::vector<FurtherWorkbook>& further) {
  for (std::size_t at = text.find('='); at != std::string::npos; at = text.find('=', at + 1)) {
    const std::filesystem::path named = text.substr(0, at);
    for (FurtherWorkbook& workbook : further) {
      if (workbook.path != named && workbook.path.filename() != named) continue;
      if (at + 1 == text.size()) break;
      if (!workbook.output.empty()) {
        throw UsageError("--output-for is given twice for " + workbook.path.string() + ".");
      }
      workbook.output = text.substr(at + 1);
      return;
    }
  }
  throw UsageError("--output-for \"" + text +
                   "\" is no workbook given with --with and a file, such as Other.xlsm=New.xlsm.");
}

std::vector<FurtherWorkbook> ParseFurther(const std::vector<std::string>& paths,
                                          const std::vector<std::string>& outputs) {
  std::vector<FurtherWorkbook> further;
  for (const std::string& path : paths) further.push_back({.path = path, .output = {}});
  for (const std::string& text : outputs) SetOutput(text, further);
  return further;
}

// All but the method and its arguments.
RunOptions ToOptions(const RawRun& raw) {
  RunOptions options = raw.options;
  options.model = raw.model;
  if (raw.dry_run && !options.journal.empty()) {
    throw UsageError("--journal keeps what a run replaces; with --dry-run it replaces nothing.");
  }
  if (raw.in_place) options.target = Target::kInPlace;
  if (!raw.output.empty()) options.target = Target::kOutputFile;
  options.output = raw.output;
  options.further = ParseFurther(raw.further, raw.further_outputs);
  for (const std::string& text : options.answers) RequireText(text);
  for (const std::string& text : {options.sheet, options.selection, options.caller, raw.pick}) {
    RequireText(text);
  }
  for (const std::string& text : raw.cells_to_set) {
    RequireText(text);
    options.cells_to_set.push_back(ParseCellToSet(text));
  }
  return options;
}

int TargetCount(const RawRun& raw) {
  return (raw.output.empty() ? 0 : 1) + (raw.in_place ? 1 : 0) + (raw.dry_run ? 1 : 0);
}

void RequireTarget(const RawRun& raw) {
  if (TargetCount(raw) == 1) return;
  throw UsageError(
      "Say where the result goes, with exactly one of --output FILE, --in-place and --dry-run.");
}

RunOptions ToRunOptions(const RawRun& raw, const std::vector<std::string>& remaining) {
  RunOptions options = ToOptions(raw);
  options.arguments = MethodArguments(remaining);
  SplitMethod(raw.method, options);
  RequireTarget(raw);
  return options;
}

Command ToMenuCommand(const RawRun& raw, bool picks) {
  if (picks) {
    if (TrimBlanks(raw.pick).empty()) throw UsageError("--pick names no entry.");
    RequireTarget(raw);
  } else if (TargetCount(raw) != 0 || raw.options.changes) {
    throw UsageError("Showing the menus writes nothing; --pick ENTRY runs one of their entries.");
  }
  Command command;
  command.kind = picks ? Command::Kind::kPick : Command::Kind::kShowMenu;
  command.menu = {.run = ToOptions(raw), .dashboard = raw.dashboard, .pick = raw.pick};
  return command;
}

WindowsOptions ToWindowsOptions(const RawRun& raw, const std::string& mode) {
  if (mode != "ud" && mode != "lr") {
    throw UsageError("--mode is ud (the dashboard above the sheet) or lr (left of it), not \"" +
                     mode + "\".");
  }
  return {.run = ToOptions(raw),
          .mode = mode == "ud" ? WindowsOptions::Mode::kUpDown : WindowsOptions::Mode::kLeftRight};
}

// What the command can do, and the options that each of it takes.
class Subcommands {
 public:
  explicit Subcommands(CLI::App& app)
      : run_(app.add_subcommand("run", "Run a method on a workbook")),
        menu_(app.add_subcommand("menu", "Show a model's menus, or run one of their entries")),
        windows_(app.add_subcommand("windows", "Draw a window arrangement of a model")),
        list_(app.add_subcommand("list", "List every class and method")),
        inspect_(app.add_subcommand("inspect",
                                    "Tell what the operations see of a model, and its problems")),
        recalculate_(
            app.add_subcommand("recalculate", "Calculate every formula of a workbook afresh")),
        diff_(app.add_subcommand("diff", "Tell in what two workbooks differ")),
        undo_(app.add_subcommand("undo", "Give a workbook back as it was before a run")) {
    // So that an unknown subcommand can be named.
    app.allow_extras();
    DescribeRun(*run_, raw_run_);
    DescribeMenu(*menu_, raw_menu_);
    DescribeWindows(*windows_, raw_windows_, mode_);
    DescribeInspect(*inspect_, command_.inspect);
    DescribeRecalculate(*recalculate_, command_.recalculate);
    DescribeDiff(*diff_, command_.diff);
    DescribeUndo(*undo_, command_.undo);
  }

  // Of the subcommand that was given. Throws UsageError.
  Command Parsed() {
    using Kind = Command::Kind;
    if (menu_->parsed()) return ToMenuCommand(raw_menu_, menu_->count("--pick") > 0);
    if (run_->parsed()) {
      command_.kind = Kind::kRun;
      command_.run = ToRunOptions(raw_run_, run_->remaining());
    } else if (windows_->parsed()) {
      command_.kind = Kind::kWindows;
      command_.windows = ToWindowsOptions(raw_windows_, mode_);
    } else {
      command_.kind = list_->parsed()          ? Kind::kList
                      : inspect_->parsed()     ? Kind::kInspect
                      : recalculate_->parsed() ? Kind::kRecalculate
                      : diff_->parsed()        ? Kind::kDiff
                                               : Kind::kUndo;
    }
    return command_;
  }

 private:
  CLI::App* run_;
  CLI::App* menu_;
  CLI::App* windows_;
  CLI::App* list_;
  CLI::App* inspect_;
  CLI::App* recalculate_;
  CLI::App* diff_;
  CLI::App* undo_;
  RawRun raw_run_;
  RawRun raw_menu_;
  RawRun raw_windows_;
  std::string mode_;
  Command command_;
};

}  // namespace

CellToSet ParseCellToSet(const std::string& text) {
  std::size_t position = 0;
  bool quoted = false;
  while (position < text.size() && (quoted || text[position] != '=')) {
    if (text[position] == '\'') quoted = !quoted;
    ++position;
  }
  if (position == 0 || position >= text.size()) {
    throw UsageError("--set \"" + text + "\" is no cell and value, such as 'Sheet!A1=value'.");
  }
  return {text.substr(0, position), text.substr(position + 1)};
}

Command ParseArguments(const std::vector<std::string>& arguments) {
  CLI::App app("Runs the operations of the Vantora planning model on its workbook.", "vantora");
  app.set_version_flag("--version", "vantora " VANTORA_VERSION);
  Subcommands subcommands(app);
  std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
  Command command;
  try {
    app.parse(reversed);
  } catch (const CLI::CallForHelp&) {
    command.text = app.help();
    return command;
  } catch (const CLI::CallForVersion& version) {
    command.text = std::string(version.what()) + "\n";
    return command;
  } catch (const CLI::ParseError& error) {
    throw UsageError(error.what() + std::string(kSeeHelp));
  }
  if (const std::vector<std::string> words = app.remaining(); !words.empty()) {
    const std::string& word = words.front();
    throw UsageError((word.starts_with('-') ? "There is no option " + word + "."
                                            : "There is no subcommand \"" + word + "\".") +
                     kSeeHelp);
  }
  if (app.get_subcommands().empty()) {
    throw UsageError(std::string("A subcommand is required.") + kSeeHelp);
  }
  return subcommands.Parsed();
}

}  // namespace vantora::cli
