#include "maintenance/development_mode.h"

#include <memory>

#include "core/common.h"
#include "core/model_layout.h"
#include "maintenance/planning_key_check.h"
#include "presentation/dashboard.h"
#include "presentation/menu_management.h"
#include "refsheet/ref_sheet.h"

namespace vantora {
namespace {

using host::WorksheetPtr;

constexpr std::string_view kScrollColumnFlag = "C";
constexpr std::string_view kScrollRowFlag = "R";
constexpr std::string_view kFreezeRowFlag = "U";
constexpr std::string_view kFreezeColumnFlag = "V";
// Where the flag has no number.
constexpr int kUsualScrollColumn = 14;
constexpr int kUsualScrollRow = 1;
constexpr int kUsualFreezeRow = 4;
constexpr int kUsualFreezeColumn = 5;
constexpr int kAllColumns = 0;

}  // namespace

void clsDevelopmentMode::DevelopmentMode() {
  if (!initialized()) return;
  application()->SetScreenUpdating(false);
  const WorksheetPtr remembered_sheet = application()->ActiveSheet();
  if (!remembered_sheet) throw MacroError(HostError::kObjectNotSet, "No worksheet is active.");
  const bool to_normal = !remembered_sheet->Cells(model::kFlagRow, 1)->RowsHidden();
  for (const WorksheetPtr& sheet : ActiveWorkbookOf(*application())->Worksheets()) {
    SwitchSheet(sheet, to_normal);
  }
  if (to_normal) {
    FinishNormalMode();
  } else {
    FinishDevelopmentMode();
  }
  remembered_sheet->Activate();
  application()->SetScreenUpdating(true);
}

void clsDevelopmentMode::SwitchSheet(const WorksheetPtr& sheet, bool to_normal) {
  const bool is_protected = SheetHasFlag(sheet, model::kProtectedSheetFlag);
  if (is_protected && !to_normal) sheet->Unprotect();
  sheet->Cells(model::kFlagRow, 1)->SetRowsHidden(to_normal);
  if (is_protected && to_normal) sheet->Protect();
}

void clsDevelopmentMode::FinishNormalMode() {
  CheckPlanningKeys();
  clsDashboard dashboard(services());
  InitInner(dashboard);
  dashboard.BuildChartList();
  Menus().CreateDashboardMenuBar();
  AlignSheets();
}

void clsDevelopmentMode::FinishDevelopmentMode() {
  clsRefSheet ref_sheet(services());
  InitInner(ref_sheet);
  ref_sheet.NamesListPopulate();
  Menus().SelectConfig(kAllColumns);
}

clsMenuManagement& clsDevelopmentMode::Menus() {
  const std::shared_ptr<clsMenuManagement> menu_object = menus();
  if (!menu_object) throw MacroError(HostError::kObjectNotSet, "The session has no menus.");
  // The session context keeps it.
  return *menu_object;
}

void clsDevelopmentMode::AlignSheets() {
  if (!initialized()) return;
  application()->SetScreenUpdating(false);
  const host::SheetPtr remembered_sheet = application()->ActiveAnySheet();
  for (const WorksheetPtr& sheet : ActiveWorkbookOf(*application())->Worksheets()) {
    AlignSheet(sheet);
  }
  if (remembered_sheet) remembered_sheet->Activate();
  application()->SetScreenUpdating(true);
}

void clsDevelopmentMode::AlignSheet(const WorksheetPtr& sheet) {
  const int scroll_column = SheetHasFlag(sheet, kScrollColumnFlag)
                                ? FlagNumber(sheet, kScrollColumnFlag, kUsualScrollColumn)
                                : 0;
  const int scroll_row =
      SheetHasFlag(sheet, kScrollRowFlag) ? FlagNumber(sheet, kScrollRowFlag, kUsualScrollRow) : 0;
  const bool freezes_row = SheetHasFlag(sheet, kFreezeRowFlag);
  const int freeze_row = freezes_row ? FlagNumber(sheet, kFreezeRowFlag, kUsualFreezeRow) : 1;
  const bool freezes_column = SheetHasFlag(sheet, kFreezeColumnFlag);
  const int freeze_column =
      freezes_column ? FlagNumber(sheet, kFreezeColumnFlag, kUsualFreezeColumn) : 1;
  // Freezing comes first: the scroll position is then that of the scrolling pane.
  if (freezes_row || freezes_column) {
    const host::WindowPtr window = WindowOn(*sheet);
    window->SetFreezePanes(false);
    sheet->Cells(freeze_row, freeze_column)->Select();
    window->SetFreezePanes(true);
  }
  if (scroll_column > 0) WindowOn(*sheet)->SetScrollColumn(scroll_column);
  if (scroll_row > 0) WindowOn(*sheet)->SetScrollRow(scroll_row);
}

host::WindowPtr clsDevelopmentMode::WindowOn(host::Worksheet& sheet) {
  sheet.Activate();
  return ActiveWindowOf(*application());
}

void clsDevelopmentMode::CheckPlanningKeys() {
  if (!initialized()) return;
  clsRefSheet ref_sheet(services());
  InitInner(ref_sheet);
  vantora::CheckPlanningKeys(*application(), ref_sheet, services().user_interface);
}

}  // namespace vantora
