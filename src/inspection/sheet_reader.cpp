#include "inspection/sheet_reader.h"

#include "core/cell_place.h"
#include "core/convert.h"

namespace vantora::inspection {

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
