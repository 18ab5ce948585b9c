#include "maintenance/year_end.h"

#include <vector>

#include "core/common.h"
#include "core/convert.h"
#include "core/model_layout.h"
#include "core/progress_dialog.h"
#include "dialogs/frm_save_comments.h"
#include "dialogs/frm_save_history_prompt.h"
#include "maintenance/flagged_sheets.h"

namespace vantora {
namespace {

using host::XlCutCopyMode;
using host::XlInsertShiftDirection;
using host::XlPasteSpecialOperation;
using host::XlPasteType;

std::string CopyingCellsIn(host::Worksheet& sheet) { return "copying cells in " + sheet.Name(); }

char HistoryColumnLetter(int column) {
  return static_cast<char>('J' + column - model::kFirstHistoryColumn);
}

}  // namespace

void clsYearEnd::SaveHistoryYear() {
  if (!initialized()) return;
  host::RangePtr labels =
      ActiveWorkbookOf(*application())->Names()->Item(model::kFiscalYearName)->RefersToRange();
  struct Entry {
    int column;
    std::string caption;
  };
  std::vector<Entry> entries;
  frmSaveHistoryPrompt prompt;
  for (int year = 1; year <= model::kHistoryYears; ++year) {
    int column = model::kFirstHistoryColumn + year - 1;
    std::string caption = ValueToText(labels->Cells(1, year)->Value()) + " (column " +
                          HistoryColumnLetter(column) + ")";
    prompt.YearCaptionAdd(caption);
    entries.push_back({column, caption});
  }
  services().user_interface.ShowModal(prompt);
  if (!prompt.Continue()) return;
  const Entry& chosen = entries.at(prompt.Choice() - 1);
  prompt.Unload();
  SaveAtMarker(chosen.column, chosen.caption);
}

void clsYearEnd::SaveCurrentYear() {
  if (initialized()) SaveAtMarker(model::kCurrentYearColumn, "Current Year");
}

void clsYearEnd::SaveLastYear() {
  if (initialized()) SaveAtMarker(model::kLastYearColumn, "Last Year");
}

void clsYearEnd::SaveAtMarker(int source_column, std::string_view caption) {
  UserInterface& user_interface = services().user_interface;
  std::string year(caption);
  if (ConfirmSaveFirst(user_interface, "This will save the " + year +
                                           " at the marker column to the right, and move the "
                                           "marker.") != MessageBoxResult::kOk) {
    return;
  }
  Start();
  std::string comment;
  {
    frmSaveComments comments(services().clock);
    user_interface.ShowModal(comments);
    if (!comments.Continue()) return;  // screen updating stays off: the model's rule
    comment = comments.CommentText();
    comments.Unload();
  }
  int marker_column = GoToMarkerColumn();
  frmProgressBar progress(user_interface);
  progress.SetTitle("Save " + year + " at marker");
  progress.ShowForm();
  RunOnHistorySheets(progress,
                     [&] { SaveSheetAtMarker(progress, source_column, marker_column, comment); });
}

int clsYearEnd::GoToMarkerColumn() {
  application()->Goto(model::kMarkerName);
  host::RangePtr marker = application()->Selection();
  if (!marker) throw MacroError(HostError::kObjectNotSet, "The name \"marker\" selects no cells.");
  return marker->Column();
}

void clsYearEnd::SaveSheetAtMarker(frmProgressBar& progress, int source_column, int marker_column,
                                   const std::string& comment) {
  host::Worksheet& sheet = *current_sheet_;
  sheet.Activate();
  progress.SetText(CopyingCellsIn(sheet));
  progress.SetMin(1);
  progress.SetMax(2);
  progress.SetProgress(1);

  // The target column and all right of it, the marker flag included, make room; that is how the
  // marker moves on.
  int target_column = TargetColumn(marker_column);
  sheet.Columns(target_column)->Select();
  application()->SetCutCopyMode(XlCutCopyMode::kCopy);
  sheet.Columns(target_column)->Insert(XlInsertShiftDirection::kToRight);
  sheet.Columns(target_column)->ClearFormats();

  sheet.Columns(source_column)->Select();
  application()->SetCutCopyMode(XlCutCopyMode::kCopy);
  sheet.Columns(source_column)->Copy();
  host::RangePtr target = sheet.Columns(target_column);
  target->Select();
  target->PasteSpecial(XlPasteType::kValues, XlPasteSpecialOperation::kNone, false, false);
  target->PasteSpecial(XlPasteType::kFormats, XlPasteSpecialOperation::kNone, false, false);

  if (!comment.empty()) {
    host::CommentPtr added = sheet.Cells(model::kSavedCommentRow, target_column)->AddComment();
    added->SetVisible(false);
    added->Text(comment);
  }
  progress.SetProgress(2);
}

int clsYearEnd::TargetColumn(int marker_column) {
  // The number of used columns, not the last used one: a flag beyond it is not found.
  int column_count = current_sheet_->UsedRange()->ColumnsCount();
  int target_column = marker_column;
  for (int column = 2; column <= column_count; ++column) {
    std::string text = ValueToText(current_sheet_->Cells(model::kFlagRow, column)->Value());
    // The rightmost flag wins.
    if (EqualsIgnoreCase(text, model::kMarkerColumnFlag)) target_column = column;
  }
  return target_column;
}

void clsYearEnd::ShiftHistory() {
  if (!initialized()) return;
  UserInterface& user_interface = services().user_interface;
  if (ConfirmSaveFirst(user_interface, "This will shift all five history years.") !=
      MessageBoxResult::kOk) {
    return;
  }
  Start();
  frmProgressBar progress(user_interface);
  progress.SetTitle("Shift History");
  progress.ShowForm();
  RunOnHistorySheets(progress, [&] { ShiftSheet(progress); });
}

void clsYearEnd::ShiftSheet(frmProgressBar& progress) {
  host::Worksheet& sheet = *current_sheet_;
  sheet.Activate();
  progress.SetText(CopyingCellsIn(sheet));
  progress.SetMin(1);
  progress.SetMax(model::kHistoryYears);
  for (int column = model::kFirstHistoryColumn + 1; column <= model::kLastYearColumn; ++column) {
    sheet.Columns(column)->Copy();
    sheet.Columns(column - 1)->Select();
    sheet.Paste();
    progress.SetProgress(column - model::kFirstHistoryColumn + 1);
  }

  // The oldest year's formulas may now look left of the history columns.
  int row_count = sheet.UsedRange()->RowsCount();
  progress.SetMin(1);
  progress.SetMax(row_count);
  for (int row = 1; row <= row_count; ++row) {
    progress.SetProgress(row);
    host::RangePtr cell = sheet.Cells(row, model::kFirstHistoryColumn);
    if (cell->Value().IsError(CellError::kValue)) cell->SetValue("");
  }
}

void clsYearEnd::CopyCurrentYear() {
  if (!initialized()) return;
  UserInterface& user_interface = services().user_interface;
  if (ConfirmSaveFirst(user_interface,
                       "This will copy current year input cells (column O) to prior year (column "
                       "N).") != MessageBoxResult::kOk) {
    return;
  }
  Start();
  frmProgressBar progress(user_interface);
  progress.SetTitle("Copy current year to prior year");
  progress.ShowForm();
  RunOnHistorySheets(progress, [&] { CopyCurrentYearOfSheet(progress); });
}

void clsYearEnd::CopyCurrentYearOfSheet(frmProgressBar& progress) {
  constexpr int kFirstRow = 2;
  host::Worksheet& sheet = *current_sheet_;
  host::RangePtr used = sheet.UsedRange();
  int last_row = used->Row() + used->RowsCount() - 1;
  progress.SetText(CopyingCellsIn(sheet));
  progress.SetMin(kFirstRow);
  progress.SetMax(last_row);
  for (int row = kFirstRow; row <= last_row; ++row) {
    host::RangePtr prior_year = sheet.Cells(row, model::kLastYearColumn);
    // Coloured cells hold formulas or headings.
    if (prior_year->Interior()->ColorIndex() == host::kColorIndexNone) {
      prior_year->SetValue(sheet.Cells(row, model::kCurrentYearColumn)->Value());
    }
    progress.SetProgress(row);
  }
}

void clsYearEnd::Start() {
  remembered_sheet_ = application()->ActiveAnySheet();
  application()->SetScreenUpdating(false);
}

template <typename Work>
void clsYearEnd::RunOnHistorySheets(frmProgressBar& progress, Work&& work) {
  ForEachFlaggedSheet(*application(), model::kHistorySheetFlag,
                      [&](const host::WorksheetPtr& sheet) {
                        current_sheet_ = sheet;
                        work();
                      });
  progress.Unload();
  application()->SetScreenUpdating(true);
  if (remembered_sheet_) remembered_sheet_->Select();
}

}  // namespace vantora
