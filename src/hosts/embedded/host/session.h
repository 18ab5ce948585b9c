// The embedded host as a program uses it: opens a workbook, gives the engine the host interfaces
// over it, tells what changed, saves.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/host.h"
#include "formula/calculator.h"
#include "host/menu_control.h"
#include "host/pending_saves.h"
#include "host/prompts.h"
#include "package/workbook_file.h"

namespace vantora::embedded {

// One changed cell. Formulas read "=..."; an absent or empty cell "".
struct CellChange {
  std::string sheet;
  CellAddress cell;  // where the cell stands now
  std::string before;
  std::string after;
};

// Columns that an operation inserted, as they stand now.
struct InsertedColumns {
  std::string sheet;
  int column = 1;
  int count = 1;
};

// An open window: the sheet that it shows, and its place in points.
struct WindowPlace {
  std::string sheet;
  double left = 0;
  double top = 0;
  double width = 0;
  double height = 0;
  bool operator==(const WindowPlace&) const = default;
};

struct ChangeList {
  std::vector<InsertedColumns> inserted;
  // In workbook order: sheet by tab, then row, then column. A cell that only moved is no change,
  // nor is a formula that only follows an insertion.
  std::vector<CellChange> cells;
  // Other changes in plain words: "comment added at 'Data 01'!AD2".
  std::vector<std::string> others;
};

// A formula's stored value and what it calculates to, as they read in the cell.
struct StoredValueDifference {
  std::string sheet;
  CellAddress cell;
  std::string stored;
  std::string calculated;
};

struct Recalculation {
  // Number of formulas looked at.
  std::size_t formulas = 0;
  // By sheet in tab order, then row by row. Numbers that agree within 1e-9 of their size are the
  // same: the order in which a sum is made shows in its last digits.
  std::vector<StoredValueDifference> differences;
  std::vector<Uncalculated> uncalculated;
};

class Session {
 public:
  // Throws FileError.
  static std::unique_ptr<Session> Open(const std::filesystem::path& path);
  // A workbook in memory with empty worksheets of these names.
  static std::unique_ptr<Session> Create(const std::vector<std::string>& sheet_names);
  ~Session();

  // Opens a further workbook beside the first, which stays the active one, and returns its number
  // (1 and up; the first one's is 0). Throws FileError, also where a workbook of that file name is
  // open.
  int OpenFurther(const std::filesystem::path& path);
  // The same with a workbook in memory.
  int CreateFurther(const std::string& name, const std::vector<std::string>& sheet_names);
  int workbook_count() const;
  void ActivateWorkbook(int workbook);

  // The host application with the workbooks open.
  host::ApplicationPtr application();
  WorkbookFile& file(int workbook = 0);

  // Records what changes in all workbooks from now on (before any change); Changes() is empty
  // otherwise.
  void RecordChanges();
  ChangeList Changes(int workbook = 0);

  // The sheet of that name (case-insensitive); throws HostError 9 when there is none.
  host::WorksheetPtr Worksheet(std::string_view name, int workbook = 0);
  // The range that a text like "Planning!C12", "'Data 01'!J4:N4", "J4:N9,J12:N14" (active sheet) or
  // the name of cells names; throws HostError 1004 when it is no reference.
  host::RangePtr Range(std::string_view reference, int workbook = 0);

  // What is drawn on the sheet of that name: shapes, charts, form controls. Throws HostError 9 when
  // there is no such worksheet.
  std::vector<std::string> ShapesOf(std::string_view sheet);
  // The shape or control of the active sheet that runs what comes next; throws HostError 1004 when
  // the sheet has none of that name.
  void SetCaller(std::string_view shape);

  // The workbook's open windows, the active one first.
  std::vector<WindowPlace> Windows();
  // The space for windows, in points, and whether the host fills the screen.
  void SetUsableArea(double width, double height, bool full_screen);

  // The menus of the menu bar with all that is in them.
  std::vector<MenuEntry> MenuBar() const;
  // Says that a workbook without macros has the routine in its sheets' code modules, as one with
  // macros is taken to have those that the model's workbook offers.
  void AddSheetRoutine(std::string_view routine);
  // Those of them that an operation called, which did nothing.
  const std::vector<std::string>& SkippedRoutines() const;
  // What Application.Version tells, "16.0" unless set.
  void SetVersion(std::string version);
  // Who answers what operations ask through the host; must outlive the session. Refused without.
  void SetPrompts(Prompts& prompts);

  // Says where saves go that operations make; without, they are refused. Such a save writes the
  // workbook as it is at that moment into a temporary file beside the place; CommitSaves gives it
  // its name, and without that it disappears with the session.
  void DirectSaves(SaveDirector director);
  // The saves made so far.
  const PendingSaves& saves() const;
  // Puts the saved files in their places, together with others that were written beside theirs, and
  // gives those of the saves. Throws FileError; all files are as they were then.
  std::vector<std::filesystem::path> CommitSaves(
      std::vector<std::unique_ptr<ReplacementFile>> others = {});

  // Brings every value up to date and tells which formulas could not be calculated.
  std::vector<Uncalculated> Calculate(int workbook = 0);
  // Calculates every formula of the first workbook afresh, whether or not anything that it depends
  // on changed.
  Recalculation RecalculateAll();
  // Calculates, then writes the workbook. Throws FileError and leaves `path` as it was on failure.
  void Save(const std::filesystem::path& path, int workbook = 0);
  // The same without giving the file its name, which its Commit does.
  std::unique_ptr<ReplacementFile> WriteBeside(const std::filesystem::path& path, int workbook = 0);

 private:
  Session();
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace vantora::embedded
