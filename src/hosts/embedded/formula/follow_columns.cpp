#include "formula/follow_columns.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace vantora::embedded {
namespace {

// Functions whose value depends on where a reference or the formula itself stands, other than
// volatile ones, which are calculated anew in any case.
bool DependsOnPlace(std::string_view text) {
  static constexpr std::array<std::string_view, 3> kFunctions = {"COLUMN", "COLUMNS",
                                                                 "FORMULATEXT"};
  auto upper = [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; };
  for (std::size_t bracket = text.find('('); bracket != std::string_view::npos;
       bracket = text.find('(', bracket + 1)) {
    for (std::string_view function : kFunctions) {
      if (bracket < function.size()) continue;
      std::string_view word = text.substr(bracket - function.size(), function.size());
      if (std::equal(word.begin(), word.end(), function.begin(),
                     [&](char a, char b) { return upper(a) == b; })) {
        return true;
      }
    }
  }
  return false;
}

// A row in which no relative reference of the formula leaves the sheet, as far as there is one:
// what columns do to a formula is the same in each such row.
int RowWithinReferences(const Formula& formula) {
  int row = 1;
  for (const Reference& reference : formula.references) {
    if (!reference.row1_absolute) row = std::max(row, 1 - reference.row1);
    if (!reference.row2_absolute) row = std::max(row, 1 - reference.row2);
  }
  return std::min(row, kMaxRow);
}

// The cell for which the relative references of names are written.
constexpr CellAddress kNameOrigin{1, 1};

// A relative column of a name is a distance from the cell that uses the name, and stays; what is
// absolute follows.
std::optional<Formula> FollowInName(const Formula& formula, int scope,
                                    const ColumnInsertion& insertion) {
  std::optional<Formula> followed =
      FollowInsertion(formula, scope, kNameOrigin, kNameOrigin, insertion);
  if (!followed) return std::nullopt;
  for (std::size_t i = 0; i < formula.references.size(); ++i) {
    const Reference& before = formula.references[i];
    Reference& after = followed->references[i];
    if (before.column1_absolute && before.column2_absolute) continue;
    if (!before.column1_absolute && !before.column2_absolute) after = before;
    if (after.kind == Reference::Kind::kError) continue;
    if (!before.column1_absolute) after.column1 = before.column1;
    if (!before.column2_absolute) after.column2 = before.column2;
  }
  if (followed->references == formula.references) return std::nullopt;
  return followed;
}

}  // namespace

bool FormulaFollower::SpansInsertion(const Reference& reference) const {
  if (reference.first_sheet == reference.last_sheet) return false;
  auto [first, last] = std::minmax(
      {model_.PositionOf(reference.first_sheet), model_.PositionOf(reference.last_sheet)});
  int place = model_.PositionOf(insertion_.sheet);
  return first <= place && place <= last;
}

FormulaFollower::Situation FormulaFollower::SituationOf(const Formula& formula, int sheet,
                                                        int column) const {
  constexpr std::uint64_t kOneByOne = std::uint64_t{1} << 63;
  Situation situation;
  situation.moves = sheet == insertion_.sheet && column >= insertion_.column;
  situation.key = situation.moves;
  int shift = 1;
  bool one_by_one = formula.references.size() > 15;
  for (const Reference& reference : formula.references) {
    std::optional<ReferenceShape> shape = ReferenceShape::Of(reference);
    bool spans = reference.first_sheet != reference.last_sheet;
    int on_sheet = reference.first_sheet == Reference::kOwnSheet ? sheet : reference.first_sheet;
    if (!shape || reference.kind == Reference::Kind::kRows) continue;
    if (spans ? !SpansInsertion(reference) : on_sheet != insertion_.sheet) continue;
    auto [low, high] = std::minmax({shape->column1.At(column), shape->column2.At(column)});
    if (low < 1 || high > kMaxColumn) {
      one_by_one = true;
    } else if (high >= insertion_.column && !(low == 1 && high == kMaxColumn)) {
      situation.key |= std::uint64_t{low >= insertion_.column ? 3u : 2u} << shift;
      // A reference across sheets stays, and so means other cells of this one.
      situation.grows = situation.grows || spans || low < insertion_.column;
      situation.moves = true;
      if (high + insertion_.count > kMaxColumn) one_by_one = true;
    }
    if (shift < 60) shift += 2;
  }
  if (one_by_one) situation.key = kOneByOne | static_cast<std::uint64_t>(column);
  return situation;
}

const FormulaFollower::Outcome& FormulaFollower::OutcomeOf(int sheet, FormulaId id, int column) {
  FormulaTable& table = model_.sheets[sheet]->formulas;
  const Formula& formula = table[id];
  Situation situation = SituationOf(formula, sheet, column);
  auto [found, is_new] = outcomes_.try_emplace({sheet, id, situation.key});
  Outcome& outcome = found->second;
  if (!is_new) return outcome;
  CellAddress before{RowWithinReferences(formula), column};
  CellAddress after = before;
  if (sheet == insertion_.sheet && column >= insertion_.column) after.column += insertion_.count;
  outcome.outdated = situation.grows || (situation.moves && DependsOnPlace(formula.text));
  auto followed = FollowInsertion(formula, sheet, before, after, insertion_);
  outcome.after = followed ? table.Intern(*std::move(followed)) : id;
  return outcome;
}

std::vector<FollowingRun> FormulaFollower::Find(FormulaIndex& index) {
  std::vector<FollowingRun> runs;
  // An entry's cells may hold other formulas by now: those that still hold this one count.
  auto add = [&](int sheet, int column, int first_row, int last_row, FormulaId id) {
    const Outcome& outcome = OutcomeOf(sheet, id, column);
    if (outcome.after == id && !outcome.outdated) return;
    bool goes_on = false;
    model_.sheets[sheet]->cells.ForEachInColumn(
        column, first_row, last_row, [&](int row, const Cell& cell) {
          if (cell.formula != id) {
            goes_on = false;
          } else if (goes_on && runs.back().last_row == row - 1) {
            runs.back().last_row = row;
          } else {
            runs.push_back({sheet, column, row, row, id, outcome.after, outcome.outdated});
            goes_on = true;
          }
        });
  };
  Area moved{1, insertion_.column, kMaxRow, kMaxColumn};
  index.ForEachDependent(insertion_.sheet, moved, [&](auto, const auto& entry, const Area& cells) {
    for (int column = cells.first_column; column <= cells.last_column; ++column) {
      add(entry.sheet, column, cells.first_row, cells.last_row, entry.formula);
    }
  });
  const FormulaMap& formulas = index.formulas(insertion_.sheet);
  for (int column = insertion_.column; column <= formulas.LastColumn(); ++column) {
    formulas.ForEachRun(column, [&](int first_row, int last_row, FormulaId id) {
      add(insertion_.sheet, column, first_row, last_row, id);
    });
  }
  std::sort(runs.begin(), runs.end(), [](const FollowingRun& a, const FollowingRun& b) {
    return std::tie(a.sheet, a.column, a.first_row) < std::tie(b.sheet, b.column, b.first_row);
  });
  return runs;
}

void FollowColumnsOfSheet(SheetModel& sheet, const ColumnInsertion& insertion) {
  for (ArrayFormula& array : sheet.arrays) {
    if (array.area.first_column < insertion.column) continue;
    array.area.first_column += insertion.count;
    array.area.last_column += insertion.count;
  }
  std::vector<ColumnFormat> followed;
  for (ColumnFormat format : sheet.column_formats) {
    if (format.first >= insertion.column) format.first += insertion.count;
    // The new columns continue the run that ends left of them.
    if (format.last >= insertion.column - 1) format.last += insertion.count;
    format.last = std::min(format.last, kMaxColumn);
    if (format.first > kMaxColumn) {
      sheet.column_formats_changed = true;
      continue;
    }
    followed.push_back(std::move(format));
  }
  for (std::size_t i = 0; i < followed.size() && !sheet.column_formats_changed; ++i) {
    sheet.column_formats_changed = followed[i].first != sheet.column_formats[i].first ||
                                   followed[i].last != sheet.column_formats[i].last;
  }
  sheet.column_formats = std::move(followed);
  ++sheet.column_formats_version;
}

bool FollowTables(WorkbookModel& model, const ColumnInsertion& insertion) {
  bool changed = false;
  for (Table& table : model.tables) {
    Area& area = table.area;
    if (table.sheet != insertion.sheet || insertion.column > area.last_column) continue;
    changed = true;
    area.last_column += insertion.count;
    if (insertion.column <= area.first_column) {
      area.first_column += insertion.count;
      continue;
    }
    const std::ptrdiff_t place = insertion.column - area.first_column;
    std::vector<std::string> added;
    for (int number = 1; static_cast<int>(added.size()) < insertion.count; ++number) {
      std::string name = "Column" + std::to_string(number);
      if (!table.ColumnOf(name)) added.push_back(std::move(name));
    }
    table.columns.insert(
        table.columns.begin() + std::min<std::ptrdiff_t>(place, std::ssize(table.columns)),
        added.begin(), added.end());
  }
  return changed;
}

std::vector<bool> FollowNames(WorkbookModel& model, PrecedentFinder& precedents,
                              const ColumnInsertion& insertion) {
  std::vector<bool> changed(model.names.size());
  for (std::size_t i = 0; i < model.names.size(); ++i) {
    DefinedName& name = model.names[i];
    const Formula& formula = precedents.FormulaOfName(i);
    for (const Reference& reference : formula.references) {
      const bool own = reference.first_sheet == Reference::kOwnSheet;
      if ((own ? name.scope : reference.first_sheet) != insertion.sheet) continue;
      if (reference.kind == Reference::Kind::kRows) continue;
      // What is as far away as before may be another cell now.
      changed[i] = changed[i] || !reference.column1_absolute || !reference.column2_absolute;
    }
    std::optional<Formula> followed = FollowInName(formula, name.scope, insertion);
    if (!followed) continue;
    name.refers_to = FormulaText(*followed, kNameOrigin, model);
    precedents.ForgetName(i);
    changed[i] = true;
  }
  return changed;
}

std::string FollowedReference(const DefinedName& name, const WorkbookModel& model,
                              const ColumnInsertion& insertion) {
  const Formula formula = ParseFormula(name.refers_to, kNameOrigin, model);
  const std::optional<Formula> followed = FollowInName(formula, name.scope, insertion);
  return followed ? FormulaText(*followed, kNameOrigin, model) : name.refers_to;
}

}  // namespace vantora::embedded
