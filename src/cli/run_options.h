// What a run of one method on a workbook is asked to do.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace vantora::cli {

// The command was called in a way it can't be followed; nothing was opened or changed. `what()` is
// a sentence for the user.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A cell to write before the method runs.
struct CellToSet {
  std::string reference;  // "Planning!C12"; without a sheet, on the active one
  std::string value;      // as a user types it: "12", "=A1+1", "text"
};

// Where the result goes.
enum class Target { kOutputFile, kInPlace, kNowhere };

// A workbook that is open beside the model.
struct FurtherWorkbook {
  std::filesystem::path path;
  // Where its result goes; empty to leave it unsaved.
  std::filesystem::path output;
};

struct RunOptions {
  std::filesystem::path model;
  std::string class_name;
  std::string method_name;
  std::vector<std::string> arguments;

  Target target = Target::kNowhere;
  std::filesystem::path output;  // for kOutputFile

  std::vector<FurtherWorkbook> further;

  std::vector<std::string> answers;
  bool yes = false;

  std::vector<CellToSet> cells_to_set;
  std::string sheet;      // to activate; empty for the one that is active
  std::string selection;  // address on the active sheet; empty for what is selected

  std::string caller;  // shape or control of the active sheet that runs the macro

  // Where what the run replaces is kept; empty for nowhere.
  std::filesystem::path journal;

  bool changes = false;
  bool json = false;
};

struct MenuOptions {
  // The model, and for picking an entry everything else but the method.
  RunOptions run;
  // Activate the dashboard first.
  bool dashboard = false;
  // The entry to run, "Vantora > Year end > Shift history"; empty to show the menus.
  std::string pick;
};

struct WindowsOptions {
  enum class Mode { kUpDown, kLeftRight };
  // The model and the sheet to activate.
  RunOptions run;
  Mode mode = Mode::kUpDown;
};

}  // namespace vantora::cli
