#include "component/class_table.h"

#include <algorithm>
#include <cstdint>

#include "component/ref_sheet_methods.h"
#include "core/convert.h"
#include "core/globals.h"
#include "maintenance/clear_all_data.h"
#include "maintenance/development_mode.h"
#include "maintenance/freeze.h"
#include "maintenance/planning_spinners.h"
#include "maintenance/ratios_comp_data_set.h"
#include "maintenance/year_end.h"
#include "presentation/chart_list_control.h"
#include "presentation/dashboard.h"
#include "presentation/display_modes.h"
#include "presentation/menu_management.h"
#include "refsheet/ref_sheet.h"
#include "workbook_tools/copy_worksheet.h"

namespace vantora::component {
namespace {

constexpr std::string_view kAsksToConfirm = "confirmation (OK/Cancel)";
constexpr std::string_view kAsksToSave = "confirmation (OK/Cancel), frmSaveComments";

template <typename Class>
std::unique_ptr<PublicObject> Create(Services& services) {
  return std::make_unique<Class>(services);
}

[[maybe_unused]] const std::string& TextOf(const Argument& argument) {
  return std::get<Value>(argument).AsText();
}

// A method without arguments and result.
template <typename Class, void (Class::*method)()>
Value Run(PublicObject& object, std::span<Argument>) {
  (static_cast<Class&>(object).*method)();
  return {};
}

PublicClass Globals() {
  return {.name = "clsGlobals",
          .help = "The session context that every other class is initialised with",
          .methods = {{.name = "Version",
                       .parameters = {},
                       .asks = "",
                       .help = "Returns the version line of the installed component",
                       .call =
                           [](PublicObject& object, std::span<Argument>) {
                             return Value(static_cast<clsGlobals&>(object).Version());
                           }}},
          .create = Create<clsGlobals>};
}

PublicClass RefSheet() {
  return {.name = "clsRefSheet",
          .help = "The Reference Sheet: the model's metadata",
          .methods = RefSheetMethods(),
          .create = Create<clsRefSheet>};
}

PublicClass YearEnd() {
  return {
      .name = "clsYearEnd",
      .help =
          "Year-end history: saving years as snapshots, shifting the history, copying the "
          "current year",
      .methods =
          {{.name = "SaveHistoryYear",
            .parameters = {},
            .asks = "frmSaveHistoryPrompt, confirmation (OK/Cancel), frmSaveComments",
            .help = "Saves one of the history years (columns J to N) as a new column at the marker",
            .call = Run<clsYearEnd, &clsYearEnd::SaveHistoryYear>},
           {.name = "SaveCurrentYear",
            .parameters = {},
            .asks = kAsksToSave,
            .help = "Saves the current year (column O) as a new column at the marker",
            .call = Run<clsYearEnd, &clsYearEnd::SaveCurrentYear>},
           {.name = "SaveLastYear",
            .parameters = {},
            .asks = kAsksToSave,
            .help = "Saves the last history year (column N) as a new column at the marker",
            .call = Run<clsYearEnd, &clsYearEnd::SaveLastYear>},
           {.name = "ShiftHistory",
            .parameters = {},
            .asks = kAsksToConfirm,
            .help = "Moves the history columns K to N one column to the left; column J is lost",
            .call = Run<clsYearEnd, &clsYearEnd::ShiftHistory>},
           {.name = "CopyCurrentYear",
            .parameters = {},
            .asks = kAsksToConfirm,
            .help = "Copies the values of column O into the cells of column N that have no fill",
            .call = Run<clsYearEnd, &clsYearEnd::CopyCurrentYear>}},
      .create = Create<clsYearEnd>};
}

Value SelectConfig(PublicObject& object, std::span<Argument> arguments) {
  const double number = std::get<Value>(arguments[0]).AsNumber();
  if (number < INT16_MIN || number > INT16_MAX) {
    throw HostError(HostError::kOverflow, "Overflow", "Orvanemcro1");
  }
  static_cast<clsMenuManagement&>(object).SelectConfig(static_cast<std::int16_t>(number));
  return {};
}

PublicClass MenuManagement() {
  using Menus = clsMenuManagement;
  return {
      .name = "clsMenuManagement",
      .help = "The model's and the dashboard's menus",
      .methods =
          {{.name = "CreateVAMenuBar",
            .parameters = {},
            .asks = "",
            .help = "Puts the model's menu on the menu bar, before the Window menu",
            .call = Run<Menus, &Menus::CreateVAMenuBar>},
           {.name = "RemoveVAMenuBar",
            .parameters = {},
            .asks = "",
            .help = "Removes the model's menu",
            .call = Run<Menus, &Menus::RemoveVAMenuBar>},
           {.name = "CreateDashboardMenuBar",
            .parameters = {},
            .asks = "",
            .help = "Replaces the dashboard's menu by a new one",
            .call = Run<Menus, &Menus::CreateDashboardMenuBar>},
           {.name = "RemoveDashboardMenuBar",
            .parameters = {},
            .asks = "",
            .help = "Removes the dashboard's menu",
            .call = Run<Menus, &Menus::RemoveDashboardMenuBar>},
           {.name = "SetDashboardMenuPanes",
            .parameters = {},
            .asks = "",
            .help = "Offers one chart selection or two, as the dashboard's window has panes",
            .call = Run<Menus, &Menus::SetDashboardMenuPanes>},
           {.name = "ExposeDashMenu",
            .parameters = {{.name = "visible",
                            .type = ParameterType::kBoolean,
                            .help = "whether the menu is shown"}},
            .asks = "",
            .help = "Shows or hides the dashboard's menu",
            .call =
                [](PublicObject& object, std::span<Argument> arguments) {
                  static_cast<Menus&>(object).ExposeDashMenu(
                      std::get<Value>(arguments[0]).AsBoolean());
                  return Value();
                }},
           {.name = "SelectConfig",
            .parameters = {{.name = "configNumber",
                            .type = ParameterType::kInteger,
                            .help = "1 to 9; 0 for all columns; negative to activate the dashboard "
                                    "as well, as 0 does"}},
            .asks = "",
            .help = "Shows the dashboard columns of a configuration and hides the others",
            .call = SelectConfig}},
      .create = Create<Menus>};
}

// A member that takes a column and its flags.
template <auto member>
Method ColumnConfig(std::string_view name, std::string_view help, bool is_filled) {
  return {.name = name,
          .parameters = {{.name = "column",
                          .type = ParameterType::kInteger,
                          .help = "the number of the dashboard's column"},
                         {.name = "flags",
                          .type = ParameterType::kNumberedFlags,
                          .help = "whether configurations 1, 2, ... show the column",
                          .is_filled = is_filled}},
          .asks = "",
          .help = help,
          .call = [](PublicObject& object, std::span<Argument> arguments) {
            (static_cast<clsDashboard&>(object).*member)(
                static_cast<int>(std::get<Value>(arguments[0]).AsNumber()),
                std::get<std::vector<bool>>(arguments[1]));
            return Value();
          }};
}

PublicClass Dashboard() {
  return {.name = "clsDashboard",
          .help = "The dashboard's chart list and column configurations",
          .methods = {{.name = "BuildChartList",
                       .parameters = {},
                       .asks = "",
                       .help = "Lists the dashboard's charts on the Reference Sheet",
                       .call = Run<clsDashboard, &clsDashboard::BuildChartList>},
                      ColumnConfig<&clsDashboard::RetrieveColumnConfig>(
                          "RetrieveColumnConfig",
                          "Tells which configurations show a column of the dashboard", true),
                      ColumnConfig<&clsDashboard::SaveColumnConfig>(
                          "SaveColumnConfig",
                          "Sets which configurations show a column of the dashboard", false),
                      {.name = "DashboardConfigure",
                       .parameters = {},
                       .asks = "frmDashConfigure",
                       .help = "Chooses the columns that each configuration shows, and the names",
                       .call = Run<clsDashboard, &clsDashboard::DashboardConfigure>}},
          .create = Create<clsDashboard>};
}

PublicClass CopyWorksheet() {
  return {.name = "clsCopyWorksheet",
          .help = "Copying a worksheet or range into another workbook",
          .methods = {{.name = "CopyWorksheet",
                       .parameters = {},
                       .asks = "frmCopyWorksheet (twice: to choose, and to read the outcome)",
                       .help = "Copies a worksheet, or its selected area, into a new worksheet",
                       .call = Run<clsCopyWorksheet, &clsCopyWorksheet::CopyWorksheet>}},
          .create = Create<clsCopyWorksheet>};
}

PublicClass Freeze() {
  return {
      .name = "clsFreeze",
      .help = "Freezing the current results as the base case",
      .methods = {{.name = "FreezeCurrentResults",
                   .parameters = {},
                   .asks = kAsksToConfirm,
                   .help = "Copies the values of each live row into its base row",
                   .call = Run<clsFreeze, &clsFreeze::FreezeCurrentResults>},
                  {.name = "SetSpinnerstoBase",
                   .parameters = {},
                   .asks = "",
                   .help = "Sets the entered cells of rows with spinner inputs to the base case",
                   .call = Run<clsFreeze, &clsFreeze::SetSpinnerstoBase>}},
      .create = Create<clsFreeze>};
}

PublicClass PlanningSpinners() {
  return {.name = "clsPlanningSpinners",
          .help = "The spin buttons of the planning sheets",
          .methods = {{.name = "SpinnerChange",
                       .parameters = {},
                       .asks = "",
                       .help = "Moves the projects of the spin button that called by whole years",
                       .call = Run<clsPlanningSpinners, &clsPlanningSpinners::SpinnerChange>}},
          .create = Create<clsPlanningSpinners>};
}

PublicClass RatiosCompDataSet() {
  return {
      .name = "clsRatiosCompDataSet",
      .help = "The ratio comparison data set",
      .methods = {{.name = "RatiosCompDataSet",
                   .parameters = {},
                   .asks = "",
                   .help = "Copies the comparison data to the rows of their ratios",
                   .call = Run<clsRatiosCompDataSet, &clsRatiosCompDataSet::RatiosCompDataSet>}},
      .create = Create<clsRatiosCompDataSet>};
}

PublicClass ClearAllData() {
  return {.name = "clsClearAllData",
          .help = "Clearing all entered data",
          .methods = {{.name = "ClearAllData",
                       .parameters = {},
                       .asks = "confirmation (OK/Cancel), last chance (OK/Cancel)",
                       .help = "Empties the cells of columns J to Y that have no fill",
                       .call = Run<clsClearAllData, &clsClearAllData::ClearAllData>}},
          .create = Create<clsClearAllData>};
}

PublicClass DisplayModes() {
  auto ignored = [](std::string_view name) {
    return Parameter{.name = name, .type = ParameterType::kText, .help = "not looked at"};
  };
  return {.name = "clsDisplayModes",
          .help = "Window arrangements beside the dashboard",
          .methods = {{.name = "MultiWindowUD",
                       .parameters = {},
                       .asks = "",
                       .help = "Shows the dashboard above the sheet, or one window again",
                       .call = Run<clsDisplayModes, &clsDisplayModes::MultiWindowUD>},
                      {.name = "MultiWindowLR",
                       .parameters = {},
                       .asks = "",
                       .help = "Shows the dashboard left of the sheet, or one window again",
                       .call = Run<clsDisplayModes, &clsDisplayModes::MultiWindowLR>},
                      {.name = "SetPresentationDisplay",
                       .parameters = {ignored("a"), ignored("b"), ignored("c")},
                       .asks = "",
                       .help = "Does nothing; the workbook's macros call it",
                       .call =
                           [](PublicObject& object, std::span<Argument> arguments) {
                             static_cast<clsDisplayModes&>(object).SetPresentationDisplay(
                                 std::get<Value>(arguments[0]), std::get<Value>(arguments[1]),
                                 std::get<Value>(arguments[2]));
                             return Value();
                           }}},
          .create = Create<clsDisplayModes>};
}

PublicClass DevelopmentMode() {
  return {.name = "clsDevelopmentMode",
          .help = "Switching between normal and development mode",
          .methods = {{.name = "DevelopmentMode",
                       .parameters = {},
                       .asks = "message (OK) when planning keys disagree",
                       .help = "Shows or hides row 1 of every sheet and what goes with it",
                       .call = Run<clsDevelopmentMode, &clsDevelopmentMode::DevelopmentMode>},
                      {.name = "AlignSheets",
                       .parameters = {},
                       .asks = "",
                       .help = "Scrolls and freezes every sheet as the flags in its A1 say",
                       .call = Run<clsDevelopmentMode, &clsDevelopmentMode::AlignSheets>},
                      {.name = "CheckPlanningKeys",
                       .parameters = {},
                       .asks = "message (OK) when there are discrepancies",
                       .help = "Lists the planning keys and their discrepancies",
                       .call = Run<clsDevelopmentMode, &clsDevelopmentMode::CheckPlanningKeys>}},
          .create = Create<clsDevelopmentMode>};
}

// A class that is part of the component's surface but does not exist yet.
PublicClass Missing(std::string_view name, std::string_view help) {
  return {.name = name, .help = help, .methods = {}, .create = nullptr};
}

}  // namespace

const std::vector<PublicClass>& PublicClasses() {
  static const std::vector<PublicClass> classes = {
      Globals(),
      RefSheet(),
      YearEnd(),
      Freeze(),
      PlanningSpinners(),
      DisplayModes(),
      RatiosCompDataSet(),
      DevelopmentMode(),
      ClearAllData(),
      MenuManagement(),
      Dashboard(),
      CopyWorksheet(),
      Missing("clsHider", "Handling of workbook open and save"),
      {.name = "clsChartListControl",
       .help = "The dashboard's chart list control",
       .methods = {},
       .create = Create<clsChartListControl>},
      Missing("clsNameManagement", "Defining and cleaning up defined names"),
      Missing("clsFormatting", "Column-block selection and formula paste"),
  };
  return classes;
}

const PublicClass* FindClass(std::string_view name) {
  const auto& classes = PublicClasses();
  auto found = std::find_if(classes.begin(), classes.end(), [&](const PublicClass& candidate) {
    return EqualsIgnoreCase(candidate.name, name);
  });
  return found == classes.end() ? nullptr : &*found;
}

const Method* FindMethod(const PublicClass& public_class, std::string_view name) {
  const auto& methods = public_class.methods;
  auto found = std::find_if(methods.begin(), methods.end(), [&](const Method& candidate) {
    return EqualsIgnoreCase(candidate.name, name);
  });
  return found == methods.end() ? nullptr : &*found;
}

}  // namespace vantora::component
