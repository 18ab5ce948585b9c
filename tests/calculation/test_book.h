// A workbook model with its calculator, written in texts: "Data!B2" names a cell, "=A1*2" a
// formula.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "formula/calculator.h"
#include "formula/workbook_model.h"

namespace vantora::embedded {

class TestBook {
 public:
  explicit TestBook(const std::vector<std::string>& sheets = {"Data", "Other", "Third"});

  WorkbookModel& model() { return *model_; }
  Calculator& calculator() { return calculator_; }

  // As a user's entry: a formula, a number, a text, "" for nothing. A cell without a sheet lies on
  // the first one; an area gets the formula in every cell, filled from its top left cell.
  void Put(std::string_view place, std::string_view content);
  // The same as a file brings it: `value` is what the file holds as the formula's result.
  void Load(std::string_view place, std::string_view content, std::string_view value = "");
  // {=...} over an area.
  void PutArray(std::string_view area, std::string_view formula);
  void AddName(std::string name, std::string refers_to, int scope = -1);
  // A table with a header row whose cells get the columns' names, and perhaps a totals row.
  void AddTable(std::string name, std::string_view area, const std::vector<std::string>& columns,
                int total_rows = 0);
  void InsertColumns(std::string_view sheet, std::string_view column, int count = 1);

  // The calculated value: "12.5", "text", "TRUE", "#N/A", "" for an empty cell; "stale" where the
  // value can't be brought up to date.
  std::string Value(std::string_view place);
  // The value as it stands, and whether it is flagged as out of date.
  std::string Stored(std::string_view place) const;
  bool IsMarked(std::string_view place) const;
  // "=..." as it reads in the cell, or "".
  std::string FormulaIn(std::string_view place) const;
  // One line for each cell that has a value or a formula: place, formula, calculated value.
  std::string Dump();
  // The same workbook, typed in anew from the texts of its cells and names.
  std::unique_ptr<TestBook> Retyped() const;

 private:
  struct Place {
    int sheet = 0;
    Area area;
    CellAddress cell() const { return {area.first_row, area.first_column}; }
  };
  Place Find(std::string_view place) const;
  void Store(int sheet, CellAddress cell, std::string_view content);
  CellValue ValueOf(std::string_view content) const;
  std::string TextOf(const CellValue& value) const;

  std::unique_ptr<WorkbookModel> model_;
  Calculator calculator_;
};

}  // namespace vantora::embedded
