// Tells what changed in a workbook since a moment.
#pragma once

#include <optional>
#include <vector>

#include "host/open_workbook.h"
#include "host/session.h"

namespace vantora::embedded {

class ChangeRecorder {
 public:
  // Remembers the workbook as it is now. `workbook` must outlive the recorder.
  explicit ChangeRecorder(OpenWorkbook& workbook);

  // What differs now from then; every value must be up to date.
  ChangeList Changes() const;

 private:
  void AddSheetChanges(int sheet, ChangeList& list, std::size_t& new_results) const;
  // Columns or rows beside each other that were hidden, or shown, alike.
  struct Run {
    int first;
    int last;
    bool hidden;
  };
  // `at` lies behind the runs.
  static void Extend(std::vector<Run>& runs, int at, bool hidden);
  void AddHidingChanges(int sheet, ChangeList& list) const;
  std::vector<Run> ChangedColumns(int sheet) const;
  std::vector<Run> ChangedRows(int sheet) const;
  // The column that a column of now was then; nullopt for one inserted since.
  std::optional<int> ColumnThen(int sheet, int column_now) const;
  // The formula `then` of a cell that stood at `cell` has only followed insertions to become `now`.
  bool OnlyFollowed(int sheet, FormulaId then, FormulaId now, CellAddress cell) const;
  std::string Display(int sheet, const Cell& cell, CellAddress at) const;

  OpenWorkbook& workbook_;
  std::vector<CellStore> then_;
  std::vector<std::vector<ColumnFormat>> columns_then_;
  std::vector<RowTable> rows_then_;
  std::vector<bool> protected_then_;
  std::size_t insertions_then_;
  std::size_t notes_then_;
};

// A value as it reads in a cell: "12.5", "TRUE", "#VALUE!", a text as it is.
std::string DisplayValue(const CellValue& value, const StringPool& strings);

}  // namespace vantora::embedded
