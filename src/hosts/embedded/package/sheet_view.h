// How a window shows a sheet: scroll position, panes, selection, as a sheet's markup holds it for
// each window.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cells/address.h"
#include "package/sheet_markup.h"

namespace vantora::embedded {

struct SheetView {
  enum class Panes { kNone, kSplit, kFrozen };

  // First cell of the top left pane.
  CellAddress top_left;
  // First row of the lower panes and first column of the right ones; without them those of
  // `top_left`.
  CellAddress scrolled;
  Panes panes = Panes::kNone;
  // Where the panes meet: frozen ones as a number of columns and rows, split ones in twentieths of
  // a point. 0 where there is no such border.
  double split_columns = 0;
  double split_rows = 0;
  // What is selected in the pane that is active; never empty.
  std::vector<Area> selection{Area{}};
  CellAddress active_cell;

  bool has_right_panes() const { return split_columns > 0; }
  bool has_lower_panes() const { return split_rows > 0; }
  bool operator==(const SheetView&) const = default;
};

// The view of the sheet in the workbook's window `window` (0-based); a view of A1 where the markup
// has none.
SheetView ReadSheetView(const SheetMarkup& markup, int window);

// What a sheet's markup is to hold for one of the workbook's windows.
struct SheetViewToWrite {
  // The window's number in the markup as it is; nullopt for a window that is new.
  std::optional<int> origin;
  // nullopt leaves the view as it stands.
  std::optional<SheetView> view;
  // Whether the sheet's tab is selected in the window; nullopt leaves it.
  std::optional<bool> tab_selected;
};

// Makes the sheet's views those of the workbook's windows, in their order. What does not differ
// stays as it is written; a sheet without views gets them when one has something to say.
// `windows_before` tells how many windows the markup was written for.
void WriteSheetViews(SheetMarkup& markup, const std::vector<SheetViewToWrite>& windows,
                     std::size_t windows_before);

}  // namespace vantora::embedded
