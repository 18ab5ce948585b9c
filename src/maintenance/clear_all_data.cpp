#include "maintenance/clear_all_data.h"

#include <string>

#include "core/common.h"
#include "core/convert.h"
#include "core/model_layout.h"
#include "core/progress_dialog.h"
#include "maintenance/flagged_sheets.h"

namespace vantora {
namespace {

// The row behind the last one when column I holds no key: nothing of the sheet is cleared then.
int FirstKeyRow(host::Worksheet& sheet, int first_row, int last_row) {
  for (int row = first_row; row <= last_row; ++row) {
    const std::string key = ValueToText(sheet.Cells(row, model::kKeyColumn)->Value());
    if (!key.empty() && !EqualsIgnoreCase(key, model::kKeyHeading)) return row;
  }
  return last_row + 1;
}

}  // namespace

void clsClearAllData::ClearAllData() {
  if (!initialized() || !IsConfirmed()) return;
  application()->SetScreenUpdating(false);
  frmProgressBar progress(services().user_interface);
  progress.SetTitle("Clear All Data in Workbook");
  progress.ShowForm();
  ForEachFlaggedSheet(*application(), model::kClearSheetFlag,
                      [&](const host::WorksheetPtr& sheet) { ClearSheet(sheet, progress); });
  progress.Unload();
  application()->SetScreenUpdating(true);
}

bool clsClearAllData::IsConfirmed() {
  UserInterface& user_interface = services().user_interface;
  const std::string line_break(kLineBreak);
  return user_interface.MessageBox(
             "This macro will clear out all entered data in your model!!!" + line_break +
                 "Please make sure you've saved the model first" + line_break +
                 "Then if you really want to continue, hit OK, else Cancel",
             kOkCancel + kExclamation, kDefaultTitle) == MessageBoxResult::kOk &&
         user_interface.MessageBox("Last chance: Are you sure you want to clear all entered data?",
                                   kOkCancel + kCritical + kDefaultButton2,
                                   kDefaultTitle) == MessageBoxResult::kOk;
}

void clsClearAllData::ClearSheet(const host::WorksheetPtr& sheet, frmProgressBar& progress) {
  const host::RangePtr used = sheet->UsedRange();
  const int last_row = used->Row() + used->RowsCount() - 1;
  int first_row = model::kFlagRow + 1;
  if (SheetHasFlag(sheet, model::kKeyListSheetFlag)) {
    first_row = FirstKeyRow(*sheet, first_row, last_row);
  }
  progress.SetText("clearing cells in " + sheet->Name());
  progress.SetMin(first_row);
  progress.SetMax(last_row);
  for (int row = first_row; row <= last_row; ++row) {
    for (int column = model::kFirstHistoryColumn; column <= model::kLastPlanningColumn; ++column) {
      const host::RangePtr cell = sheet->Cells(row, column);
      // Coloured cells hold formulas or headings.
      if (cell->Interior()->ColorIndex() == host::kColorIndexNone) cell->SetValue("");
    }
    progress.SetProgress(row);
  }
}

}  // namespace vantora
