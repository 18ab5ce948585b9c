// Formatting cells of an open workbook.
#include <algorithm>
#include <unordered_map>

#include "host/column_formats.h"
#include "host/open_workbook.h"

namespace vantora::embedded {
namespace {

// The styles that a change makes of others, each looked up once.
class StyleChanges {
 public:
  StyleChanges(StyleEditor& editor, const FormatChange& change)
      : editor_(editor), change_(change) {}

  StyleId Of(StyleId style) {
    auto [found, is_new] = known_.try_emplace(style);
    if (is_new) found->second = editor_.Changed(style, change_);
    return found->second;
  }

 private:
  StyleEditor& editor_;
  const FormatChange& change_;
  std::unordered_map<StyleId, StyleId> known_;
};

void FormatCell(SheetModel& sheet, CellAddress cell, StyleChanges& styles) {
  const StyleId before = sheet.StyleOf(cell);
  const StyleId after = styles.Of(before);
  if (after != before) sheet.cells.SetStyle(cell, after);
}

void FormatCells(SheetModel& sheet, const Area& area, StyleChanges& styles) {
  for (int column = area.first_column; column <= area.last_column; ++column) {
    for (int row = area.first_row; row <= area.last_row; ++row) {
      FormatCell(sheet, {row, column}, styles);
    }
  }
}

// The columns themselves get a format, and cells only where there is one already, or a row's
// format would show.
void FormatColumns(SheetModel& sheet, const Area& area, StyleChanges& styles) {
  for (int column = area.first_column; column <= area.last_column; ++column) {
    sheet.cells.ForEachInColumn(column, 1, kMaxRow, [&](int row, const Cell&) {
      FormatCell(sheet, {row, column}, styles);
    });
    for (const auto& [row, style] : sheet.row_styles) FormatCell(sheet, {row, column}, styles);
  }
  const std::vector<ColumnFormat> formats = sheet.column_formats;
  int next = area.first_column;
  const auto set = [&](int last, StyleId style) {
    if (next <= last && styles.Of(style) != style) {
      SetColumnStyle(sheet, next, last, styles.Of(style));
    }
    next = std::max(next, last + 1);
  };
  for (const ColumnFormat& format : formats) {
    if (format.last < next || format.first > area.last_column) continue;
    set(format.first - 1, 0);
    set(std::min(format.last, area.last_column), format.style);
  }
  set(area.last_column, 0);
}

}  // namespace

void OpenWorkbook::RefuseFormatting(int sheet_id, const std::vector<Area>& areas) {
  if (sheet(sheet_id).is_protected) {
    Refuse("The cell's format can't be changed: the sheet \"" + sheet(sheet_id).name +
           "\" is protected. Unprotect it first.");
  }
  for (const Area& area : areas) {
    if (area.IsWholeRows() && !area.IsWholeColumns()) {
      Refuse("The embedded host formats cells and whole columns, not whole rows: " +
             Describe(sheet_id, area) + ".");
    }
  }
}

void OpenWorkbook::Format(int sheet_id, const std::vector<Area>& areas,
                          const FormatChange& change) {
  RefuseFormatting(sheet_id, areas);
  StyleChanges styles(file_->style_editor(), change);
  for (const Area& area : areas) {
    if (area.IsWholeColumns()) {
      FormatColumns(sheet(sheet_id), area, styles);
    } else {
      FormatCells(sheet(sheet_id), area, styles);
    }
  }
}

void OpenWorkbook::FormatInsideVerticals(int sheet_id, const std::vector<Area>& areas,
                                         const LineChange& line) {
  // Both cells beside a line have it.
  FormatChange left;
  left.sides[kLeftSide] = line;
  FormatChange right;
  right.sides[kRightSide] = line;
  for (const Area& area : areas) {
    if (area.columns() == 1) continue;
    Area with_left = area;
    ++with_left.first_column;
    Area with_right = area;
    --with_right.last_column;
    Format(sheet_id, {with_left}, left);
    Format(sheet_id, {with_right}, right);
  }
}

void OpenWorkbook::FormatOutline(int sheet_id, const std::vector<Area>& areas,
                                 const LineChange& line) {
  const auto format = [&](const Area& edge, BorderSide side) {
    FormatChange change;
    change.sides[side] = line;
    Format(sheet_id, {edge}, change);
  };
  for (const Area& area : areas) {
    format({area.first_row, area.first_column, area.last_row, area.first_column}, kLeftSide);
    format({area.first_row, area.last_column, area.last_row, area.last_column}, kRightSide);
    // A whole column has neither a first nor a last row that could show a line.
    if (area.IsWholeColumns()) continue;
    format({area.first_row, area.first_column, area.first_row, area.last_column}, kTopSide);
    format({area.last_row, area.first_column, area.last_row, area.last_column}, kBottomSide);
  }
}

}  // namespace vantora::embedded
