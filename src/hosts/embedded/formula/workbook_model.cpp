#include "formula/workbook_model.h"

#include <algorithm>

#include "core/convert.h"

namespace vantora::embedded {

StyleId SheetModel::StyleOf(CellAddress cell) const {
  if (Cell stored = cells.Get(cell); stored.exists()) return stored.style;
  if (auto row = row_styles.find(cell.row); row != row_styles.end()) return row->second;
  auto run =
      std::partition_point(column_formats.begin(), column_formats.end(),
                           [&](const ColumnFormat& format) { return format.last < cell.column; });
  return run != column_formats.end() && run->first <= cell.column ? run->style : 0;
}

SheetModel& WorkbookModel::AddSheet(std::string name) {
  auto& sheet = sheets.emplace_back(std::make_unique<SheetModel>());
  sheet->id = static_cast<int>(sheets.size()) - 1;
  sheet->name = std::move(name);
  tab_order.push_back(sheet->id);
  ids_.emplace(sheet->name, sheet->id);
  return *sheet;
}

std::optional<int> WorkbookModel::IdOf(std::string_view name) const {
  if (auto found = ids_.find(name); found != ids_.end()) return found->second;
  for (const auto& sheet : sheets) {
    if (EqualsIgnoreCase(sheet->name, name)) return sheet->id;
  }
  return std::nullopt;
}

int WorkbookModel::PositionOf(int id) const {
  return static_cast<int>(std::find(tab_order.begin(), tab_order.end(), id) - tab_order.begin());
}

const DefinedName* WorkbookModel::FindName(std::string_view name, int from_sheet) const {
  const DefinedName* found = nullptr;
  for (const DefinedName& candidate : names) {
    if (candidate.scope != -1 && candidate.scope != from_sheet) continue;
    if (!EqualsIgnoreCase(candidate.name, name)) continue;
    if (candidate.scope == from_sheet && from_sheet != -1) return &candidate;
    found = &candidate;
  }
  return found;
}

}  // namespace vantora::embedded
