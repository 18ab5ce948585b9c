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

struct ChangeList {
  std::vector<InsertedColumns> inserted;
  // In workbook order: sheet by tab, then row, then column. A cell that only moved is no change,
  // nor is a formula that only follows an insertion.
  std::vector<CellChange> cells;
  // Other changes in plain words: "comment added at 'Data 01'!AD2".
  std::vector<std::string> others;
};

class Session {
 public:
  // Throws FileError.
  static std::unique_ptr<Session> Open(const std::filesystem::path& path);
  // A workbook in memory with empty worksheets of these names.
  static std::unique_ptr<Session> Create(const std::vector<std::string>& sheet_names);
  ~Session();

  // The host application with the one workbook open and active.
  host::ApplicationPtr application();
  WorkbookFile& file();

  // Records what changes from now on (before any change); Changes() is empty otherwise.
  void RecordChanges();
  ChangeList Changes();

  // The sheet of that name (case-insensitive); throws HostError 9 when there is none.
  host::WorksheetPtr Worksheet(std::string_view name);
  // The range that a text like "Planning!C12", "'Data 01'!J4:N4", "J4:N9,J12:N14" (active sheet) or
  // the name of cells names; throws HostError 1004 when it is no reference.
  host::RangePtr Range(std::string_view reference);

  // The shape or control of the active sheet that runs what comes next; throws HostError 1004 when
  // the sheet has none of that name.
  void SetCaller(std::string_view shape);

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
  // Puts the saved files in their places and gives those. Throws FileError.
  std::vector<std::filesystem::path> CommitSaves();

  // Says that a workbook without macros has the routine in its sheets' code modules, as one with
  // macros is taken to have those that the model's workbook offers.
  void AddSheetRoutine(std::string_view routine);

  // Brings every value up to date and tells which formulas could not be calculated.
  std::vector<Uncalculated> Calculate();
  // Calculates, then writes the workbook. Throws FileError and leaves `path` as it was on failure.
  void Save(const std::filesystem::path& path);

 private:
  Session();
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace vantora::embedded
