// Columns of a table that get other names, in the formulas that refer to them.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "formula/workbook_model.h"

namespace vantora::embedded {

// Columns of one table: the names before and after, all exchanged at once.
struct ColumnRenames {
  std::string table;
  std::vector<std::pair<std::string, std::string>> names;
};

struct RenamedFormula {
  std::string text;
  bool changed = false;
  // False when a reference to a table can't be read that may name one of the columns.
  bool is_certain = true;
};

// The formula's text (without "="; references may be marks) with the new names.
// `in_table`: what names no table means this one.
RenamedFormula WithRenamedColumns(std::string_view text, bool in_table,
                                  const ColumnRenames& renames);

// What renaming columns came to in a workbook.
struct RenameOutcome {
  // The cells that got another formula, by sheet.
  std::vector<std::pair<int, Area>> cells;
  bool names_changed = false;
};

// Whether all formulas and names can follow: see RenamedFormula.
bool CanRenameColumns(const WorkbookModel& model, const ColumnRenames& renames);
// Makes the formulas of cells and names follow. The table itself is the caller's.
RenameOutcome RenameColumns(WorkbookModel& model, const ColumnRenames& renames);

}  // namespace vantora::embedded
