// The list of the dashboard's charts.
#include "core/cell_place.h"
#include "core/coercion.h"
#include "refsheet/ref_sheet.h"

namespace vantora {
namespace {

constexpr int kPositionOffset = 1;
constexpr int kTitleOffset = 2;
// The list's block is wider than what is written here.
constexpr int kLastOffset = 5;

}  // namespace

bool clsRefSheet::ChartsListIsDefined() { return IsDefined(kCharts); }

void clsRefSheet::ChartsListSelect() {
  if (!ChartsListIsDefined()) return;
  const int column = column_of(kCharts);
  SelectList(column, column + kLastOffset, column);
}

void clsRefSheet::ChartsListDeselect() {
  if (ChartsListIsDefined()) SelectHeading(column_of(kCharts));
}

void clsRefSheet::ChartsListClear() {
  if (!ChartsListIsDefined()) return;
  ChartsListSelect();
  Selection()->Clear();
}

void clsRefSheet::ChartsListKeysListLoadColsCol(const std::vector<std::string>& values, int count) {
  if (ChartsListIsDefined()) LoadColumn(column_of(kCharts), values, count);
}

void clsRefSheet::ChartsListLoadPosCol(const std::vector<std::string>& values, int count) {
  if (ChartsListIsDefined()) LoadColumn(column_of(kCharts) + kPositionOffset, values, count);
}

void clsRefSheet::ChartsListLoadTitlesCol(const std::vector<std::string>& values, int count) {
  if (ChartsListIsDefined()) LoadColumn(column_of(kCharts) + kTitleOffset, values, count);
}

void clsRefSheet::ChartsListSort() {
  if (!ChartsListIsDefined()) return;
  ChartsListSelect();
  SortSelection(column_of(kCharts), column_of(kCharts) + kPositionOffset);
  ChartsListDeselect();
}

void clsRefSheet::ChartsListIteratorInit() {
  if (BeginIteration(kCharts, chart_iteration_)) ChartsListIteratorNext();
}

void clsRefSheet::ChartsListIteratorNext() {
  if (!ChartsListIsDefined()) return;
  const int row = ++chart_iteration_.row;
  chart_.title = TrimmedTextAt(row, column_of(kCharts) + kTitleOffset);
  chart_.column = 0;
  const Value column(TrimmedTextAt(row, column_of(kCharts)));
  if (IsAmount(column)) chart_.column = LongIn({*sheet_, row, column_of(kCharts)}, column);
  if (chart_.title.empty()) chart_iteration_.is_more = false;
}

bool clsRefSheet::ChartsListIteratorIsMore() { return initialized() && chart_iteration_.is_more; }

std::string clsRefSheet::ChartsTitle() { return initialized() ? chart_.title : ""; }

int clsRefSheet::ChartsColumn() { return initialized() ? chart_.column : 0; }

}  // namespace vantora
