#include "presentation/dashboard.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>

#include "core/common.h"
#include "core/convert.h"
#include "core/dashboard_charts.h"
#include "core/model_layout.h"
#include "presentation/frm_dash_configure.h"
#include "refsheet/ref_sheet.h"

namespace vantora {
namespace {

int UpperBound(const std::vector<bool>& flags) { return static_cast<int>(std::ssize(flags)) - 1; }

// The numbers between the brackets, as they stand.
std::string_view HiddenList(std::string_view text) {
  const std::optional<std::size_t> token = FindIgnoreCase(text, model::kHiddenTokenStart);
  if (!token) return {};
  std::string_view list = text.substr(*token + model::kHiddenTokenStart.size());
  // A bracket right at the start stays in the list, where it is no number.
  return list.substr(0, list.find(')', 1));
}

// Takes the first part of a list off it.
std::string_view TakePart(std::string_view& list) {
  const std::size_t comma = list.find(',');
  const std::string_view part = list.substr(0, comma);
  list = comma == std::string_view::npos ? std::string_view() : list.substr(comma + 1);
  return part;
}

std::string HiddenToken(const std::vector<bool>& flags) {
  std::string list;
  for (int number = 1; number <= UpperBound(flags); ++number) {
    if (flags[static_cast<std::size_t>(number)]) continue;
    if (!list.empty()) list += ',';
    list += std::to_string(number);
  }
  return list.empty() ? list : std::string(model::kHiddenTokenStart) + list + ")";
}

// A number as the macro language's integers hold it.
int ToInteger(int number) {
  if (number < INT16_MIN || number > INT16_MAX) {
    throw MacroError(HostError::kOverflow, "Overflow");
  }
  return number;
}

}  // namespace

bool clsDashboard::Bind() {
  sheet_ = FindFlaggedSheet(*application(), model::kDashboardSheetFlag);
  if (sheet_) return true;
  ReportProgrammingError(
      services().user_interface,
      {.module = class_name(), .detail = "Could not locate Dashboard Worksheet)"});
  return false;
}

std::string clsDashboard::ConfigText(int column) {
  return std::string(TrimBlanks(ValueToText(sheet_->Cells(model::kFlagRow, column)->Value())));
}

void clsDashboard::RetrieveColumnConfig(int column, std::vector<bool>& flags) {
  if (!initialized()) return;
  std::fill(flags.begin() + std::min<std::ptrdiff_t>(1, std::ssize(flags)), flags.end(), true);
  const std::string text = ConfigText(column);
  std::string_view list = HiddenList(text);
  while (!list.empty()) {
    const int number = TextToInteger(TakePart(list)).value_or(0);
    if (number >= 1 && number <= UpperBound(flags)) {
      flags[static_cast<std::size_t>(number)] = false;
    }
  }
}

void clsDashboard::SaveColumnConfig(int column, const std::vector<bool>& flags) {
  if (!initialized()) return;
  const std::string text = ConfigText(column);
  std::string_view before = text;
  std::string_view after;
  if (const std::optional<std::size_t> token = FindIgnoreCase(text, model::kHiddenTokenStart)) {
    before = TrimBlanks(before.substr(0, *token));
    // The old token ends at the first blank, wherever its bracket closes.
    const std::size_t end = text.find(' ', *token);
    if (end != std::string::npos) after = TrimBlanks(std::string_view(text).substr(end));
  }
  // The blanks stay at the ends too: the model's rule.
  sheet_->Cells(model::kFlagRow, column)
      ->SetValue(std::string(before) + " " + HiddenToken(flags) + " " + std::string(after));
}

// The rows of the chart list, a column of it each, and the titles to tell the user of.
struct clsDashboard::ListedCharts {
  std::vector<std::string> columns;
  std::vector<std::string> positions;
  std::vector<std::string> titles;
  std::string outside;
  std::string beyond;
};

void clsDashboard::BuildChartList() {
  if (!initialized()) return;
  clsRefSheet reference_sheet(services());
  InitInner(reference_sheet);
  if (!reference_sheet.ChartsListIsDefined()) return;
  reference_sheet.ChartsListClear();

  const ListedCharts charts = CollectCharts();
  auto warn = [&](std::string_view about, const std::string& titles) {
    if (titles.empty()) return;
    services().user_interface.MessageBox(
        std::string(about) + std::string(kLineBreak) + std::string(kLineBreak) + titles, kOkOnly,
        "Vantora warning");
  };
  warn("Following charts are too far outside of column boundaries:", charts.outside);
  warn("The chart list holds " + std::to_string(model::kMostListedCharts) +
           " charts. Following charts are not listed:",
       charts.beyond);
  if (charts.titles.empty()) return;
  const int count = static_cast<int>(charts.titles.size());
  reference_sheet.ChartsListKeysListLoadColsCol(charts.columns, count);
  reference_sheet.ChartsListLoadPosCol(charts.positions, count);
  reference_sheet.ChartsListLoadTitlesCol(charts.titles, count);
  reference_sheet.ChartsListSort();
}

std::vector<host::ChartObjectPtr> clsDashboard::Charts() {
  try {
    return sheet_->ChartObjects();
  } catch (const HostError&) {
    // The model's rule: what fails while the charts are looked at ends no list.
    return {};
  }
}

clsDashboard::ListedCharts clsDashboard::CollectCharts() {
  const DashboardColumns columns(*sheet_);
  ListedCharts charts;
  for (const host::ChartObjectPtr& chart : Charts()) {
    const std::optional<PlacedChart> placed = PlaceOf(*chart);
    if (!placed) continue;
    const std::string line = placed->title + std::string(kLineBreak);
    const std::optional<int> column = columns.ColumnOf(*placed);
    if (!column) {
      charts.outside += line;
      continue;
    }
    if (charts.titles.size() == model::kMostListedCharts) {
      charts.beyond += line;
      continue;
    }
    charts.columns.push_back(ZeroPadded(static_cast<unsigned>(*column), 2));
    charts.positions.push_back(ZeroPadded(static_cast<unsigned>(std::max(placed->top, 0.0)), 4));
    charts.titles.push_back(placed->title);
    if (columns.IsTooWide(*placed, *column)) charts.outside += line;
  }
  return charts;
}

// An entry of the chart list.
struct clsDashboard::ChartEntry {
  int column;
  std::string title;
};

std::vector<clsDashboard::ChartEntry> clsDashboard::ReadChartList(clsRefSheet& reference_sheet) {
  std::vector<ChartEntry> entries;
  reference_sheet.ChartsListIteratorInit();
  while (reference_sheet.ChartsListIteratorIsMore()) {
    entries.push_back({ToInteger(reference_sheet.ChartsColumn()), reference_sheet.ChartsTitle()});
    reference_sheet.ChartsListIteratorNext();
  }
  return entries;
}

void clsDashboard::DashboardConfigure() {
  if (!initialized()) return;
  application()->SetScreenUpdating(false);
  const host::WorksheetPtr remembered_sheet = ActiveWorksheetOf(*application());
  clsRefSheet reference_sheet(services());
  InitInner(reference_sheet);
  if (!reference_sheet.ChartsListIsDefined())
    return;  // screen updating stays off: the model's rule

  const std::vector<ChartEntry> charts = ReadChartList(reference_sheet);
  int largest = 0;
  for (const ChartEntry& chart : charts) largest = std::max(largest, chart.column);

  frmDashConfigure dialog;
  dialog.Init(*application(), *this, reference_sheet, menus());
  dialog.Dashboard(sheet_);
  dialog.CheckBoxListSize(largest);
  AddColumns(dialog, charts, largest);
  services().user_interface.ShowModal(dialog);
  remembered_sheet->Activate();
  application()->SetScreenUpdating(true);
}

void clsDashboard::AddColumns(frmDashConfigure& dialog, const std::vector<ChartEntry>& charts,
                              int count) {
  auto next = charts.begin();
  for (int added = 0; added < count; ++added) {
    // Columns without charts leave fewer runs than there are columns; the last one's column then
    // comes again: the model's rule.
    const int column = next != charts.end() ? next->column : charts.back().column;
    std::vector<std::string> titles;
    for (; next != charts.end() && next->column == column; ++next) {
      if (titles.size() == model::kMostChartsOfAColumn) {
        throw MacroError(HostError::kSubscriptOutOfRange,
                         "Subscript out of range: column " + std::to_string(column) +
                             " of the dashboard has more than " +
                             std::to_string(model::kMostChartsOfAColumn) +
                             " charts in the chart list.");
      }
      titles.push_back(next->title);
    }
    if (titles.empty()) titles.emplace_back();
    dialog.AddColumn(column, titles);
  }
}

}  // namespace vantora
