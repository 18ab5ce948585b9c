#include "host/window_panes.h"

#include <algorithm>
#include <functional>

#include "host/row_edits.h"
#include "package/column_width.h"

namespace vantora::embedded {
namespace {

// What a window's height and width hold beside the cells: title, headings, tabs, scroll bars.
constexpr double kFrameHeight = 54;
constexpr double kFrameWidth = 45;
constexpr double kTwips = 20;

// Rows or columns as a window shows them one after the other.
struct Axis {
  std::function<double(int)> size;
  int last;
  // Space in the window, in points.
  double space;
  int first;
  int active;
  // As SheetView::split_rows.
  double split;
  // How many are frozen.
  int frozen = 0;
};

// The first one behind `points` from `first` on; at least the one after `first`.
int Behind(const Axis& axis, int first, double points) {
  double end = 0;
  int at = first;
  while (at < axis.last && (end += axis.size(at)) <= points) ++at;
  return std::max(at, first + 1);
}

bool AnyShown(const Axis& axis, int first, int end) {
  for (int at = first; at < end; ++at) {
    if (axis.size(at) > 0) return true;
  }
  return false;
}

// Puts the active row or column in the middle when the window does not show it.
void ScrollToActive(Axis& axis) {
  if (axis.active >= axis.first && axis.active < Behind(axis, axis.first, axis.space)) return;
  double before = 0;
  axis.first = axis.active;
  while (axis.first > 1 && (before += axis.size(axis.first - 1)) <= axis.space / 2) --axis.first;
}

void FreezeBeforeActive(Axis& axis) {
  ScrollToActive(axis);
  if (AnyShown(axis, axis.first, axis.active)) axis.frozen = axis.active - axis.first;
}

void FreezeAtSplit(Axis& axis) {
  if (axis.split > 0) axis.frozen = Behind(axis, axis.first, axis.split / kTwips) - axis.first;
}

}  // namespace

void FreezePanes(SheetView& view, const BookWindow& window, const SheetModel& sheet,
                 const ColumnSizes& column_sizes) {
  if (view.panes == SheetView::Panes::kFrozen) return;
  Axis rows{[&](int row) { return RowHeight(sheet, sheet.rows.Of(row)); },
            kMaxRow,
            std::max(window.height() - kFrameHeight, 0.0),
            view.top_left.row,
            view.active_cell.row,
            view.split_rows};
  Axis columns{[&](int column) { return column_sizes.Width(column) * kPointsPerPixel; },
               kMaxColumn,
               std::max(window.width() - kFrameWidth, 0.0),
               view.top_left.column,
               view.active_cell.column,
               view.split_columns};
  if (view.panes == SheetView::Panes::kSplit) {
    FreezeAtSplit(rows);
    FreezeAtSplit(columns);
  } else {
    FreezeBeforeActive(rows);
    FreezeBeforeActive(columns);
    if (rows.frozen == 0 && columns.frozen == 0) {
      rows.frozen = Behind(rows, rows.first, rows.space / 2) - rows.first;
      columns.frozen = Behind(columns, columns.first, columns.space / 2) - columns.first;
    }
  }
  view.panes = SheetView::Panes::kFrozen;
  view.top_left = {rows.first, columns.first};
  view.split_rows = rows.frozen;
  view.split_columns = columns.frozen;
  view.scrolled = {std::min(rows.first + rows.frozen, kMaxRow),
                   std::min(columns.first + columns.frozen, kMaxColumn)};
}

void UnfreezePanes(SheetView& view) {
  if (view.panes != SheetView::Panes::kFrozen) return;
  view.panes = SheetView::Panes::kNone;
  view.split_rows = view.split_columns = 0;
  view.scrolled = view.top_left;
}

CellAddress ScrollPosition(const SheetView& view) {
  return view.panes == SheetView::Panes::kFrozen ? view.scrolled : view.top_left;
}

void ScrollToRow(SheetView& view, int row) {
  if (view.panes == SheetView::Panes::kFrozen && view.has_lower_panes()) {
    const int first = view.top_left.row + static_cast<int>(view.split_rows);
    view.scrolled.row = std::max(row, first);
    return;
  }
  view.top_left.row = row;
  if (!view.has_lower_panes()) view.scrolled.row = row;
}

void ScrollToColumn(SheetView& view, int column) {
  ScrollPaneToColumn(
      view, view.panes == SheetView::Panes::kFrozen && view.has_right_panes() ? 1 : 0, column);
}

int PaneCount(const SheetView& view) {
  return (view.has_right_panes() ? 2 : 1) * (view.has_lower_panes() ? 2 : 1);
}

int PaneScrollColumn(const SheetView& view, int pane) {
  const bool is_right = view.has_right_panes() && pane % 2 == 1;
  return is_right ? view.scrolled.column : view.top_left.column;
}

void ScrollPaneToColumn(SheetView& view, int pane, int column) {
  const bool frozen = view.panes == SheetView::Panes::kFrozen && view.has_right_panes();
  if (view.has_right_panes() && pane % 2 == 1) {
    const int first = view.top_left.column + static_cast<int>(view.split_columns);
    view.scrolled.column = frozen ? std::max(column, first) : column;
  } else if (!frozen) {
    view.top_left.column = column;
    if (!view.has_right_panes()) view.scrolled.column = column;
  }
}

}  // namespace vantora::embedded
