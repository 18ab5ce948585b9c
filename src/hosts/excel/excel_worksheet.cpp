#include "hosts/excel/excel_worksheet.h"

#include "hosts/excel/excel_drawings.h"
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

void ExcelWorksheet::SetName(std::string_view name) { object_.Put(Member::kWorksheetName, name); }

host::XlSheetVisibility ExcelWorksheet::Visible() {
  return static_cast<host::XlSheetVisibility>(object_.GetInt(Member::kWorksheetVisible));
}

void ExcelWorksheet::SetVisible(host::XlSheetVisibility visible) {
  object_.Put(Member::kWorksheetVisible, static_cast<int>(visible));
}

bool ExcelWorksheet::ProtectContents() {
  return object_.GetBool(Member::kWorksheetProtectContents);
}

void ExcelWorksheet::Unprotect() { object_.Call(Member::kWorksheetUnprotect); }

void ExcelWorksheet::Protect() {
  object_.Call(Member::kWorksheetProtect, {},
               {{L"DrawingObjects", true}, {L"Contents", true}, {L"Scenarios", true}});
}

void ExcelWorksheet::OutlineShowLevels(int row_levels) {
  object_.Child(Member::kWorksheetOutline).Call(Member::kOutlineShowLevels, {row_levels});
}

host::ShapePtr ExcelWorksheet::Shapes(std::string_view name) {
  return std::make_shared<ExcelShape>(
      object_.Child(Member::kWorksheetShapes).Child(Member::kShapesItem, {name}));
}

std::vector<host::ChartObjectPtr> ExcelWorksheet::ChartObjects() {
  std::vector<host::ChartObjectPtr> charts;
  for (Object& chart : object_.Items(Member::kWorksheetChartObjects, Member::kChartObjectsCount,
                                     Member::kChartObjectsItem)) {
    charts.push_back(std::make_shared<ExcelChartObject>(std::move(chart)));
  }
  return charts;
}

// The sheet as the collection gives it by its name has the routines of its code module.
void ExcelWorksheet::CallRoutine(std::string_view routine) {
  const std::string name = Name();
  Object(object_.connection(), object_.connection()->application())
      .Child(Member::kApplicationSheets)
      .Child(Member::kSheetsItem, {std::string_view(name)})
      .CallOwn(routine);
}

}  // namespace vantora::excel
