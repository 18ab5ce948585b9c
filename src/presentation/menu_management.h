// The model's own menu and the dashboard's menu on the host's menu bar.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "core/public_object.h"

namespace vantora {

// The workbook's macros create one object, which clsGlobals.Menus then holds. Nothing is done
// unless it is initialised. A failing host call ends a method at that point and the HostError
// reaches the caller, with the controls added so far on the bar; only SetDashboardMenuPanes goes
// on.
class clsMenuManagement : public BoundObject {
 public:
  explicit clsMenuManagement(Services& services) : BoundObject("clsMenuManagement", services) {}

  // Puts the "Vantora" menu before the Window menu: buttons that show the worksheets flagged "M",
  // then the entries of the Reference Sheet's menu table. A menu that stands there stays beside it.
  // Throws HostError 9 for more than 15 sheets in a group, 438 for a sub-item below a button, 91
  // for one below nothing.
  void CreateVAMenuBar();
  // Removes every "Vantora" menu, whichever object made it.
  void RemoveVAMenuBar();

  // Replaces the dashboard's menu by a new one, which is hidden unless the dashboard is active.
  // Throws HostError 13 when a chart sheet is active, as do the two methods below that say so.
  void CreateDashboardMenuBar();
  void RemoveDashboardMenuBar();
  // Offers one chart selection or two, as the active window has panes. Does nothing before the
  // menu was created and while another sheet is active; throws HostError 13 for a chart sheet.
  void SetDashboardMenuPanes();
  // Shows or hides the dashboard's menu; a menu that is shown follows the window's panes.
  void ExposeDashMenu(bool visible);
  // Shows the dashboard columns that belong to configuration 1 to 9 and hides the others; 0 shows
  // all. 0 and a negative number (the configuration with its sign turned) also activate the
  // dashboard. Throws HostError 9 for a number beyond 9, or when a chart entry names a column
  // outside the used range, and 13 for a chart sheet; screen updating and the sheet's protection
  // stay as they are at that point.
  void SelectConfig(std::int16_t config_number);

 private:
  // --- model_menu.cpp ---
  void AddSheetButton(host::CommandBarControl& popup, std::string_view sheet_name, bool begin_group,
                      int face_id);
  void AddTableEntries(host::CommandBarControl& model_popup);
  // A popup before the first control whose caption contains "Window", else at the end of the bar.
  host::CommandBarControlPtr AddModelPopup(host::CommandBar& bar);
  // Of the menu bar's top level.
  void DeleteControlsByTag(std::string_view tag);
  host::CommandBarPtr ActiveMenuBar();

  // --- dashboard_menu.cpp ---
  // `side` is 1 for the left chart selection, 2 for the right one.
  void FillChartSelection(host::CommandBarControl& popup, int side);
  void FillConfigSelection(host::CommandBarControl& popup);
  // Offers only the charts in columns of the dashboard that can be seen.
  void ShowVisibleChartEntries();
  // Shows and hides the columns; returns the last one that belongs to the configuration, 0 for
  // configuration 0.
  int ApplyConfig(host::Worksheet& dashboard, int configuration);

  // The left and the right chart selection; null until the dashboard's menu was created. Removing
  // the menu leaves them, and calls on them then fail.
  std::array<host::CommandBarControlPtr, 2> chart_selections_;
  // The number of panes that the menu shows chart selections for.
  std::int16_t pane_mode_ = 0;
};

}  // namespace vantora
