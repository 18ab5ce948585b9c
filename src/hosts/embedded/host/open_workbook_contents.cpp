// Contents of cells beyond reading and putting values: formulas as texts, emptying, and what manual
// calculation means for them.
#include <algorithm>

#include "formula/file_prefixes.h"
#include "formula/number_text.h"
#include "formula/program.h"
#include "formula/table_file_form.h"
#include "formula/unknown_sheets.h"
#include "host/change_recorder.h"
#include "host/open_workbook.h"

namespace vantora::embedded {
namespace {

// The area of the sheet's array formula that reaches into the cell; null when there is none.
const Area* ArrayAt(const SheetModel& sheet, CellAddress cell) {
  auto found = std::ranges::find_if(
      sheet.arrays, [&](const ArrayFormula& array) { return array.area.Contains(cell); });
  return found == sheet.arrays.end() ? nullptr : &found->area;
}

}  // namespace

void OpenWorkbook::SetManualCalculation(bool manual) {
  // What is due now would have been calculated by now.
  if (manual && !model().manual_calculation) calculator_.CalculateAllAndNew();
  model().manual_calculation = manual;
  file_->RecordCalculationMode();
}

bool OpenWorkbook::HasFormula(int sheet_id, CellAddress cell) {
  const Cell stored = sheet(sheet_id).cells.Get(cell);
  return stored.formula != 0 || ArrayAt(sheet(sheet_id), cell);
}

std::string OpenWorkbook::FormulaOf(int sheet_id, CellAddress cell) {
  SheetModel& target = sheet(sheet_id);
  if (const Area* array = ArrayAt(target, cell)) cell = {array->first_row, array->first_column};
  const Cell stored = target.cells.Get(cell);
  if (stored.formula != 0) {
    return "=" + WithoutFilePrefixes(FormulaText(target.formulas[stored.formula], cell, model()));
  }
  if (stored.value.kind == CellKind::kNumber) return GeneralText(stored.value.number);
  return DisplayValue(stored.value, model().strings);
}

bool OpenWorkbook::IsEnteredAsFormula(int sheet_id, CellAddress cell, std::string_view text) {
  return text.size() > 1 && text.front() == '=' &&
         !model().styles[sheet(sheet_id).StyleOf(cell)].text_format;
}

Formula OpenWorkbook::EnteredFormula(int sheet_id, CellAddress cell, std::string_view text) {
  const std::string names = WithTableNames(text.substr(1), model(), sheet_id, cell);
  Formula formula = ParseFormula(WithFilePrefixes(names), cell, model());
  if (auto unknown = UnknownSheetIn(formula, model())) {
    Refuse("Application-defined or object-defined error: the formula \"" + std::string(text) +
           "\" refers to the sheet \"" + *unknown + "\", which the workbook does not have.");
  }
  if (Compile(formula).is_malformed) {
    Refuse("Application-defined or object-defined error: the formula \"" + std::string(text) +
           "\" can't be read. Write it in English, with commas between arguments.");
  }
  return formula;
}

void OpenWorkbook::PutFormula(int sheet_id, const Area& area, std::string_view formula) {
  const CellAddress first{area.first_row, area.first_column};
  SheetModel& target = sheet(sheet_id);
  if (!IsEnteredAsFormula(sheet_id, first, formula)) {
    Put(sheet_id, area, Value(formula));
    return;
  }
  Formula entered = EnteredFormula(sheet_id, first, formula);
  PrepareContents(sheet_id, area);
  // Relative references are distances, so that one formula serves all cells.
  const FormulaId id = target.formulas.Intern(std::move(entered));
  for (int row = area.first_row; row <= area.last_row; ++row) {
    for (int column = area.first_column; column <= area.last_column; ++column) {
      PutValue(sheet_id, {row, column}, Value(0));  // makes the cell, with its format
      target.cells.SetConstant({row, column}, CellValue::Blank());
      target.cells.SetFormula({row, column}, id);
    }
  }
  ContentsChanged(sheet_id, area);
}

void OpenWorkbook::ClearContents(int sheet_id, const Area& area) {
  RefusePartOfMerge(sheet_id, area);
  PrepareContents(sheet_id, area);
  CellStore& cells = sheet(sheet_id).cells;
  const int last_column = std::min(area.last_column, cells.LastColumn());
  for (int column = area.first_column; column <= last_column; ++column) {
    cells.ForEachInColumn(column, area.first_row, area.last_row, [&](int row, const Cell& cell) {
      if (cell.has_content()) cells.SetConstant({row, column}, CellValue::Blank());
    });
  }
  ContentsChanged(sheet_id, area);
}

void OpenWorkbook::PrepareContents(int sheet_id, const Area& area) {
  RefuseOnProtectedSheet(sheet_id, area);
  RefusePartOfArray(sheet_id, area);
  ForgetArrays(sheet_id, area);
}

void OpenWorkbook::ForgetArrays(int sheet_id, const Area& area) {
  std::erase_if(sheet(sheet_id).arrays,
                [&](const ArrayFormula& array) { return area.Intersects(array.area); });
}

void OpenWorkbook::ContentsChanged(int sheet_id, const Area& area) {
  calculator_.Changed(sheet_id, area);
  if (model().manual_calculation) calculator_.CalculateOnEntry(sheet_id, area);
}

bool OpenWorkbook::HasCommentsIn(int sheet_id, std::initializer_list<Area> areas) {
  auto known = commented_cells_.find(sheet_id);
  if (known == commented_cells_.end()) {
    std::vector<CellAddress> cells = Comments(sheet_id).Cells();
    known = commented_cells_.emplace(sheet_id, std::move(cells)).first;
  }
  return std::ranges::any_of(known->second, [&](CellAddress cell) {
    return std::ranges::any_of(areas, [&](const Area& area) { return area.Contains(cell); });
  });
}

}  // namespace vantora::embedded
