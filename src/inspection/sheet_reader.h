// Reading a sheet while its problems are noted.
#pragma once

#include <string>
#include <vector>

#include "inspection/inspection.h"

namespace vantora::inspection {

class SheetReader {
 public:
  // `problems` must outlive the reader.
  SheetReader(host::WorksheetPtr sheet, std::vector<Problem>& problems);

  const host::WorksheetPtr& sheet() const { return sheet_; }
  const std::string& name() const { return name_; }
  // Of the used range: how many rows and columns it has, which is how far the operations look.
  int row_count() const { return row_count_; }
  int column_count() const { return column_count_; }

  // The cell's value. A value that can't be brought up to date is a problem and reads as empty.
  Value ValueAt(int row, int column);
  std::string TextAt(int row, int column);

  void Report(std::string text) { Report("", std::move(text)); }
  void Report(std::string cell, std::string text);

 private:
  host::WorksheetPtr sheet_;
  std::vector<Problem>& problems_;
  std::string name_;
  int row_count_;
  int column_count_;
};

}  // namespace vantora::inspection
