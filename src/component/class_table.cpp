#include "component/class_table.h"

#include <algorithm>

#include "component/ref_sheet_methods.h"
#include "core/convert.h"
#include "core/globals.h"
#include "maintenance/clear_all_data.h"
#include "maintenance/development_mode.h"
#include "maintenance/freeze.h"
#include "maintenance/planning_spinners.h"
#include "maintenance/ratios_comp_data_set.h"
#include "maintenance/year_end.h"
#include "refsheet/ref_sheet.h"
#include "workbook_tools/formatting.h"
#include "workbook_tools/hider.h"
#include "workbook_tools/name_management.h"

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

PublicClass Freeze() {
  return {.name = "clsFreeze",
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
  return {.name = "clsRatiosCompDataSet",
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

PublicClass Hider() {
  return {.name = "clsHider",
          .help = "Handling of workbook open and save",
          .methods = {{.name = "AtOpen",
                       .parameters = {},
                       .asks = "",
                       .help = "Shows the sheets and goes back to the sheet of the last save",
                       .call = Run<clsHider, &clsHider::AtOpen>},
                      {.name = "BeforeSave",
                       .parameters = {{.name = "saveAsUI",
                                       .type = ParameterType::kBoolean,
                                       .help = "whether to ask for a file to save to"}},
                       .asks = "GetSaveAsFilename (when saveAsUI is true)",
                       .help = "Saves the workbook with all sheets but the title sheet hidden",
                       .call =
                           [](PublicObject& object, std::span<Argument> arguments) {
                             static_cast<clsHider&>(object).BeforeSave(
                                 std::get<Value>(arguments[0]).AsBoolean());
                             return Value();
                           }}},
          .create = Create<clsHider>};
}

PublicClass NameManagement() {
  return {.name = "clsNameManagement",
          .help = "Defining and cleaning up defined names",
          .methods = {{.name = "NameDefinition",
                       .parameters = {},
                       .asks = "frmNaming01, frmNaming02 (where a name or a row is in use)",
                       .help = "Defines the names typed beside the selected rows",
                       .call = Run<clsNameManagement, &clsNameManagement::NameDefinition>},
                      {.name = "NameCleanup",
                       .parameters = {},
                       .asks = kAsksToConfirm,
                       .help = "Deletes the names that the names list marks as broken",
                       .call = Run<clsNameManagement, &clsNameManagement::NameCleanup>}},
          .create = Create<clsNameManagement>};
}

PublicClass Formatting() {
  return {
      .name = "clsFormatting",
      .help = "Column-block selection and formula paste",
      .methods = {{.name = "RangeSelect",
                   .parameters = {{.name = "direction",
                                   .type = ParameterType::kBoolean,
                                   .help = "true for the next block, false for the one before"},
                                  {.name = "index",
                                   .type = ParameterType::kInteger,
                                   .help = "the number of the block, 1 to 5",
                                   .is_optional = true}},
                   .asks = "",
                   .help = "Selects another block of yearly columns in the selected rows",
                   .call =
                       [](PublicObject& object, std::span<Argument> arguments) {
                         const Value& index = std::get<Value>(arguments[1]);
                         static_cast<clsFormatting&>(object).RangeSelect(
                             std::get<Value>(arguments[0]).AsBoolean(),
                             index.IsNumber() ? NumberToInteger(index.AsNumber()) : std::nullopt);
                         return Value();
                       }},
                  {.name = "LeftFormat",
                   .parameters = {},
                   .asks = "InputRange",
                   .help = "Formats the chosen cells as headings",
                   .call = Run<clsFormatting, &clsFormatting::LeftFormat>},
                  {.name = "RightFormat",
                   .parameters = {},
                   .asks = "InputRange",
                   .help = "Formats the chosen cells as figures to be entered",
                   .call = Run<clsFormatting, &clsFormatting::RightFormat>},
                  {.name = "PasteFormula",
                   .parameters = {},
                   .asks = "",
                   .help = "Pastes the copied formulas into every selected area",
                   .call = Run<clsFormatting, &clsFormatting::PasteFormula>}},
      .create = Create<clsFormatting>};
}

PublicClass DevelopmentMode() {
  return {.name = "clsDevelopmentMode",
          .help = "Switching between normal and development mode",
          .methods = {{.name = "CheckPlanningKeys",
                       .parameters = {},
                       .asks = "message (OK) when there are discrepancies",
                       .help = "Lists the planning keys and their discrepancies",
                       .call =
                           Run<clsDevelopmentMode, &clsDevelopmentMode::CheckPlanningKeys>}},
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
      Missing("clsDisplayModes", "Window arrangements beside the dashboard"),
      RatiosCompDataSet(),
      DevelopmentMode(),
      ClearAllData(),
      Missing("clsMenuManagement", "The model's and the dashboard's menus"),
      Missing("clsDashboard", "The dashboard's chart list and column configurations"),
      Missing("clsCopyWorksheet", "Copying a worksheet or range into another workbook"),
      Hider(),
      Missing("clsChartListControl", "The dashboard's chart list control"),
      NameManagement(),
      Formatting(),
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
