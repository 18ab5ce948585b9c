// Tells what changed in a workbook since a moment.
#pragma once

#include <map>
#include <optional>
#include <vector>

#include "host/open_workbook.h"
#include "host/session.h"
#include "host/state_recorder.h"

namespace vantora::embedded {

class ChangeRecorder {
 public:
  // Remembers the workbook's cells as they are now. `workbook` must outlive the recorder.
  explicit ChangeRecorder(OpenWorkbook& workbook);

  // What differs now from then; every value must be up to date.
  ChangeList Changes() const;

 private:
  void AddSheetChanges(int sheet, ChangeList& list, std::size_t& new_results) const;
  // Columns that were hidden or shown, or have another width or format, a line for each run of them.
  void AddColumnChanges(int sheet, ChangeList& list) const;
  // A line for each run of columns of which `what` (from the places then and now) says the same: it
  // gives what is to be said, "" for no change.
  template <typename What>
  void AddColumnRuns(int sheet, ChangeList& list, What what) const;
  // Cells that look otherwise than then, a line for the sheet; those of new columns are new.
  void AddFormatChanges(int sheet, ChangeList& list) const;
  StyleId StyleThen(int sheet, CellAddress cell) const;
  // The column that a column of now was then; nullopt for one inserted since.
  std::optional<int> ColumnThen(int sheet, int column_now) const;
  // The formula `then` of a cell that stood at `cell` has only followed insertions to become `now`.
  bool OnlyFollowed(int sheet, FormulaId then, FormulaId now, CellAddress cell) const;
  std::string Display(int sheet, const Cell& cell, CellAddress at) const;

  OpenWorkbook& workbook_;
  std::vector<CellStore> then_;
  std::vector<std::vector<ColumnFormat>> columns_then_;
  std::vector<std::map<int, StyleId>> row_styles_then_;
  StateRecorder state_;
  std::size_t insertions_then_;
  std::size_t notes_then_;
};

// A value as it reads in a cell: "12.5", "TRUE", "#VALUE!", a text as it is.
std::string DisplayValue(const CellValue& value, const StringPool& strings);

}  // namespace vantora::embedded
