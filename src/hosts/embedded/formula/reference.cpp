// Where references point, and how they follow insertions and pastes.
#include <algorithm>
#include <utility>

#include "formula/formula.h"

namespace vantora::embedded {
namespace {

// Marks a reference whose cells are gone; it keeps its sheet.
void MakeError(Reference& reference) {
  Reference error;
  error.kind = Reference::Kind::kError;
  error.first_sheet = reference.first_sheet;
  error.last_sheet = reference.last_sheet;
  reference = error;
}

// Moves the columns of a reference on the sheet of the insertion; false when it lost its cells.
bool FollowColumns(int& column1, int& column2, const ColumnInsertion& insertion) {
  int& low = column1 <= column2 ? column1 : column2;
  int& high = column1 <= column2 ? column2 : column1;
  // All columns of the sheet remain all columns.
  if (low == 1 && high == kMaxColumn) return true;
  const int new_low = low >= insertion.column ? low + insertion.count : low;
  const int new_high = high >= insertion.column ? high + insertion.count : high;
  if (new_low > kMaxColumn) return false;
  low = new_low;
  high = std::min(new_high, kMaxColumn);
  return true;
}

// A reference across several sheets stays where it is, as its sheets need not move together; in
// all other references the columns follow.
bool IsCrossed(const Reference& reference, int formula_sheet, const ColumnInsertion& insertion) {
  if (reference.first_sheet != reference.last_sheet) return false;
  const int sheet =
      reference.first_sheet == Reference::kOwnSheet ? formula_sheet : reference.first_sheet;
  return sheet == insertion.sheet;
}

void Follow(Reference& reference, int formula_sheet, CellAddress before, CellAddress after,
            const ColumnInsertion& insertion) {
  if (!reference.At(before)) return;
  if (reference.kind == Reference::Kind::kRows) return;
  int column1 = reference.column1 + (reference.column1_absolute ? 0 : before.column);
  int column2 = reference.column2 + (reference.column2_absolute ? 0 : before.column);
  if (IsCrossed(reference, formula_sheet, insertion) &&
      !FollowColumns(column1, column2, insertion)) {
    MakeError(reference);
    return;
  }
  reference.column1 = column1 - (reference.column1_absolute ? 0 : after.column);
  reference.column2 = column2 - (reference.column2_absolute ? 0 : after.column);
}

Formula WithReferences(const Formula& formula, std::vector<Reference> references) {
  Formula changed;
  changed.text = formula.text;
  changed.references = std::move(references);
  changed.names = formula.names;
  changed.tables = formula.tables;
  changed.is_volatile = formula.is_volatile;
  changed.sees_hidden_rows = formula.sees_hidden_rows;
  return changed;
}

}  // namespace

std::optional<Area> Reference::At(CellAddress cell) const {
  if (kind == Kind::kError) return std::nullopt;
  int first_row = row1_absolute ? row1 : cell.row + row1;
  int last_row = row2_absolute ? row2 : cell.row + row2;
  int first_column = column1_absolute ? column1 : cell.column + column1;
  int last_column = column2_absolute ? column2 : cell.column + column2;
  if (kind == Kind::kColumns) {
    first_row = 1;
    last_row = kMaxRow;
  } else if (kind == Kind::kRows) {
    first_column = 1;
    last_column = kMaxColumn;
  }
  if (first_row > last_row) std::swap(first_row, last_row);
  if (first_column > last_column) std::swap(first_column, last_column);
  if (first_row < 1 || last_row > kMaxRow || first_column < 1 || last_column > kMaxColumn) {
    return std::nullopt;
  }
  return Area{first_row, first_column, last_row, last_column};
}

std::optional<Formula> FollowInsertion(const Formula& formula, int formula_sheet,
                                       CellAddress before, CellAddress after,
                                       const ColumnInsertion& insertion) {
  for (std::size_t i = 0; i < formula.references.size(); ++i) {
    Reference reference = formula.references[i];
    Follow(reference, formula_sheet, before, after, insertion);
    if (reference == formula.references[i]) continue;
    std::vector<Reference> references = formula.references;
    for (std::size_t j = i; j < references.size(); ++j) {
      Follow(references[j], formula_sheet, before, after, insertion);
    }
    return WithReferences(formula, std::move(references));
  }
  return std::nullopt;
}

std::optional<Formula> RelocateForPaste(const Formula& formula, CellAddress, CellAddress to) {
  auto leaves_sheet = [to](const Reference& reference) {
    return reference.kind != Reference::Kind::kError && !reference.At(to);
  };
  if (std::none_of(formula.references.begin(), formula.references.end(), leaves_sheet)) {
    return std::nullopt;
  }
  std::vector<Reference> references = formula.references;
  for (Reference& reference : references) {
    if (leaves_sheet(reference)) MakeError(reference);
  }
  return WithReferences(formula, std::move(references));
}

std::optional<std::string> FollowInsertionsInText(std::string_view text, int formula_sheet,
                                                  std::span<const ColumnInsertion> insertions,
                                                  const SheetDirectory& sheets) {
  // From the first cell every position of a sheet is an offset that does not leave it.
  constexpr CellAddress kOrigin{1, 1};
  Formula formula = ParseFormula(text, kOrigin, sheets);
  bool changed = false;
  for (const ColumnInsertion& insertion : insertions) {
    std::optional<Formula> followed =
        FollowInsertion(formula, formula_sheet, kOrigin, kOrigin, insertion);
    if (!followed) continue;
    formula = *std::move(followed);
    changed = true;
  }
  if (!changed) return std::nullopt;
  return FormulaText(formula, kOrigin, sheets);
}

}  // namespace vantora::embedded
