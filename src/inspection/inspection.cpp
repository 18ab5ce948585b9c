#include "inspection/inspection.h"

#include <algorithm>

#include "core/cell_place.h"
#include "core/common.h"
#include "core/convert.h"
#include "core/model_layout.h"
#include "inspection/reference_sheet.h"
#include "inspection/sheet_content.h"
#include "inspection/sheet_flags.h"
#include "inspection/sheet_reader.h"

namespace vantora::inspection {
namespace {

SheetFacts InspectSheet(SheetReader& reader, const ShapesOf& shapes_of) {
  SheetFacts facts;
  facts.name = reader.name();
  InspectFlags(reader, facts);
  if (FindFlag(facts, model::kHistorySheetFlag)) InspectHistory(reader, facts);
  if (FindFlag(facts, model::kFreezeSheetFlag)) InspectBaseRows(reader, facts);
  if (FindFlag(facts, model::kRatioSheetFlag)) InspectRatios(reader, facts);
  if (FindFlag(facts, model::kDashboardSheetFlag)) {
    InspectConfigurationTokens(reader, facts);
    InspectCharts(reader);
  }
  if (FindFlag(facts, model::kTitleSheetFlag)) InspectTitleSheet(reader, facts);
  InspectKeyColumns(reader, facts);
  InspectSpinners(reader, shapes_of(reader.name()), facts);
  return facts;
}

// Sheets of which the engine takes one: several, or none where one is needed.
void CheckUniqueSheets(const Inspection& inspection, std::vector<Problem>& problems) {
  struct Rule {
    std::string_view letter;
    std::string_view name;
    std::string_view without;
  };
  static constexpr Rule kRules[] = {
      {model::kReferenceSheetFlag, "Reference Sheet", "lists and menus can't be used."},
      {model::kTitleSheetFlag, "title sheet", "saving through clsHider is refused."},
      {model::kDashboardSheetFlag, "dashboard", ""},
  };
  for (const Rule& rule : kRules) {
    std::vector<std::string> found;
    for (const SheetFacts& sheet : inspection.sheets) {
      if (FindFlag(sheet, rule.letter)) found.push_back(sheet.name);
    }
    if (found.empty() && !rule.without.empty()) {
      problems.push_back({"", "",
                          "No worksheet has \"" + std::string(rule.letter) +
                              "\" in cell A1, so there is no " + std::string(rule.name) + ": " +
                              std::string(rule.without)});
    }
    for (std::size_t i = 1; i < found.size(); ++i) {
      problems.push_back({found[i], "A1",
                          "This sheet is flagged \"" + std::string(rule.letter) + "\" as \"" +
                              found[0] + "\" is: there should be one " + std::string(rule.name) +
                              "."});
    }
  }
}

std::string PlaceOf(host::Workbook& workbook, std::string_view name) {
  try {
    host::RangePtr range = workbook.Names()->Item(name)->RefersToRange();
    return range->Worksheet()->Name() + "!" + CellName(range->Row(), range->Column());
  } catch (const HostError&) {
    return "";  // no such name, or it refers to no cells: reported below
  }
}

void InspectNames(host::Workbook& workbook, Inspection& inspection,
                  std::vector<Problem>& problems) {
  const bool has_history = std::any_of(
      inspection.sheets.begin(), inspection.sheets.end(),
      [](const SheetFacts& sheet) { return FindFlag(sheet, model::kHistorySheetFlag); });
  inspection.names = {
      {model::kMarkerName, "default marker column", PlaceOf(workbook, model::kMarkerName)},
      {model::kFiscalYearName, "labels of the history years",
       PlaceOf(workbook, model::kFiscalYearName)},
  };
  if (!has_history) return;
  for (const NameFacts& name : inspection.names) {
    if (!name.refers_to.empty()) continue;
    problems.push_back({"", "",
                        "The name \"" + std::string(name.name) + "\" (" +
                            std::string(name.meaning) +
                            ") is missing or refers to no cells; years can't be saved."});
  }
}

}  // namespace

Inspection Inspect(host::Application& application, const ShapesOf& shapes_of) {
  Inspection inspection;
  host::WorkbookPtr workbook = application.ActiveWorkbook();
  std::vector<Problem> of_sheets;
  for (const host::WorksheetPtr& sheet : workbook->Worksheets()) {
    SheetReader reader(sheet, of_sheets);
    inspection.sheets.push_back(InspectSheet(reader, shapes_of));
  }
  if (auto sheet = FindFlaggedSheet(application, model::kReferenceSheetFlag)) {
    SheetReader reader(sheet, of_sheets);
    inspection.reference_sheet = InspectReferenceSheet(reader);
  }
  InspectMenuGroups(inspection.sheets, of_sheets);
  CheckUniqueSheets(inspection, inspection.problems);
  InspectNames(*workbook, inspection, inspection.problems);
  std::move(of_sheets.begin(), of_sheets.end(), std::back_inserter(inspection.problems));
  // The workbook's own first, then each sheet's together, in tab order.
  std::vector<std::string_view> order = {""};
  for (const SheetFacts& sheet : inspection.sheets) order.push_back(sheet.name);
  std::stable_sort(inspection.problems.begin(), inspection.problems.end(),
                   [&](const Problem& a, const Problem& b) {
                     return std::find(order.begin(), order.end(), a.sheet) <
                            std::find(order.begin(), order.end(), b.sheet);
                   });
  return inspection;
}

}  // namespace vantora::inspection
