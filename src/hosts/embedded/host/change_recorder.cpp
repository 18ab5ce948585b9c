#include "host/change_recorder.h"

#include <algorithm>
#include <charconv>
#include <span>

#include "formula/lexical.h"
#include "formula/sheet_prefix.h"
#include "host/column_formats.h"
#include "package/column_width.h"

namespace vantora::embedded {

std::string DisplayValue(const CellValue& value, const StringPool& strings) {
  switch (value.kind) {
    case CellKind::kNumber: {
      char digits[32];
      auto [end, error] = std::to_chars(digits, digits + sizeof digits, value.number);
      return error == std::errc() ? std::string(digits, end) : std::string();
    }
    case CellKind::kText:
      return strings[value.text];
    case CellKind::kBoolean:
      return value.boolean ? "TRUE" : "FALSE";
    case CellKind::kError:
      return std::string(NameOfError(value.error));
    default:
      return "";
  }
}

ChangeRecorder::ChangeRecorder(OpenWorkbook& workbook)
    : workbook_(workbook),
      state_(workbook),
      insertions_then_(workbook.insertions().size()),
      notes_then_(workbook.notes().size()) {
  for (const auto& sheet : workbook.model().sheets) {
    then_.push_back(sheet->cells.Clone());
    columns_then_.push_back(sheet->column_formats);
    row_styles_then_.push_back(sheet->row_styles);
  }
}

std::optional<int> ChangeRecorder::ColumnThen(int sheet, int column_now) const {
  const auto& insertions = workbook_.insertions();
  int column = column_now;
  for (std::size_t index = insertions.size(); index-- > insertions_then_;) {
    const ColumnInsertion& insertion = insertions[index];
    if (insertion.sheet != sheet || column < insertion.column) continue;
    if (column < insertion.column + insertion.count) return std::nullopt;
    column -= insertion.count;
  }
  return column;
}

bool ChangeRecorder::OnlyFollowed(int sheet, FormulaId then, FormulaId now,
                                  CellAddress cell) const {
  SheetModel& model = workbook_.sheet(sheet);
  Formula formula = model.formulas[then];
  for (const ColumnInsertion& insertion :
       std::span(workbook_.insertions()).subspan(insertions_then_)) {
    CellAddress before = cell;
    if (insertion.sheet == sheet && cell.column >= insertion.column) cell.column += insertion.count;
    if (auto followed = FollowInsertion(formula, sheet, before, cell, insertion)) {
      formula = std::move(*followed);
    }
  }
  const Formula& current = model.formulas[now];
  return formula.text == current.text && formula.references == current.references;
}

std::string ChangeRecorder::Display(int sheet, const Cell& cell, CellAddress at) const {
  if (cell.formula != 0) {
    return "=" + FormulaText(workbook_.sheet(sheet).formulas[cell.formula], at, workbook_.model());
  }
  return DisplayValue(cell.value, workbook_.model().strings);
}

void ChangeRecorder::AddSheetChanges(int sheet, ChangeList& list, std::size_t& new_results) const {
  const SheetModel& model = workbook_.sheet(sheet);
  // A sheet that has come since had no cells.
  static const CellStore kNoCells;
  const CellStore& then = sheet < static_cast<int>(then_.size()) ? then_[sheet] : kNoCells;
  std::vector<CellChange> changes;
  auto add = [&](CellAddress now, CellAddress before, const Cell& old_cell, const Cell& new_cell) {
    std::string old_text = Display(sheet, old_cell, before);
    std::string new_text = Display(sheet, new_cell, now);
    if (old_text != new_text) changes.push_back({model.name, now, old_text, new_text});
  };
  for (int column = 1; column <= model.cells.LastColumn(); ++column) {
    auto column_then = ColumnThen(sheet, column);
    model.cells.ForEachInColumn(column, 1, kMaxRow, [&](int row, const Cell& cell) {
      if (!(cell.flags & (kValueChanged | kFormulaChanged))) return;
      CellAddress before{row, column_then.value_or(column)};
      Cell old_cell = column_then ? then.Get(before) : Cell{};
      if (cell.formula != 0 && old_cell.formula != 0 &&
          (cell.formula == old_cell.formula ||
           OnlyFollowed(sheet, old_cell.formula, cell.formula, before))) {
        if (!(cell.value == old_cell.value)) ++new_results;
        return;
      }
      add({row, column}, before, old_cell, cell);
    });
    if (!column_then) continue;
    then.ForEachInColumn(*column_then, 1, kMaxRow, [&](int row, const Cell& old_cell) {
      CellAddress now{row, column};
      if (!model.cells.Exists(now)) add(now, {row, *column_then}, old_cell, Cell{});
    });
  }
  std::sort(changes.begin(), changes.end(),
            [](const CellChange& a, const CellChange& b) { return a.cell < b.cell; });
  std::move(changes.begin(), changes.end(), std::back_inserter(list.cells));
}

void ChangeRecorder::AddColumnChanges(int sheet, ChangeList& list) const {
  // A sheet that was added since is new as a whole.
  if (static_cast<std::size_t>(sheet) >= columns_then_.size()) return;
  const std::vector<ColumnFormat>& then = columns_then_[sheet];
  const std::vector<ColumnFormat>& now = workbook_.sheet(sheet).column_formats;
  AddColumnRuns(sheet, list, [&](int before, int after) -> std::string_view {
    const bool hidden = IsColumnHidden(now, after);
    if (IsColumnHidden(then, before) == hidden) return "";
    return hidden ? "columns hidden at " : "columns shown at ";
  });
  const double default_width =
      DefaultColumnWidth(workbook_.file().markup(sheet), workbook_.model().styles.max_digit_width);
  AddColumnRuns(sheet, list, [&](int before, int after) -> std::string_view {
    const double width_then = WidthOfColumn(then, before, default_width);
    const double width_now = WidthOfColumn(now, after, default_width);
    // A column without width is hidden, which is told.
    const bool differs = width_then != width_now && width_then != 0 && width_now != 0;
    return differs ? "column widths changed at " : "";
  });
  const auto style_of = [](const std::vector<ColumnFormat>& runs, int column) {
    const ColumnFormat* run = FormatOfColumn(runs, column);
    return run ? run->style : StyleId{0};
  };
  AddColumnRuns(sheet, list, [&](int before, int after) -> std::string_view {
    return style_of(then, before) != style_of(now, after) ? "formats of columns changed at " : "";
  });
}

template <typename What>
void ChangeRecorder::AddColumnRuns(int sheet, ChangeList& list, What what) const {
  const std::vector<ColumnFormat>& then = columns_then_[sheet];
  const std::vector<ColumnFormat>& now = workbook_.sheet(sheet).column_formats;
  const int last_then = then.empty() ? 0 : then.back().last;
  const int last_now = now.empty() ? 0 : now.back().last;
  int first = 0;
  std::string_view word;
  for (int column = 1; column <= std::max(last_then, last_now) + 1; ++column) {
    const std::optional<int> before = ColumnThen(sheet, column);
    const std::string_view word_here = before ? what(*before, column) : "";
    if (word_here == word) continue;
    if (!word.empty()) {
      std::string place;
      AppendSheetPrefix(place, sheet, sheet, workbook_.model());
      place += ColumnLetters(first) + ":" + ColumnLetters(column - 1);
      list.others.push_back(std::string(word) + place);
    }
    first = column;
    word = word_here;
  }
}

StyleId ChangeRecorder::StyleThen(int sheet, CellAddress cell) const {
  if (const Cell then = then_[sheet].Get(cell); then.exists()) return then.style;
  const auto row = row_styles_then_[sheet].find(cell.row);
  if (row != row_styles_then_[sheet].end()) return row->second;
  const ColumnFormat* column = FormatOfColumn(columns_then_[sheet], cell.column);
  return column ? column->style : 0;
}

void ChangeRecorder::AddFormatChanges(int sheet, ChangeList& list) const {
  const SheetModel& model = workbook_.sheet(sheet);
  if (static_cast<std::size_t>(sheet) >= then_.size()) return;
  std::size_t count = 0;
  Area within{.first_row = kMaxRow, .first_column = kMaxColumn, .last_row = 1, .last_column = 1};
  const auto look = [&](CellAddress cell, CellAddress before) {
    if (model.StyleOf(cell) == StyleThen(sheet, before)) return;
    ++count;
    within = {std::min(within.first_row, cell.row), std::min(within.first_column, cell.column),
              std::max(within.last_row, cell.row), std::max(within.last_column, cell.column)};
  };
  const int last_column = std::max(model.cells.LastColumn(), then_[sheet].LastColumn() + 1);
  for (int column = 1; column <= last_column; ++column) {
    const std::optional<int> before = ColumnThen(sheet, column);
    if (!before) continue;
    model.cells.ForEachInColumn(column, 1, kMaxRow, [&](int row, const Cell& cell) {
      if (cell.flags & kStyleChanged) look({row, column}, {row, *before});
    });
    then_[sheet].ForEachInColumn(*before, 1, kMaxRow, [&](int row, const Cell&) {
      if (!model.cells.Exists({row, column})) look({row, column}, {row, *before});
    });
  }
  if (count == 0) return;
  std::string place;
  AppendSheetPrefix(place, sheet, sheet, workbook_.model());
  place += ToA1(within);
  list.others.push_back(count == 1 ? "format changed at " + place
                                   : "formats of " + std::to_string(count) +
                                         " cells changed within " + place);
}

ChangeList ChangeRecorder::Changes() const {
  ChangeList list;
  const auto& insertions = workbook_.insertions();
  for (std::size_t index = insertions_then_; index < insertions.size(); ++index) {
    int column = insertions[index].column;
    for (std::size_t later = index + 1; later < insertions.size(); ++later) {
      if (insertions[later].sheet == insertions[index].sheet &&
          insertions[later].column <= column) {
        column += insertions[later].count;
      }
    }
    list.inserted.push_back(
        {workbook_.sheet(insertions[index].sheet).name, column, insertions[index].count});
  }
  std::size_t new_results = 0;
  for (int sheet : workbook_.model().tab_order) AddSheetChanges(sheet, list, new_results);
  list.others.assign(workbook_.notes().begin() + static_cast<std::ptrdiff_t>(notes_then_),
                     workbook_.notes().end());
  for (int sheet : workbook_.model().tab_order) {
    AddColumnChanges(sheet, list);
    AddFormatChanges(sheet, list);
  }
  std::ranges::move(state_.Changes(), std::back_inserter(list.others));
  if (new_results > 0) {
    list.others.push_back(std::to_string(new_results) + " formulas have new results");
  }
  return list;
}

}  // namespace vantora::embedded
