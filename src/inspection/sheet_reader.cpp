#include "inspection/sheet_reader.h"

#include <algorithm>

#include "core/convert.h"

namespace vantora::inspection {

std::string CellName(int row, int column) {
  std::string letters;
  for (; column > 0; column = (column - 1) / 26) {
    letters += static_cast<char>('A' + (column - 1) % 26);
  }
  std::reverse(letters.begin(), letters.end());
  return letters + std::to_string(row);
}

SheetReader::SheetReader(host::WorksheetPtr sheet, std::vector<Problem>& problems)
    : sheet_(std::move(sheet)), problems_(problems), name_(sheet_->Name()) {
  host::RangePtr used = sheet_->UsedRange();
  row_count_ = used->RowsCount();
  column_count_ = used->ColumnsCount();
}

Value SheetReader::ValueAt(int row, int column) {
  try {
    return sheet_->Cells(row, column)->Value();
  } catch (const HostError& error) {
    Report(CellName(row, column), "The value can't be read: " + error.description());
    return {};
  }
}

std::string SheetReader::TextAt(int row, int column) { return ValueToText(ValueAt(row, column)); }

void SheetReader::Report(std::string cell, std::string text) {
  problems_.push_back({name_, std::move(cell), std::move(text)});
}

}  // namespace vantora::inspection
