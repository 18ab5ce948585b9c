// What the engine sees of a model: sheet flags and what takes them, lists, names, blocks, and what
// is wrong with them. For a model's author; no operation needs it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/host.h"

namespace vantora::inspection {

// Something that an operation would stumble over, or would silently take otherwise than meant.
struct Problem {
  std::string sheet;  // "" for the workbook as a whole
  std::string cell;   // "C12"; "" for the sheet as a whole
  std::string text;   // a sentence: what is wrong and what follows from it
};

// A letter of cell A1.
struct SheetFlag {
  std::string_view letter;
  std::string_view meaning;
  // For letters that take one: the number as the engine reads it, the default included.
  std::optional<int> number;
};

// A flag in row 1, or a token there.
struct ColumnFlag {
  int column = 1;
  std::string text;
  std::string meaning;
};

struct SpinnerBlock {
  std::string shape;
  std::string linked_cell;  // as the control has it; "" when it has none
  // The project rows; no rows when last < first.
  int first_row = 0;
  int last_row = 0;
  std::optional<int> end_row;
};

struct KeyColumn {
  int column = 1;
  int heading_row = 1;
  int keys = 0;
  // The keys that the model defines, rather than keys in use.
  bool defines = false;
};

// A block of comparison data; a row is missing where its marker is.
struct RatioBlock {
  int number = 1;
  std::optional<int> first_row;
  std::optional<int> last_row;
};

struct SheetFacts {
  std::string name;
  std::string a1;
  std::vector<SheetFlag> flags;
  // Methods that work on the sheet because of its flags ("clsFreeze.FreezeCurrentResults").
  std::vector<std::string_view> operations;
  std::vector<ColumnFlag> column_flags;
  std::vector<int> base_rows;
  // Those of `base_rows` from which the spinners can be set back.
  std::vector<int> spinner_base_rows;
  std::optional<int> inflation_row;
  std::vector<SpinnerBlock> spinner_blocks;
  std::vector<KeyColumn> key_columns;
  int ratio_keys = 0;
  std::vector<RatioBlock> ratio_blocks;
};

// A list of the Reference Sheet.
struct ListFacts {
  std::string_view flag;
  std::string_view name;
  std::optional<int> column;  // missing: no such flag in row 1
  int entries = 0;
};

struct ReferenceSheetFacts {
  std::string sheet;
  int lists_row = 0;
  std::vector<ListFacts> lists;
};

struct NameFacts {
  std::string_view name;
  std::string_view meaning;
  std::string refers_to;  // "Planning!K1"; "" when the name is missing or refers to no cells
};

struct Inspection {
  std::vector<SheetFacts> sheets;  // in tab order
  std::optional<ReferenceSheetFacts> reference_sheet;
  std::vector<NameFacts> names;
  std::vector<Problem> problems;  // of the workbook first, then by sheet
};

// The names of what is drawn on a sheet: shapes, form controls, charts.
using ShapesOf = std::function<std::vector<std::string>(const std::string& sheet)>;

// Looks at the active workbook and changes nothing in it. Throws HostError for what the host
// refuses beyond what a model's mistakes can cause.
Inspection Inspect(host::Application& application, const ShapesOf& shapes_of);

}  // namespace vantora::inspection
