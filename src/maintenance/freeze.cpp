#include "maintenance/freeze.h"

#include <string>

#include "core/common.h"
#include "core/convert.h"
#include "core/model_layout.h"
#include "maintenance/flagged_sheets.h"

namespace vantora {
namespace {

using host::XlCalculation;
using host::XlCutCopyMode;
using host::XlPasteSpecialOperation;
using host::XlPasteType;

constexpr int kFirstFrozenColumn = 6;                         // F
constexpr int kLastSpinnerInput = model::kCurrentYearColumn;  // O

}  // namespace

void clsFreeze::FreezeCurrentResults() {
  if (!initialized()) return;
  if (ConfirmSaveFirst(services().user_interface,
                       "This will save your current results and overwrite the previous frozen "
                       "case") != MessageBoxResult::kOk) {
    return;
  }
  RunOnFreezeSheets([this](const host::WorksheetPtr& sheet) { FreezeSheet(*sheet); });
}

void clsFreeze::FreezeSheet(host::Worksheet& sheet) {
  const int row_count = sheet.UsedRange()->RowsCount();
  for (int row = 1; row <= row_count; ++row) {
    const std::string flag = ValueToText(sheet.Cells(row, model::kBaseFlagColumn)->Value());
    if (!FindIgnoreCase(flag, model::kBaseFlag)) continue;
    // A flag in row 1 has no live row: the host refuses row 0.
    sheet.Range(row - 1, kFirstFrozenColumn, row - 1, model::kLastPlanningColumn)->Copy();
    sheet.Range(row, kFirstFrozenColumn, row, model::kLastPlanningColumn)
        ->PasteSpecial(XlPasteType::kValues, XlPasteSpecialOperation::kNone, false, false);
  }
}

void clsFreeze::SetSpinnerstoBase() {
  if (!initialized()) return;
  RunOnFreezeSheets([this](const host::WorksheetPtr& sheet) { SetSheetToBase(*sheet); });
}

void clsFreeze::SetSheetToBase(host::Worksheet& sheet) {
  const int row_count = sheet.UsedRange()->RowsCount();
  for (int row = 1; row <= row_count; ++row) {
    // What was entered counts here, not what the cell shows as it does for freezing: a flag that a
    // formula calculates sets no spinner back. That is the model's rule.
    const std::string flag = sheet.Cells(row, model::kBaseFlagColumn)->Formula();
    if (!FindIgnoreCase(flag, model::kBaseFlag) || !FindIgnoreCase(flag, model::kSpinnerBaseFlag))
      continue;
    for (int column = kFirstFrozenColumn; column <= kLastSpinnerInput; ++column) {
      host::RangePtr input = sheet.Cells(row - 1, column);
      if (!input->HasFormula()) input->SetValue(sheet.Cells(row, column)->Value());
    }
  }
}

template <typename Work>
void clsFreeze::RunOnFreezeSheets(Work&& work) {
  application()->SetScreenUpdating(false);
  application()->SetCalculation(XlCalculation::kManual);
  const host::SheetPtr remembered_sheet = application()->ActiveAnySheet();
  ForEachFlaggedSheet(*application(), model::kFreezeSheetFlag,
                      [&](const host::WorksheetPtr& sheet) {
                        work(sheet);
                        application()->SetCutCopyMode(XlCutCopyMode::kNone);
                      });
  if (remembered_sheet) remembered_sheet->Select();
  application()->SetCalculation(XlCalculation::kAutomatic);
  application()->SetScreenUpdating(true);
}

}  // namespace vantora
