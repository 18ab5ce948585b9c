// Tables and their header cells must agree, or the file counts as damaged.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "formula/rename_columns.h"
#include "formula/workbook_model.h"

namespace vantora::embedded {

// What making a table and its header cells agree came to.
struct TableHeaderEdits {
  // Cells that were written.
  std::vector<CellAddress> written;
};

// The same for the tables of a workbook. What depends on it is out of date.
struct TableMatches {
  // The header cells that were written, as sheet and cell.
  std::vector<std::pair<int, CellAddress>> headers;
  // The cells that got another formula, as it refers to a column that was renamed.
  std::vector<std::pair<int, Area>> formulas;
  bool names_changed = false;
};

// The table of a table's part (see Table); nullopt when the part does not say where it lies.
std::optional<Table> ReadTable(std::string_view text, int sheet);

// Makes a table and its header cells agree after edits, as typing into a header does: a header that
// changed renames its column, made unique with a number; one that is empty and the header of a new
// column take the column's name; each becomes text. `text` is the table's part, `sheet` the table's
// sheet; both have followed all insertions. Adds what it did to `edits`. Gives what the part reads
// then, nullopt when it stays.
std::optional<std::string> MatchTableHeaders(std::string_view text, SheetModel& sheet,
                                             StringPool& strings,
                                             TableHeaderEdits& edits);

// Gives the formulas of a table's part (of calculated columns and totals) the new names; nullopt
// when it stays. `is_own`: the part is that of the table whose columns are renamed.
std::optional<std::string> RenameInTablePart(std::string_view text, bool is_own,
                                             const ColumnRenames& renames);

}  // namespace vantora::embedded
