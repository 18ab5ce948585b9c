#include "formula/workbook_model.h"

#include <algorithm>

#include "core/convert.h"
#include "formula/unicode.h"

namespace vantora::embedded {

StyleId SheetModel::StyleOf(CellAddress cell) const {
  Cell stored = cells.Get(cell);
  return stored.exists() ? stored.style : StyleBehind(cell);
}

StyleId SheetModel::StyleBehind(CellAddress cell) const {
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

void WorkbookModel::RenameSheet(int id, std::string name) {
  SheetModel& sheet = *sheets[id];
  ids_.erase(sheet.name);
  sheet.name = std::move(name);
  ids_.emplace(sheet.name, id);
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
  if (indexed_names_ != names.size()) IndexNames();
  auto places = places_of_names_.find(CaseFolded(name));
  if (places == places_of_names_.end()) return nullptr;
  const DefinedName* found = nullptr;
  for (std::size_t place : places->second) {
    const DefinedName& candidate = names[place];
    if (candidate.scope == -1) {
      found = &candidate;
    } else if (candidate.scope == from_sheet) {
      return &candidate;
    }
  }
  return found;
}

std::optional<int> Table::ColumnOf(std::string_view column) const {
  const auto found = std::find_if(columns.begin(), columns.end(), [&](const std::string& name) {
    return EqualIgnoringCase(name, column);
  });
  if (found == columns.end()) return std::nullopt;
  return static_cast<int>(found - columns.begin());
}

const Table* WorkbookModel::FindTable(std::string_view name) const {
  for (const Table& table : tables) {
    if (EqualIgnoringCase(table.name, name)) return &table;
  }
  return nullptr;
}

const Table* WorkbookModel::TableAt(int sheet, CellAddress cell) const {
  for (const Table& table : tables) {
    if (table.sheet == sheet && table.area.Contains(cell)) return &table;
  }
  return nullptr;
}

std::optional<std::size_t> WorkbookModel::PlaceOfName(std::string_view name, int scope) const {
  if (indexed_names_ != names.size()) IndexNames();
  auto places = places_of_names_.find(CaseFolded(name));
  if (places == places_of_names_.end()) return std::nullopt;
  for (std::size_t place : places->second) {
    if (names[place].scope == scope) return place;
  }
  return std::nullopt;
}

void WorkbookModel::RemoveName(std::size_t place) {
  if (indexed_names_ != names.size()) IndexNames();
  const std::size_t last = names.size() - 1;
  std::erase(places_of_names_.at(CaseFolded(names[place].name)), place);
  if (place != last) {
    auto& places = places_of_names_.at(CaseFolded(names[last].name));
    std::replace(places.begin(), places.end(), last, place);
    names[place] = std::move(names[last]);
  }
  names.pop_back();
  indexed_names_ = last;
}

void WorkbookModel::IndexNames() const {
  if (indexed_names_ > names.size()) {
    places_of_names_.clear();
    indexed_names_ = 0;
  }
  for (std::size_t place = indexed_names_; place < names.size(); ++place) {
    places_of_names_[CaseFolded(names[place].name)].push_back(place);
  }
  indexed_names_ = names.size();
}

}  // namespace vantora::embedded
