// The dashboard's menu: charts to scroll to and column configurations.
#include <vector>

#include "core/common.h"
#include "core/convert.h"
#include "core/model_layout.h"
#include "presentation/dashboard.h"
#include "presentation/menu_management.h"
#include "refsheet/ref_sheet.h"

namespace vantora {
namespace {

using host::CommandBarControl;
using host::CommandBarControlPtr;
using host::MsoControlType;

constexpr std::string_view kDashboardMenuTag = "VantoraDashboard";
constexpr std::string_view kLeftChartSelection = "Left Chart Selection";
constexpr int kLeft = 0;
constexpr int kRight = 1;

CommandBarControlPtr AddPopup(CommandBarControl& parent, std::string_view caption) {
  CommandBarControlPtr popup = parent.Controls()->Add(MsoControlType::kPopup, std::nullopt);
  popup->SetCaption(caption);
  popup->SetVisible(true);
  return popup;
}

CommandBarControlPtr AddButton(CommandBarControl& parent, std::string_view caption,
                               std::string_view tag, std::string_view macro) {
  CommandBarControlPtr button = parent.Controls()->Add(MsoControlType::kButton, std::nullopt);
  button->SetCaption(caption);
  button->SetTag(tag);
  button->SetOnAction(macro);
  return button;
}

HostError SubscriptOutOfRange(const std::string& what) {
  return MacroError(HostError::kSubscriptOutOfRange, "Subscript out of range: " + what);
}

// The column of a chart entry's tag "side:column"; 0 when the tag has no colon.
int ColumnOfTag(const std::string& tag) {
  const std::size_t colon = tag.find(':');
  if (colon == std::string::npos) return 0;
  return NumberToInteger(LeadingNumber(std::string_view(tag).substr(colon + 1))).value_or(0);
}

// Goes on after a failing host call.
template <typename Step>
void IgnoringFailure(Step step) {
  try {
    step();
  } catch (const HostError&) {
    // The next step is made all the same: the model's rule.
  }
}

}  // namespace

void clsMenuManagement::CreateDashboardMenuBar() {
  if (!initialized()) return;
  host::CommandBarPtr bar = ActiveMenuBar();
  RemoveDashboardMenuBar();
  CommandBarControlPtr dashboard_popup = AddModelPopup(*bar);
  dashboard_popup->SetCaption("D&ashboard");
  dashboard_popup->SetTag(kDashboardMenuTag);
  dashboard_popup->SetVisible(false);
  if (SheetHasFlag(ActiveWorksheetOf(*application()), model::kDashboardSheetFlag)) {
    dashboard_popup->SetVisible(true);
  }
  if (!FindFlaggedSheet(*application(), model::kDashboardSheetFlag)) return;

  chart_selections_[kLeft] = AddPopup(*dashboard_popup, kLeftChartSelection);
  FillChartSelection(*chart_selections_[kLeft], kLeft + 1);
  chart_selections_[kRight] = AddPopup(*dashboard_popup, "Right Chart Selection");
  pane_mode_ = 2;
  FillChartSelection(*chart_selections_[kRight], kRight + 1);
  FillConfigSelection(*AddPopup(*dashboard_popup, "Dashboard Configuration"));
}

void clsMenuManagement::RemoveDashboardMenuBar() { DeleteControlsByTag(kDashboardMenuTag); }

void clsMenuManagement::FillChartSelection(CommandBarControl& popup, int side) {
  clsRefSheet ref_sheet(services());
  InitInner(ref_sheet);
  if (!ref_sheet.ChartsListIsDefined()) return;
  int previous_column = 0;
  for (ref_sheet.ChartsListIteratorInit(); ref_sheet.ChartsListIteratorIsMore();
       ref_sheet.ChartsListIteratorNext()) {
    const int column = ref_sheet.ChartsColumn();
    CommandBarControlPtr entry =
        AddButton(popup, ref_sheet.ChartsTitle(),
                  std::to_string(side) + ":" + std::to_string(column), "VA_SelChart");
    entry->SetBeginGroup(column != previous_column);
    previous_column = column;
  }
}

void clsMenuManagement::FillConfigSelection(CommandBarControl& popup) {
  clsRefSheet ref_sheet(services());
  InitInner(ref_sheet);
  if (!ref_sheet.ConfigsListIsDefined()) return;
  AddButton(popup, "Show all dashboard columns", "0", "VA_selConfig")->SetVisible(true);
  for (ref_sheet.ConfigsListIteratorInit(); ref_sheet.ConfigsListIteratorIsMore();
       ref_sheet.ConfigsListIteratorNext()) {
    AddButton(popup, ref_sheet.ConfigsName(), std::to_string(ref_sheet.ConfigsNum()),
              "VA_selConfig")
        ->SetVisible(true);
  }
  CommandBarControlPtr maintain =
      AddButton(popup, "Maintain configurations", "0", "VA_DashboardConfigure");
  maintain->SetVisible(true);
  maintain->SetBeginGroup(true);
}

void clsMenuManagement::SetDashboardMenuPanes() {
  if (!initialized()) return;
  const auto& [left, right] = chart_selections_;
  if (!left || !right) return;
  if (!SheetHasFlag(ActiveWorksheetOf(*application()), model::kDashboardSheetFlag)) return;
  std::size_t panes = 0;
  IgnoringFailure([&] { panes = ActiveWindowOf(*application())->Panes().size(); });
  if (panes == static_cast<std::size_t>(pane_mode_) || panes < 1 || panes > 2) return;
  const bool two_panes = panes == 2;
  IgnoringFailure([&] { right->SetVisible(two_panes); });
  IgnoringFailure([&] { left->SetCaption(two_panes ? kLeftChartSelection : "Chart Selection"); });
  pane_mode_ = two_panes ? 2 : 1;
}

void clsMenuManagement::ExposeDashMenu(bool visible) {
  if (!initialized()) return;
  if (CommandBarControlPtr menu = ActiveMenuBar()->FindControl(kDashboardMenuTag)) {
    menu->SetVisible(visible);
  }
  if (visible) SetDashboardMenuPanes();
}

void clsMenuManagement::SelectConfig(std::int16_t config_number) {
  if (!initialized()) return;
  const bool screen_updating = application()->ScreenUpdating();
  const bool activate = config_number <= 0;
  if (config_number == INT16_MIN) throw MacroError(HostError::kOverflow, "Overflow");
  const int configuration = activate ? -config_number : config_number;
  host::WorksheetPtr active = ActiveWorksheetOf(*application());
  host::WorksheetPtr dashboard = FindFlaggedSheet(*application(), model::kDashboardSheetFlag);
  if (!dashboard) return;
  if (activate) application()->SetScreenUpdating(false);

  const bool is_protected = dashboard->ProtectContents();
  dashboard->Unprotect();
  const int last_shown_column = ApplyConfig(*dashboard, configuration);
  if (is_protected) dashboard->Protect();
  ShowVisibleChartEntries();

  // No pane is left scrolled past the columns that can be seen.
  if (active->Name() == dashboard->Name() && last_shown_column > 0) {
    for (const host::PanePtr& pane : ActiveWindowOf(*application())->Panes()) {
      if (pane->ScrollColumn() > last_shown_column) pane->SetScrollColumn(last_shown_column);
    }
  }
  if (activate) {
    dashboard->Activate();
    dashboard->Cells(2, 1)->Activate();
  }
  application()->SetScreenUpdating(screen_updating);
}

int clsMenuManagement::ApplyConfig(host::Worksheet& dashboard, int configuration) {
  clsDashboard columns(services());
  InitInner(columns);
  std::vector<bool> shown_in(model::kDashboardConfigurations + 1);
  int last_shown_column = 0;
  const int column_count = dashboard.UsedRange()->ColumnsCount();
  for (int column = 1; column <= column_count; ++column) {
    columns.RetrieveColumnConfig(column, shown_in);
    if (configuration > model::kDashboardConfigurations) {
      throw SubscriptOutOfRange("there are 9 configurations, and none has the number " +
                                std::to_string(configuration) + ".");
    }
    const bool is_shown = configuration == 0 || shown_in[configuration];
    dashboard.Columns(column)->SetColumnsHidden(!is_shown);
    if (configuration != 0 && is_shown) last_shown_column = column;
  }
  return last_shown_column;
}

void clsMenuManagement::ShowVisibleChartEntries() {
  if (!chart_selections_[kLeft] || !chart_selections_[kRight]) return;
  host::WorksheetPtr dashboard = FindFlaggedSheet(*application(), model::kDashboardSheetFlag);
  if (!dashboard) return;
  const int column_count = dashboard->UsedRange()->ColumnsCount();
  // Column c at c - 1.
  std::vector<bool> visible;
  for (int column = 1; column <= column_count; ++column) {
    host::RangePtr range = dashboard->Columns(column);
    visible.push_back(!range->ColumnsHidden() && range->Width() != 0);
  }
  for (const CommandBarControlPtr& popup : chart_selections_) {
    for (const CommandBarControlPtr& entry : popup->Controls()->Items()) {
      const int column = ColumnOfTag(entry->Tag());
      if (column < 1 || column > column_count) {
        throw SubscriptOutOfRange("a chart entry names column " + std::to_string(column) +
                                  ", and the dashboard has " + std::to_string(column_count) +
                                  " columns.");
      }
      entry->SetVisible(visible[column - 1]);
    }
  }
}

}  // namespace vantora
