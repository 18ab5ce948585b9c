#include "formula/precedents.h"

#include <algorithm>

namespace vantora::embedded {

void PrecedentFinder::Reset() {
  found_.clear();
  name_formulas_.assign(model_.names.size(), std::nullopt);
}

const Formula& PrecedentFinder::FormulaOfName(std::size_t name) {
  if (name_formulas_.size() != model_.names.size()) Reset();
  auto& formula = name_formulas_[name];
  if (!formula) formula = ParseFormula(model_.names[name].refers_to, CellAddress{1, 1}, model_);
  return *formula;
}

std::optional<std::size_t> PrecedentFinder::FindName(const std::string& name, int from_sheet) {
  auto [found, is_new] = found_.try_emplace({name, from_sheet});
  if (!is_new) return found->second;
  std::string_view local = name;
  std::optional<int> sheet = from_sheet;
  if (std::size_t mark = name.rfind('!'); mark != std::string::npos) {
    std::string_view qualifier = local.substr(0, mark);
    if (qualifier.size() >= 2 && qualifier.front() == '\'' && qualifier.back() == '\'') {
      qualifier = qualifier.substr(1, qualifier.size() - 2);
    }
    sheet = model_.IdOf(qualifier);
    local = local.substr(mark + 1);
  }
  if (!sheet) return std::nullopt;
  if (const DefinedName* known = model_.FindName(local, *sheet)) {
    found->second = static_cast<std::size_t>(known - model_.names.data());
  }
  return found->second;
}

std::vector<std::size_t> PrecedentFinder::NamesOf(const Formula& formula, int sheet) {
  if (name_formulas_.size() != model_.names.size()) Reset();
  std::vector<std::size_t> used;
  std::vector<bool> is_used(model_.names.size());
  auto add_names_in = [&](const Formula& text) {
    for (const std::string& name : text.names) {
      std::optional<std::size_t> index = FindName(name, sheet);
      if (!index || is_used[*index]) continue;
      is_used[*index] = true;
      used.push_back(*index);
    }
  };
  add_names_in(formula);
  for (std::size_t i = 0; i < used.size(); ++i) add_names_in(FormulaOfName(used[i]));
  return used;
}

namespace {

ReferenceShape ShapeOf(const TableReference& reference, const Area& area) {
  ReferenceShape shape{{true, area.first_row},
                       {true, area.last_row},
                       {true, area.first_column},
                       {true, area.last_column}};
  // Its own row, whichever that is.
  if (reference.parts == TableReference::kThisRow) shape.row1 = shape.row2 = {false, 0};
  return shape;
}

}  // namespace

void PrecedentFinder::AddTables(const Formula& formula, int sheet, const Area& source,
                                std::vector<Precedent>& precedents) const {
  for (const TableReference& reference : formula.tables) {
    const auto add = [&](const Table& table) {
      const TableCells cells = FindCells(reference, table);
      if (cells.outcome != TableCells::Outcome::kFound) return;
      precedents.push_back({table.sheet, ShapeOf(reference, cells.area)});
    };
    if (!reference.table.empty()) {
      if (const Table* table = model_.FindTable(reference.table)) add(*table);
      continue;
    }
    for (const Table& table : model_.tables) {
      if (table.sheet == sheet && table.area.Intersects(source)) add(table);
    }
  }
}

const Table* PrecedentFinder::TableOfName(const std::string& name, int sheet) {
  return FindName(name, sheet) ? nullptr : model_.FindTable(name);
}

void PrecedentFinder::AddReferences(const Formula& formula, int sheet, const Area& source,
                                    std::vector<Precedent>& precedents) const {
  AddTables(formula, sheet, source, precedents);
  for (const Reference& reference : formula.references) {
    std::optional<ReferenceShape> shape = ReferenceShape::Of(reference);
    if (!shape) continue;
    if (reference.first_sheet == reference.last_sheet) {
      bool own = reference.first_sheet == Reference::kOwnSheet;
      precedents.push_back({own ? sheet : reference.first_sheet, *shape});
      continue;
    }
    auto [first, last] = std::minmax(
        {model_.PositionOf(reference.first_sheet), model_.PositionOf(reference.last_sheet)});
    for (int place = first; place <= last; ++place) {
      precedents.push_back({model_.tab_order[place], *shape});
    }
  }
}

std::vector<Precedent> PrecedentFinder::PrecedentsOf(const Formula& formula, int sheet,
                                                     const Area& source) {
  std::vector<Precedent> precedents;
  AddReferences(formula, sheet, source, precedents);
  if (!formula.names.empty()) {
    for (std::size_t name : NamesOf(formula, sheet)) {
      AddReferences(FormulaOfName(name), sheet, source, precedents);
    }
    for (const std::string& name : formula.names) {
      const Table* table = TableOfName(name, sheet);
      if (!table) continue;
      const TableCells cells = FindCells({}, *table);
      if (cells.outcome == TableCells::Outcome::kFound) {
        precedents.push_back({table->sheet, ShapeOf({}, cells.area)});
      }
    }
  }
  std::sort(precedents.begin(), precedents.end());
  precedents.erase(std::unique(precedents.begin(), precedents.end()), precedents.end());
  return precedents;
}

bool PrecedentFinder::UsesTable(const Formula& formula, int sheet) {
  if (!formula.tables.empty()) return true;
  if (formula.names.empty()) return false;
  for (const std::string& name : formula.names) {
    if (TableOfName(name, sheet)) return true;
  }
  const std::vector<std::size_t> used = NamesOf(formula, sheet);
  return std::any_of(used.begin(), used.end(),
                     [&](std::size_t name) { return !FormulaOfName(name).tables.empty(); });
}

bool PrecedentFinder::IsVolatile(const Formula& formula, int sheet) {
  if (formula.is_volatile || formula.names.empty()) return formula.is_volatile;
  return std::ranges::any_of(NamesOf(formula, sheet),
                             [&](std::size_t name) { return FormulaOfName(name).is_volatile; });
}

bool PrecedentFinder::SeesHiddenRows(const Formula& formula, int sheet) {
  if (formula.sees_hidden_rows || formula.names.empty()) return formula.sees_hidden_rows;
  return std::ranges::any_of(NamesOf(formula, sheet), [&](std::size_t name) {
    return FormulaOfName(name).sees_hidden_rows;
  });
}

bool PrecedentFinder::UsesName(const Formula& formula, int sheet, const std::vector<bool>& names) {
  if (formula.names.empty()) return false;
  std::vector<std::size_t> used = NamesOf(formula, sheet);
  return std::any_of(used.begin(), used.end(), [&](std::size_t name) { return names[name]; });
}

}  // namespace vantora::embedded
