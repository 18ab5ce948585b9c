#include "host/column_formats.h"

#include <algorithm>

namespace vantora::embedded {

namespace {

using Runs = std::vector<ColumnFormat>;

Runs::iterator RunAt(Runs& runs, int column) {
  return std::partition_point(runs.begin(), runs.end(),
                              [&](const ColumnFormat& run) { return run.last < column; });
}

// Makes a run boundary before `column`, where a run spans it.
void SplitBefore(Runs& runs, int column) {
  auto run = RunAt(runs, column);
  if (run == runs.end() || run->first >= column) return;
  ColumnFormat left = *run;
  left.last = column - 1;
  run->first = column;
  runs.insert(run, left);
}

}  // namespace

void SetColumnStyle(SheetModel& sheet, int first, int last, StyleId style) {
  Runs& runs = sheet.column_formats;
  bool differs = std::any_of(runs.begin(), runs.end(), [&](const ColumnFormat& run) {
    return run.first <= last && run.last >= first && run.style != style;
  });
  if (!differs && style == 0) return;
  SplitBefore(runs, first);
  SplitBefore(runs, last + 1);
  int uncovered = first;
  for (auto run = RunAt(runs, first); uncovered <= last;) {
    if (run != runs.end() && run->first == uncovered) {
      run->style = style;
      uncovered = run->last + 1;
      ++run;
    } else if (style != 0) {
      int end = run != runs.end() ? std::min(run->first - 1, last) : last;
      run = std::next(runs.insert(run, {uncovered, end, style, ""}));
      uncovered = end + 1;
    } else {
      uncovered = run != runs.end() ? run->first : last + 1;
    }
  }
  sheet.column_formats_changed = true;
}

void CopyColumnFormat(SheetModel& sheet, int from, int to) {
  Runs& runs = sheet.column_formats;
  auto source = RunAt(runs, from);
  bool has_source = source != runs.end() && source->first <= from;
  ColumnFormat format = has_source ? *source : ColumnFormat{};
  auto target = RunAt(runs, to);
  bool has_target = target != runs.end() && target->first <= to;
  if (!has_source && !has_target) return;
  if (has_source && has_target && target->style == format.style &&
      target->attributes == format.attributes) {
    return;
  }
  SplitBefore(runs, to);
  SplitBefore(runs, to + 1);
  auto run = RunAt(runs, to);
  if (run != runs.end() && run->first == to) run = runs.erase(run);
  if (has_source) {
    format.first = format.last = to;
    runs.insert(run, format);
  }
  sheet.column_formats_changed = true;
}

}  // namespace vantora::embedded
