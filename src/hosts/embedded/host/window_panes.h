// The panes of a window on a sheet: freezing them and scrolling in them.
#pragma once

#include "host/column_sizes.h"
#include "host/workbook_windows.h"

namespace vantora::embedded {

// Freezes what the window shows above and left of the active cell. A cell that lies outside of what
// is shown is scrolled into the middle first; at the first cell that is shown the panes are frozen
// in the middle of the window. Split panes are frozen where they are split.
void FreezePanes(SheetView& view, const BookWindow& window, const SheetModel& sheet,
                 const ColumnSizes& column_sizes);
// The window then shows what the top left pane showed. Split panes stay.
void UnfreezePanes(SheetView& view);

// The first row and column that the window's own scroll position means: the scrolling pane's with
// frozen panes, the top left pane's otherwise.
CellAddress ScrollPosition(const SheetView& view);
// Scrolls there, not into the frozen part.
void ScrollToRow(SheetView& view, int row);
void ScrollToColumn(SheetView& view, int column);

// 1, 2 or 4. Panes count from 0: from left to right, then from top to bottom.
int PaneCount(const SheetView& view);
int PaneScrollColumn(const SheetView& view, int pane);
// A frozen pane does not scroll.
void ScrollPaneToColumn(SheetView& view, int pane, int column);

}  // namespace vantora::embedded
