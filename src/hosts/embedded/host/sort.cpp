// Sorting rows of an open workbook as Excel does.
#include <algorithm>
#include <map>

#include "formula/formula.h"
#include "host/open_workbook.h"
#include "host/text_order.h"
#include "package/move_rows.h"
#include "package/sheet_features.h"

namespace vantora::embedded {
namespace {

// Numbers, texts, logical values, errors, blanks: in this order.
class SortKey {
 public:
  explicit SortKey(const Value& value) {
    if (value.IsNumber()) {
      kind_ = kNumber;
      number_ = value.AsNumber();
    } else if (value.IsText()) {
      kind_ = kText;
      text_ = TextOrder(value.AsText());
    } else if (value.IsBoolean()) {
      kind_ = kBoolean;
      number_ = value.AsBoolean();
    } else if (value.IsError()) {
      kind_ = kError;
    }
  }

  int Compare(const SortKey& other) const {
    if (kind_ != other.kind_) return kind_ < other.kind_ ? -1 : 1;
    if (kind_ == kText) return text_.Compare(other.text_);
    return number_ < other.number_ ? -1 : number_ > other.number_;
  }

 private:
  enum Kind { kNumber, kText, kBoolean, kError, kBlank };
  Kind kind_ = kBlank;
  double number_ = 0;
  TextOrder text_{""};
};

struct SortRow {
  int row;
  SortKey key1;
  SortKey key2;
};

// Cells merged side by side within their rows, and alike in every row, move with their rows.
bool MergesFollowRows(const std::vector<Area>& merged, const Area& area) {
  std::map<std::pair<int, int>, int> rows_by_columns;
  for (const Area& one : merged) {
    if (!one.Intersects(area)) continue;
    if (one.rows() > 1 || !area.Contains({one.first_row, one.first_column}) ||
        !area.Contains({one.last_row, one.last_column})) {
      return false;
    }
    ++rows_by_columns[{one.first_column, one.last_column}];
  }
  return std::all_of(rows_by_columns.begin(), rows_by_columns.end(),
                     [&](const auto& entry) { return entry.second == area.rows(); });
}

}  // namespace

// A first row of texts alone, above a row that holds something else than texts.
bool OpenWorkbook::HasHeader(int sheet_id, const Area& area) {
  if (area.rows() < 2) return false;
  bool differs = false;
  for (int column = area.first_column; column <= area.last_column; ++column) {
    const Value heading = Read(sheet_id, {area.first_row, column});
    if (!heading.IsText() || heading.AsText().empty()) return false;
    const Value below = Read(sheet_id, {area.first_row + 1, column});
    differs |= !below.IsEmpty() && !below.IsText();
  }
  return differs;
}

void OpenWorkbook::RefuseSorting(int sheet_id, const Area& area) {
  if (sheet(sheet_id).is_protected) {
    Refuse("Sort method of Range class failed: the sheet \"" + sheet(sheet_id).name +
           "\" is protected. Unprotect it first.");
  }
  if (area.rows() == 1 && area.columns() == 1) {
    Refuse(
        "Sort method of Range class failed: the embedded host sorts the range that it is given, "
        "and " +
        Describe(sheet_id, area) + " is a single cell.");
  }
  for (const ArrayFormula& array : sheet(sheet_id).arrays) {
    if (area.Intersects(array.area)) Refuse("You can't change part of an array.");
  }
  file_->FollowInsertions(sheet_id);
  if (!MergesFollowRows(MergedAreas(file_->markup(sheet_id)), area)) {
    Refuse("To do this, all the merged cells need to be the same size.");
  }
}

void OpenWorkbook::Sort(int sheet_id, const Area& whole_area, int key1_column, int key2_column) {
  Area area = whole_area;
  area.last_row = std::clamp(UsedRange(sheet_id).last_row, area.first_row, area.last_row);
  RefuseSorting(sheet_id, area);
  if (HasHeader(sheet_id, area)) ++area.first_row;

  const RowTable& formats = sheet(sheet_id).rows;
  std::vector<SortRow> sorted;
  for (int row = area.first_row; row <= area.last_row; ++row) {
    // Hidden rows keep their place.
    if (formats.Of(row).hidden) continue;
    sorted.push_back({row, SortKey(Read(sheet_id, {row, key1_column})),
                      SortKey(Read(sheet_id, {row, key2_column}))});
  }
  std::vector<int> places;
  for (const SortRow& row : sorted) places.push_back(row.row);
  std::stable_sort(sorted.begin(), sorted.end(), [](const SortRow& a, const SortRow& b) {
    const int order = a.key1.Compare(b.key1);
    return (order != 0 ? order : a.key2.Compare(b.key2)) < 0;
  });
  RowMoves moves{.area = area, .rows = {}};
  for (std::size_t i = 0; i < sorted.size(); ++i) {
    if (sorted[i].row != places[i]) moves.rows.emplace(sorted[i].row, places[i]);
  }
  if (!moves.rows.empty()) MoveRows(sheet_id, moves);
}

void OpenWorkbook::MoveRows(int sheet_id, const RowMoves& moves) {
  const Area& area = moves.area;
  for (int column = area.first_column; column <= area.last_column; ++column) {
    MoveCells(sheet_id, column, moves);
  }
  calculator_.Changed(sheet_id, area);
  DropPlainCells(sheet_id, area);
  MoveHyperlinks(file_->markup(sheet_id), moves);
  Comments(sheet_id).MoveRows(moves);
}

void OpenWorkbook::MoveCells(int sheet_id, int column, const RowMoves& moves) {
  struct Moved {
    CellAddress from;
    CellAddress to;
    Cell cell;
    StyleId style;
  };
  SheetModel& target = sheet(sheet_id);
  StyleEditor& styles = file_->style_editor();
  std::vector<Moved> cells;
  for (const auto& [from_row, to_row] : moves.rows) {
    const CellAddress from{from_row, column};
    const CellAddress to{to_row, column};
    // Borders stay where they are.
    cells.push_back({from, to, target.cells.Get(from),
                     styles.WithBorderOf(target.StyleOf(from), target.StyleOf(to))});
  }
  for (const Moved& moved : cells) {
    if (!moved.cell.exists() && !target.cells.Exists(moved.to) &&
        target.StyleOf(moved.to) == moved.style) {
      continue;
    }
    target.cells.SetStyle(moved.to, moved.style);
    if (moved.cell.formula == 0) {
      target.cells.SetConstant(moved.to,
                               moved.cell.exists() ? moved.cell.value : CellValue::Blank());
      continue;
    }
    auto relocated = RelocateForPaste(target.formulas[moved.cell.formula], moved.from, moved.to);
    target.cells.SetFormula(
        moved.to, relocated ? target.formulas.Intern(std::move(*relocated)) : moved.cell.formula);
    target.cells.SetValue(moved.to, moved.cell.value);
  }
}

}  // namespace vantora::embedded
