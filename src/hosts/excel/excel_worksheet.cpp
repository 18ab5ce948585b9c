#include "hosts/excel/excel_worksheet.h"

#include "hosts/excel/excel_range.h"

namespace vantora::excel {

bool ExcelWorksheet::IsSame(const host::Worksheet& other) const {
  auto* worksheet = dynamic_cast<const ExcelWorksheet*>(&other);
  return worksheet && object_.IsSame(worksheet->object_);
}

std::string ExcelWorksheet::Name() { return object_.GetText(Member::kWorksheetName); }

void ExcelWorksheet::Activate() { object_.Call(Member::kWorksheetActivate); }

void ExcelWorksheet::Select() { object_.Call(Member::kWorksheetSelect); }

host::RangePtr ExcelWorksheet::Cells(int row, int column) {
  return std::make_shared<ExcelRange>(object_.Child(Member::kWorksheetCells, {row, column}));
}

host::RangePtr ExcelWorksheet::Range(int first_row, int first_column, int last_row,
                                     int last_column) {
  Object first = object_.Child(Member::kWorksheetCells, {first_row, first_column});
  Object last = object_.Child(Member::kWorksheetCells, {last_row, last_column});
  return std::make_shared<ExcelRange>(
      object_.Child(Member::kWorksheetRange, {first.dispatch(), last.dispatch()}));
}

host::RangePtr ExcelWorksheet::Columns(int column) {
  return std::make_shared<ExcelRange>(object_.Child(Member::kWorksheetColumns, {column}));
}

host::RangePtr ExcelWorksheet::UsedRange() {
  return std::make_shared<ExcelRange>(object_.Child(Member::kWorksheetUsedRange));
}

void ExcelWorksheet::Paste() { object_.Call(Member::kWorksheetPaste); }

}  // namespace vantora::excel
