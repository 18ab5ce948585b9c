// Tables and their header cells must agree, or the file counts as damaged.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formula/workbook_model.h"

namespace vantora::embedded {

// What making a table and its header cells agree came to.
struct TableHeaderEdits {
  // Cells that were written.
  std::vector<CellAddress> written;
  // Names that columns no longer have.
  std::vector<std::string> old_names;
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

}  // namespace vantora::embedded
