// The calculating model of a workbook: its sheets' cells and formulas, names, formats. What the
// package's parts hold beyond it is not here.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "cells/cell_store.h"
#include "cells/row_table.h"
#include "cells/string_pool.h"
#include "cells/styles.h"
#include "formula/formula.h"
#include "formula/line_index.h"
#include "formula/number_format.h"

namespace vantora::embedded {

// An array formula: the formula stands in the top left cell, the others hold its results.
struct ArrayFormula {
  Area area;
};

// Formats of a run of whole columns (an element of <cols>).
struct ColumnFormat {
  int first = 1;
  int last = 1;
  StyleId style = 0;
  // The other attributes as they stand in the element, blank-separated with a leading blank:
  // ` width="6.7109375" customWidth="1"`.
  std::string attributes;
};

enum class Visibility { kVisible, kHidden, kVeryHidden };

struct SheetModel {
  int id = 0;
  std::string name;
  Visibility visibility = Visibility::kVisible;
  // False for chart sheets, dialog sheets and macro sheets: they have a tab, but no cells.
  bool is_worksheet = true;
  bool is_protected = false;

  CellStore cells;
  FormulaTable formulas;
  std::vector<ArrayFormula> arrays;
  // Ascending and disjoint. `column_formats_changed` when they differ from the package's part.
  std::vector<ColumnFormat> column_formats;
  bool column_formats_changed = false;
  // Counts the changes of `column_formats`: what is made of them is remembered as long as it
  // stands.
  unsigned column_formats_version = 0;
  // Formats of whole rows that have one of their own.
  std::map<int, StyleId> row_styles;
  RowTable rows;
  // `rows` or `row_styles` differ from the package's part. Whoever edits them sets it.
  bool rows_changed = false;
  // In points.
  double standard_row_height = 15;
  // Of columns that say none, as files count it.
  double standard_column_width = 9.140625;
  // The first and last row that the sheet's filter chooses from, where it chooses.
  std::optional<std::pair<int, int>> filtered_rows;
  // Whether it is the filter that hides the row when it is hidden.
  bool IsFiltered(int row) const {
    return filtered_rows && row >= filtered_rows->first && row <= filtered_rows->second;
  }

  // The format of a cell, whether or not it exists: its own, its row's, its column's.
  StyleId StyleOf(CellAddress cell) const;
  // That of its row or its column.
  StyleId StyleBehind(CellAddress cell) const;
};

struct DefinedName {
  std::string name;
  // Id of the sheet that the name is local to, -1 for the workbook's.
  int scope = -1;
  // Without "=".
  std::string refers_to;
  // Not shown to users.
  bool is_hidden = false;
};

// A table ("list object") of a sheet.
struct Table {
  std::string name;
  int sheet = 0;
  // With its header row and totals row.
  Area area;
  int header_rows = 1;
  int total_rows = 0;
  // One for each column of the area.
  std::vector<std::string> columns;

  // 0-based place of the column of that name; case-insensitive.
  std::optional<int> ColumnOf(std::string_view column) const;
};

// How circular references are calculated: again and again, from the values that are there, until no
// value changes by more than `largest_change`, or `most_rounds` times.
struct IterationSettings {
  bool enabled = false;
  int most_rounds = 100;
  double largest_change = 0.001;
};

class WorkbookModel : public SheetDirectory {
 public:
  // By id; ids are 0-based and fixed.
  std::vector<std::unique_ptr<SheetModel>> sheets;
  // The ids in tab order.
  std::vector<int> tab_order;
  StringPool strings;
  Styles styles;
  std::vector<DefinedName> names;
  std::vector<Table> tables;
  bool date_1904 = false;
  // Where the workbook was opened: its folder with the separator at the end, and its name. Empty
  // for one that has no file.
  std::string folder;
  std::string file_name;
  IterationSettings iteration;
  // Formulas keep their values until somebody asks for calculation. The calculator does not look at
  // this: whoever reads values does.
  bool manual_calculation = false;
  // The workbook's structure is protected: sheets are neither hidden nor shown.
  bool structure_is_protected = false;
  // What evaluation remembers: where values stand, and number formats that it has read.
  LineIndexes line_indexes;
  NumberFormats number_formats;

  SheetModel& AddSheet(std::string name);
  // The name is free. Formulas follow by themselves: they know sheets by their ids.
  void RenameSheet(int id, std::string name);
  std::optional<int> IdOf(std::string_view name) const override;
  const std::string& NameOf(int id) const override { return sheets[id]->name; }
  int PositionOf(int id) const override;
  // The name as seen from a sheet: the sheet's own before the workbook's; case-insensitive. Null
  // when there is none. Not for several threads at once.
  const DefinedName* FindName(std::string_view name, int from_sheet) const;
  // Case-insensitive; null when there is none.
  const Table* FindTable(std::string_view name) const;
  // The table that holds the cell; null when there is none.
  const Table* TableAt(int sheet, CellAddress cell) const;
  // Place in `names` of the name with exactly that scope (-1 for the workbook's own).
  std::optional<std::size_t> PlaceOfName(std::string_view name, int scope) const;
  // Removes names[place]; the last name takes its place.
  void RemoveName(std::size_t place);
  // `names` were removed, renamed or put in another order (what they refer to does not matter, and
  // names that come at the end are found): FindName looks at all of them anew.
  void ForgetNames() { indexed_names_ = kNamesUnknown; }

 private:
  void IndexNames() const;

  // By name as written, so that reading millions of references costs a look-up each.
  std::unordered_map<std::string_view, int> ids_;
  // Places in `names` by case-folded name, of the first `indexed_names_` ones.
  static constexpr std::size_t kNamesUnknown = static_cast<std::size_t>(-1);
  mutable std::unordered_map<std::u32string, std::vector<std::size_t>> places_of_names_;
  mutable std::size_t indexed_names_ = kNamesUnknown;
};

}  // namespace vantora::embedded
