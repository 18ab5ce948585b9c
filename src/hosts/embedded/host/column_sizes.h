// Where the columns of a sheet stand and how wide they are, in pixels at 96 dpi. Hidden columns
// count 0.
#pragma once

#include <cstdint>
#include <vector>

#include "formula/workbook_model.h"

namespace vantora::embedded {

class ColumnSizes {
 public:
  // `default_width` is the file's width of columns that say none.
  ColumnSizes(const SheetModel& sheet, double default_width, int max_digit_width);

  // True as long as the sheet's columns are what this was made of.
  bool IsOf(const SheetModel& sheet) const { return version_ == sheet.column_formats_version; }

  int Width(int column) const;
  // Distance of the column's left edge from column A's.
  std::int64_t Left(int column) const;

 private:
  // Columns of one width, up to where the next run begins.
  struct Run {
    int first;
    int width;
    std::int64_t left;
  };
  const Run& RunOf(int column) const;

  unsigned version_;
  std::vector<Run> runs_;
};

}  // namespace vantora::embedded
