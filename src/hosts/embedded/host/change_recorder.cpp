#include "host/change_recorder.h"

#include <algorithm>
#include <charconv>
#include <set>
#include <span>

#include "formula/sheet_prefix.h"
#include "host/column_formats.h"
#include "host/row_edits.h"

namespace vantora::embedded {

namespace {

std::string ErrorText(CellError error) {
  switch (error) {
    case CellError::kNull:
      return "#NULL!";
    case CellError::kDiv0:
      return "#DIV/0!";
    case CellError::kValue:
      return "#VALUE!";
    case CellError::kRef:
      return "#REF!";
    case CellError::kName:
      return "#NAME?";
    case CellError::kNum:
      return "#NUM!";
    case CellError::kNotAvailable:
      return "#N/A";
  }
  return "#UNKNOWN!";
}

}  // namespace

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
      return ErrorText(value.error);
    default:
      return "";
  }
}

ChangeRecorder::ChangeRecorder(OpenWorkbook& workbook)
    : workbook_(workbook),
      insertions_then_(workbook.insertions().size()),
      notes_then_(workbook.notes().size()) {
  for (const auto& sheet : workbook.model().sheets) {
    then_.push_back(sheet->cells.Clone());
    columns_then_.push_back(sheet->column_formats);
    rows_then_.push_back(sheet->rows);
    protected_then_.push_back(sheet->is_protected);
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

void ChangeRecorder::AddHidingChanges(int sheet, ChangeList& list) const {
  std::string prefix;
  AppendSheetPrefix(prefix, sheet, sheet, workbook_.model());
  for (const Run& run : ChangedColumns(sheet)) {
    const std::string place = ColumnLetters(run.first) + ":" + ColumnLetters(run.last);
    list.others.push_back((run.hidden ? "columns hidden at " : "columns shown at ") + prefix +
                          place);
  }
  for (const Run& run : ChangedRows(sheet)) {
    const std::string place = std::to_string(run.first) + ":" + std::to_string(run.last);
    list.others.push_back((run.hidden ? "rows hidden at " : "rows shown at ") + prefix + place);
  }
}

std::vector<ChangeRecorder::Run> ChangeRecorder::ChangedColumns(int sheet) const {
  const SheetModel& model = workbook_.sheet(sheet);
  const std::vector<ColumnFormat>& then = columns_then_[sheet];
  const int last_then = then.empty() ? 0 : then.back().last;
  const int last_now = model.column_formats.empty() ? 0 : model.column_formats.back().last;
  std::vector<Run> runs;
  for (int column = 1; column <= std::max(last_then, last_now); ++column) {
    const std::optional<int> before = ColumnThen(sheet, column);
    const bool hidden = IsColumnHidden(model, column);
    if (before && IsColumnHidden(then, *before) != hidden) Extend(runs, column, hidden);
  }
  return runs;
}

std::vector<ChangeRecorder::Run> ChangeRecorder::ChangedRows(int sheet) const {
  const SheetModel& model = workbook_.sheet(sheet);
  const RowTable& then = rows_then_[sheet];
  std::set<int> formatted;
  for (const RowTable* table : {&then, &model.rows}) {
    for (const RowTable::Entry& entry : table->entries()) formatted.insert(entry.row);
  }
  std::vector<Run> runs;
  for (int row : formatted) {
    const bool hidden = RowHeight(model, model.rows.Of(row)) == 0;
    if ((RowHeight(model, then.Of(row)) == 0) != hidden) Extend(runs, row, hidden);
  }
  return runs;
}

void ChangeRecorder::Extend(std::vector<Run>& runs, int at, bool hidden) {
  if (!runs.empty() && runs.back().last + 1 == at && runs.back().hidden == hidden) {
    runs.back().last = at;
  } else {
    runs.push_back({at, at, hidden});
  }
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
    // A sheet that was added since is new as a whole.
    if (static_cast<std::size_t>(sheet) >= then_.size()) continue;
    AddHidingChanges(sheet, list);
    const SheetModel& model = workbook_.sheet(sheet);
    if (model.is_protected == protected_then_[sheet]) continue;
    list.others.push_back("worksheet \"" + model.name + "\" " +
                          (model.is_protected ? "protected" : "unprotected"));
  }
  if (new_results > 0) {
    list.others.push_back(std::to_string(new_results) + " formulas have new results");
  }
  return list;
}

}  // namespace vantora::embedded
