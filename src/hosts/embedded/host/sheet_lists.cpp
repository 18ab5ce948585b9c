// Listing an open workbook's names, and calling routines of its sheets.
#include <algorithm>
#include <array>

#include "core/convert.h"
#include "core/model_layout.h"
#include "host/open_workbook.h"
#include "host/text_order.h"

namespace vantora::embedded {
namespace {

// What the model's workbook offers in the code module of its Reference Sheet.
constexpr std::array<std::string_view, 2> kModelRoutines = {model::kResetKeySortButtons,
                                                            model::kResetNamesSortButtons};
constexpr std::string_view kBuiltInPrefix = "_xlnm.";

std::string ShownName(const DefinedName& name) {
  std::string_view shown = name.name;
  if (shown.starts_with(kBuiltInPrefix)) shown.remove_prefix(kBuiltInPrefix.size());
  return std::string(shown);
}

}  // namespace

void OpenWorkbook::ListNames(int sheet_id, CellAddress cell) {
  struct Line {
    TextOrder order;
    const DefinedName* name;
  };
  std::vector<Line> lines;
  for (const DefinedName& name : model().names) {
    if (name.is_hidden || (name.scope >= 0 && name.scope != sheet_id)) continue;
    // A name of the sheet's own hides the workbook's of the same name.
    if (model().FindName(name.name, sheet_id) != &name) continue;
    lines.push_back({TextOrder(ShownName(name)), &name});
  }
  if (lines.empty()) return;
  std::stable_sort(lines.begin(), lines.end(),
                   [](const Line& a, const Line& b) { return a.order.Compare(b.order) < 0; });
  const Area area{cell.row, cell.column, cell.row + static_cast<int>(lines.size()) - 1,
                  cell.column + 1};
  if (area.last_row > kMaxRow || area.last_column > kMaxColumn) {
    Refuse("ListNames method of Range class failed: the list does not fit on the sheet.");
  }
  PrepareContents(sheet_id, area);
  int row = cell.row;
  for (const Line& line : lines) {
    PutPlainText(sheet_id, {row, cell.column}, ShownName(*line.name));
    PutPlainText(sheet_id, {row, cell.column + 1}, "=" + line.name->refers_to);
    ++row;
  }
  ContentsChanged(sheet_id, area);
}

void OpenWorkbook::PutPlainText(int sheet_id, CellAddress cell, const std::string& text) {
  SheetModel& target = sheet(sheet_id);
  const StyleId style = target.StyleOf(cell);
  target.cells.SetConstant(cell, CellValue::Text(model().strings.Intern(text)));
  target.cells.SetStyle(cell, style);
}

void OpenWorkbook::CallSheetRoutine(std::string_view routine) {
  const auto is_routine = [&](std::string_view known) { return EqualsIgnoreCase(known, routine); };
  // No macro runs here: the routines that the model's workbook offers only change how its buttons
  // look.
  if (file_->has_macros() &&
      std::any_of(kModelRoutines.begin(), kModelRoutines.end(), is_routine)) {
    return;
  }
  if (std::any_of(sheet_routines_.begin(), sheet_routines_.end(), is_routine)) {
    skipped_routines_.emplace_back(routine);
    return;
  }
  throw HostError(HostError::kMemberNotSupported,
                  "Object doesn't support this property or method: the workbook has no routine \"" +
                      std::string(routine) + "\" in the sheet's code module.");
}

}  // namespace vantora::embedded
