#include "host/open_workbook.h"

#include <algorithm>

#include "core/convert.h"
#include "core/host.h"
#include "formula/evaluate.h"
#include "formula/sheet_prefix.h"
#include "host/column_formats.h"
#include "host/pivot_areas.h"
#include "package/sheet_features.h"

namespace vantora::embedded {

namespace {

constexpr const char* kProtectedSheet =
    "The cell or chart you're trying to change is on a protected sheet. To make a change, "
    "unprotect "
    "the sheet.";
constexpr const char* kNoRoomForColumns =
    "Microsoft Excel can't insert new cells because it would push non-empty cells off the end of "
    "the "
    "worksheet.";

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

// Whether a put of the value empties a cell.
bool Empties(const Value& value) {
  return value.IsEmpty() || (value.IsText() && value.AsText().empty());
}

// A cell that comes into being takes its row's or column's format along.
void KeepFormatOf(SheetModel& sheet, CellAddress cell) {
  if (!sheet.cells.Exists(cell)) sheet.cells.SetStyle(cell, sheet.StyleOf(cell));
}

// The rows and columns of the area that can hold anything: what lies beyond the cells in use of
// both areas needs no visit.
Area Clip(const Area& area, int last_row, int last_column) {
  Area clipped = area;
  clipped.last_row = std::min(area.last_row, std::max(last_row, area.first_row));
  clipped.last_column = std::min(area.last_column, std::max(last_column, area.first_column));
  return clipped;
}

}  // namespace

OpenWorkbook::OpenWorkbook(std::unique_ptr<WorkbookFile> file)
    : file_(std::move(file)),
      calculator_(file_->model()),
      windows_(*file_),
      names_(file_->model(), calculator_) {}

void OpenWorkbook::Refuse(const std::string& text) {
  throw HostError(HostError::kApplicationDefined, text);
}

std::string OpenWorkbook::Describe(int sheet_id, const Area& area) {
  std::string text;
  AppendSheetPrefix(text, sheet_id, sheet_id, model());
  return text + ToA1(area);
}

void OpenWorkbook::RefuseOnProtectedSheet(int sheet_id, const Area& area) {
  SheetModel& target = sheet(sheet_id);
  if (!target.is_protected) return;
  // The formats decide, cell by cell; a cell that was never touched has its row's or column's.
  Area used = target.cells.UsedArea().value_or(Area{});
  Area checked = Clip(area, used.last_row + 1, used.last_column + 1);
  for (int column = checked.first_column; column <= checked.last_column; ++column) {
    for (int row = checked.first_row; row <= checked.last_row; ++row) {
      if (model().styles[target.StyleOf({row, column})].locked) Refuse(kProtectedSheet);
    }
  }
}

void OpenWorkbook::RefusePartOfArray(int sheet_id, const Area& area) {
  for (const ArrayFormula& array : sheet(sheet_id).arrays) {
    bool whole = area.Contains({array.area.first_row, array.area.first_column}) &&
                 area.Contains({array.area.last_row, array.area.last_column});
    if (area.Intersects(array.area) && !whole) Refuse("You can't change part of an array.");
  }
}

void OpenWorkbook::RefusePartOfMerge(int sheet_id, const Area& area) {
  for (const Area& merged : features_.MergedAreas(sheet_id, file_->markup(sheet_id))) {
    bool whole = area.Contains({merged.first_row, merged.first_column}) &&
                 area.Contains({merged.last_row, merged.last_column});
    if (area.Intersects(merged) && !whole) {
      Refuse("We can't do that to a merged cell: " + Describe(sheet_id, merged) + ".");
    }
  }
}

Value OpenWorkbook::Read(int sheet_id, CellAddress cell) {
  SheetModel& target = sheet(sheet_id);
  Cell stored = target.cells.Get(cell);
  // A formula may wait for changed names without being marked yet.
  if (stored.formula != 0 || (stored.flags & (kNeedsCalculation | kStale))) {
    // While calculation is manual, what needs it still has the value that it had.
    if (model().manual_calculation ? (stored.flags & kStale) != 0
                                   : !calculator_.EnsureCalculated(sheet_id, cell)) {
      Refuse("The value of " + Describe(sheet_id, {cell.row, cell.column, cell.row, cell.column}) +
             " is out of date: " + calculator_.ReasonFor(sheet_id, cell) +
             ". Open the workbook in Excel, let it calculate, save it, and run this again.");
    }
    stored = target.cells.Get(cell);
  }
  switch (stored.value.kind) {
    case CellKind::kNumber:
      return Value(stored.value.number);
    case CellKind::kText:
      return Value(model().strings[stored.value.text]);
    case CellKind::kBoolean:
      return Value(stored.value.boolean);
    case CellKind::kError:
      return Value(stored.value.error);
    default:
      return Value();
  }
}

void OpenWorkbook::ClearCell(int sheet_id, CellAddress cell) {
  CellStore& cells = sheet(sheet_id).cells;
  if (cells.Exists(cell)) cells.SetConstant(cell, CellValue::Blank());
}

void OpenWorkbook::PutText(int sheet_id, CellAddress cell, const std::string& text) {
  SheetModel& target = sheet(sheet_id);
  if (model().styles[target.StyleOf(cell)].text_format) {
    target.cells.SetConstant(cell, CellValue::Text(model().strings.Intern(text)));
  } else if (IsEnteredAsFormula(sheet_id, cell, text)) {
    Formula formula = EnteredFormula(sheet_id, cell, text);
    target.cells.SetConstant(cell, CellValue::Blank());
    target.cells.SetFormula(cell, target.formulas.Intern(std::move(formula)));
  } else if (text.front() == '\'') {
    target.cells.SetConstant(
        cell, CellValue::Text(model().strings.Intern(std::string_view(text).substr(1))));
  } else {
    target.cells.SetConstant(cell, ValueFromEnteredText(model(), text));
  }
}

void OpenWorkbook::PutValue(int sheet_id, CellAddress cell, const Value& value) {
  if (Empties(value)) {
    ClearCell(sheet_id, cell);
    return;
  }
  CellStore& cells = sheet(sheet_id).cells;
  KeepFormatOf(sheet(sheet_id), cell);
  if (value.IsText()) {
    PutText(sheet_id, cell, value.AsText());
  } else if (value.IsNumber()) {
    cells.SetConstant(cell, CellValue::Number(value.AsNumber()));
  } else if (value.IsBoolean()) {
    cells.SetConstant(cell, CellValue::Boolean(value.AsBoolean()));
  } else {
    cells.SetConstant(cell, CellValue::Error(value.AsError()));
  }
}

void OpenWorkbook::Put(int sheet_id, const Area& area, const Value& value) {
  if (value.IsText() &&
      IsEnteredAsFormula(sheet_id, {area.first_row, area.first_column}, value.AsText())) {
    return PutFormula(sheet_id, area, value.AsText());
  }
  const bool is_one_cell = area.rows() == 1 && area.columns() == 1;
  const bool holds_nothing =
      !sheet(sheet_id).cells.Get({area.first_row, area.first_column}).has_content();
  PrepareContents(sheet_id, area);
  // Emptying what is empty, as clearing all data mostly does, makes nothing out of date.
  if (is_one_cell && holds_nothing && Empties(value) && sheet(sheet_id).arrays.empty()) return;
  for (int row = area.first_row; row <= area.last_row; ++row) {
    for (int column = area.first_column; column <= area.last_column; ++column) {
      PutValue(sheet_id, {row, column}, value);
    }
  }
  ContentsChanged(sheet_id, area);
}

int OpenWorkbook::FillColorIndex(int sheet_id, CellAddress cell) {
  return model().styles[sheet(sheet_id).StyleOf(cell)].fill_color_index;
}

Area OpenWorkbook::UsedRange(int sheet_id) {
  SheetModel& target = sheet(sheet_id);
  Area used = target.cells.UsedArea().value_or(Area{});
  if (!target.row_styles.empty()) {
    used.first_row = std::min(used.first_row, target.row_styles.begin()->first);
    used.last_row = std::max(used.last_row, target.row_styles.rbegin()->first);
  }
  return used;
}

void OpenWorkbook::InsertColumns(int sheet_id, int column, int count) {
  SheetModel& target = sheet(sheet_id);
  if (target.is_protected) Refuse(kProtectedSheet);
  if (auto used = target.cells.UsedArea();
      used && used->last_column >= column && used->last_column > kMaxColumn - count) {
    Refuse(kNoRoomForColumns);
  }
  for (const ArrayFormula& array : target.arrays) {
    if (array.area.first_column < column && column <= array.area.last_column) {
      Refuse("You can't change part of an array.");
    }
  }
  file_->FollowInsertions(sheet_id);
  for (const Area& pivot : PivotAreas(file_->package(), file_->part_of(sheet_id))) {
    if (pivot.first_column < column && column <= pivot.last_column) {
      Refuse(
          "We can't make this change for the selected cells because it will affect a PivotTable.");
    }
  }
  ColumnInsertion insertion{sheet_id, column, count};
  calculator_.InsertColumns(insertion);
  commented_cells_.clear();
  names_.Forget();
  file_->AddInsertion(insertion);
  insertions_.push_back(insertion);
}

void OpenWorkbook::ClearFormats(int sheet_id, const Area& area) {
  RefuseOnProtectedSheet(sheet_id, area);
  SheetModel& target = sheet(sheet_id);
  int last_column = std::min(area.last_column, target.cells.LastColumn());
  for (int column = area.first_column; column <= last_column; ++column) {
    target.cells.ForEachInColumn(column, area.first_row, area.last_row, [&](int row, const Cell&) {
      target.cells.SetStyle({row, column}, 0);
    });
    // Rows with a format of their own would show through.
    for (auto row = target.row_styles.lower_bound(area.first_row);
         row != target.row_styles.end() && row->first <= area.last_row; ++row) {
      target.cells.SetStyle({row->first, column}, 0);
    }
  }
  if (area.IsWholeColumns()) SetColumnStyle(target, area.first_column, area.last_column, 0);
  file_->FollowInsertions(sheet_id);
  ClearFeatures(file_->markup(sheet_id), area, kConditionalFormats);
}

void OpenWorkbook::PasteCell(SheetModel& target, const Cell& source, CellAddress from,
                             CellAddress to, unsigned parts) {
  if (parts & (kPasteFormulas | kPasteValues)) {
    if (source.has_content()) KeepFormatOf(target, to);
    if ((parts & kPasteFormulas) && source.formula != 0) {
      auto relocated = RelocateForPaste(target.formulas[source.formula], from, to);
      FormulaId formula =
          relocated ? target.formulas.Intern(std::move(*relocated)) : source.formula;
      target.cells.SetFormula(to, formula);
      target.cells.SetValue(to, source.value);
    } else if (source.has_content() || target.cells.Exists(to)) {
      target.cells.SetConstant(to, source.exists() ? source.value : CellValue::Blank());
    }
  }
  if (parts & kPasteFormats) {
    StyleId style = target.StyleOf(from);
    if (target.StyleOf(to) != style) target.cells.SetStyle(to, style);
  }
}

void OpenWorkbook::PasteCells(SheetModel& target, const Area& from, const Area& to,
                              unsigned parts) {
  int rows = from.rows();
  // What lies beyond the cells in use of both areas needs no visit.
  if (rows > CellStore::kBlockRows) {
    const int last_used = UsedRange(target.id).last_row;
    rows = std::min(rows, std::max(last_used - from.first_row, last_used - to.first_row) + 1);
  }
  // Overlapping areas: columns and rows are taken in the order in which no cell is overwritten
  // unread.
  bool rightward = to.first_column > from.first_column;
  bool downward = to.first_row > from.first_row;
  for (int step = 0; step < from.columns(); ++step) {
    int index = rightward ? from.columns() - 1 - step : step;
    int source_column = from.first_column + index;
    int target_column = to.first_column + index;
    for (int row_step = 0; row_step < rows; ++row_step) {
      const int offset = downward ? rows - 1 - row_step : row_step;
      CellAddress source{from.first_row + offset, source_column};
      CellAddress destination{to.first_row + offset, target_column};
      PasteCell(target, target.cells.Get(source), source, destination, parts);
    }
  }
}

void OpenWorkbook::PasteColumnFormats(SheetModel& target, const Area& from, const Area& to) {
  for (int index = 0; index < from.columns(); ++index) {
    CopyColumnFormat(target, from.first_column + index, to.first_column + index);
  }
}

void OpenWorkbook::Paste(int sheet_id, const Area& from, const Area& to, unsigned parts) {
  SheetModel& target = sheet(sheet_id);
  RefuseOnProtectedSheet(sheet_id, to);
  RefusePartOfArray(sheet_id, to);
  RefusePartOfMerge(sheet_id, to);
  if (parts & kPasteValues) {
    for (int column = from.first_column; column <= from.last_column; ++column) {
      target.cells.ForEachInColumn(column, from.first_row, from.last_row,
                                   [&](int row, const Cell&) {
                                     Read(sheet_id, {row, column});
                                   });
    }
  }
  if (parts & (kPasteFormulas | kPasteValues)) ForgetArrays(sheet_id, to);
  file_->FollowInsertions(sheet_id);
  PasteCells(target, from, to, parts);
  if ((parts & kPasteFormats) && from.IsWholeColumns()) PasteColumnFormats(target, from, to);
  unsigned features = 0;
  if (parts & kPasteFormats) features |= kConditionalFormats | kMergedCells;
  if (parts & kPasteValidations) features |= kValidations;
  if (parts & kPasteHyperlinks) features |= kHyperlinks;
  if (features && features_.TouchedBy(sheet_id, file_->markup(sheet_id), {from, to})) {
    PasteFeatures(file_->markup(sheet_id), from, to, features);
  }
  if ((parts & kPasteComments) && HasCommentsIn(sheet_id, {from, to})) {
    Comments(sheet_id).Paste(from, to);
  }
  if (parts & (kPasteFormulas | kPasteValues)) calculator_.Changed(sheet_id, to);
}

SheetComments OpenWorkbook::Comments(int sheet_id) {
  file_->FollowInsertions(sheet_id);
  commented_cells_.erase(sheet_id);
  return SheetComments(file_->package(), file_->markup(sheet_id), file_->part_of(sheet_id));
}

void OpenWorkbook::AddComment(int sheet_id, CellAddress cell) {
  if (sheet(sheet_id).is_protected) Refuse(kProtectedSheet);
  Area area{cell.row, cell.column, cell.row, cell.column};
  SheetComments comments = Comments(sheet_id);
  if (comments.Has(cell)) Refuse(Describe(sheet_id, area) + " already has a comment.");
  comments.Add(cell);
  notes_.push_back("comment added at " + Describe(sheet_id, area));
}

void OpenWorkbook::SetCommentText(int sheet_id, CellAddress cell, std::string_view text) {
  Comments(sheet_id).SetText(cell, text);
}

void OpenWorkbook::SetCommentVisible(int sheet_id, CellAddress cell, bool visible) {
  Comments(sheet_id).SetVisible(cell, visible);
}

void OpenWorkbook::Activate(int sheet_id) {
  if (sheet(sheet_id).visibility != Visibility::kVisible) {
    Refuse("Activate method of Worksheet class failed: the sheet \"" + sheet(sheet_id).name +
           "\" is hidden.");
  }
  windows_.active().active_sheet = sheet_id;
}

std::vector<Area> OpenWorkbook::SelectedAreas(int sheet_id) {
  return windows_.View(windows_.active(), sheet_id).selection;
}

void OpenWorkbook::SelectAreas(int sheet_id, std::vector<Area> areas) {
  SheetView& view = windows_.View(windows_.active(), sheet_id);
  view.active_cell = {areas.front().first_row, areas.front().first_column};
  view.selection = std::move(areas);
}

void OpenWorkbook::ActivateCell(int sheet_id, const Area& area) {
  SheetView& view = windows_.View(windows_.active(), sheet_id);
  const CellAddress cell{area.first_row, area.first_column};
  if (std::any_of(view.selection.begin(), view.selection.end(),
                  [&](const Area& selected) { return selected.Contains(cell); })) {
    view.active_cell = cell;
  } else {
    Select(sheet_id, area);
  }
}

void OpenWorkbook::SetVisibility(int sheet_id, Visibility visibility) {
  static constexpr const char* kRefused =
      "Unable to set the Visible property of the Worksheet class: ";
  SheetModel& target = sheet(sheet_id);
  if (target.visibility == visibility) return;
  if (model().structure_is_protected) {
    Refuse(std::string(kRefused) + "the structure of the workbook is protected.");
  }
  if (visibility != Visibility::kVisible && target.visibility == Visibility::kVisible) {
    const std::optional<int> neighbour = VisibleNeighbour(sheet_id);
    if (!neighbour) {
      Refuse(kRefused + Quoted(target.name) + " is the last visible sheet, and one must stay.");
    }
    windows_.Leave(sheet_id, *neighbour);
  }
  target.visibility = visibility;
}

std::optional<int> OpenWorkbook::VisibleNeighbour(int sheet_id) {
  const std::vector<int>& tabs = model().tab_order;
  auto is_visible = [&](int id) { return sheet(id).visibility == Visibility::kVisible; };
  const auto own = std::find(tabs.begin(), tabs.end(), sheet_id);
  if (auto right = std::find_if(own + 1, tabs.end(), is_visible); right != tabs.end()) {
    return *right;
  }
  const auto left = std::find_if(std::make_reverse_iterator(own), tabs.rend(), is_visible);
  return left == tabs.rend() ? std::nullopt : std::optional(*left);
}

bool OpenWorkbook::DefineName(std::string_view name, std::string_view refers_to_r1c1) {
  if (model().FindTable(name)) return false;
  return names_.Define(name, refers_to_r1c1, active_sheet());
}

std::vector<Uncalculated> OpenWorkbook::Calculate() {
  const TableMatches tables = file_->MatchTables();
  if (tables.names_changed) calculator_.NamesChanged();
  for (const auto& [sheet_id, cells] : tables.formulas) calculator_.Changed(sheet_id, cells);
  for (auto [sheet_id, header] : tables.headers) {
    calculator_.Changed(sheet_id, {header.row, header.column, header.row, header.column});
  }
  calculator_.CalculateAll();
  return calculator_.Uncalculable();
}

std::unique_ptr<ReplacementFile> OpenWorkbook::WriteBeside(const std::filesystem::path& path) {
  if (!Calculate().empty()) file_->RequestCalculationOnOpening();
  windows_.Write();
  return file_->WriteBeside(path);
}

}  // namespace vantora::embedded
