// Formulas as the cells share them: a text in which every reference is a placeholder, and the
// references beside it, relative ones as offsets from the cell. Two cells whose formulas read the
// same in R1C1 share one Formula, so a fill or a paste costs no parsing, and following an insertion
// rebuilds only formulas whose references it crosses. Blanks, letter case and everything else of
// the text come back as they were written.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "cells/address.h"
#include "cells/cell_store.h"
#include "formula/table_reference.h"

namespace vantora::embedded {

// Names and ids of the workbook's sheets. An id is fixed for the life of the workbook.
class SheetDirectory {
 public:
  virtual ~SheetDirectory() = default;
  // Case-insensitive; nullopt when there is no such sheet.
  virtual std::optional<int> IdOf(std::string_view name) const = 0;
  virtual const std::string& NameOf(int id) const = 0;
  // 0-based place in tab order, for references that span sheets.
  virtual int PositionOf(int id) const = 0;
};

// One reference of a formula: a cell, an area, whole columns or rows, or what is left of one whose
// cells are gone.
struct Reference {
  enum class Kind : std::uint8_t { kCell, kArea, kColumns, kRows, kError };
  static constexpr int kOwnSheet = -1;

  Kind kind = Kind::kCell;
  bool row1_absolute = false;
  bool column1_absolute = false;
  bool row2_absolute = false;
  bool column2_absolute = false;
  // Sheet ids; kOwnSheet when the text names none. They differ for a reference across sheets.
  int first_sheet = kOwnSheet;
  int last_sheet = kOwnSheet;
  // An absolute part is a row or column number, a relative part an offset from the formula's cell.
  int row1 = 0;
  int column1 = 0;
  int row2 = 0;
  int column2 = 0;

  // The cells it means for a formula in `cell`, corners put in order; nullopt for kError and where
  // it would leave the sheet.
  std::optional<Area> At(CellAddress cell) const;
  bool operator==(const Reference&) const = default;
};

class Program;

struct Formula {
  // The text without its leading "=", each reference (with its sheet's name) replaced by '\x01'.
  std::string text;
  std::vector<Reference> references;
  // Defined names used, as written ("marker", "Sheet!local"), upper-cased.
  std::vector<std::string> names;
  // References to tables, which stand in the text as they were written.
  std::vector<TableReference> tables;
  // Calculates anew whenever anything is calculated (it uses a volatile function, or a reference
  // that can't be followed: another workbook's).
  bool is_volatile = false;
  // It uses a function that looks at whether rows are hidden.
  bool sees_hidden_rows = false;
  // The calculation form, made at the first evaluation.
  mutable std::shared_ptr<const Program> program;
};

// Reads a formula's text (without "=") as it stands in `cell`. Never fails: what it can't make
// sense of stays text, and such a formula can't be calculated.
Formula ParseFormula(std::string_view text, CellAddress cell, const SheetDirectory& sheets);

// The text (without "=") as it reads in `cell`. References that would leave the sheet read #REF!.
std::string FormulaText(const Formula& formula, CellAddress cell, const SheetDirectory& sheets);

// The formula after columns were inserted, for a cell of `formula_sheet` that stood at `before` and
// now stands at `after`; nullopt when it reads the same relative to its cell.
std::optional<Formula> FollowInsertion(const Formula& formula, int formula_sheet,
                                       CellAddress before, CellAddress after,
                                       const ColumnInsertion& insertion);

// The formula as pasted from one cell to another; nullopt when it is shared unchanged, a formula
// with #REF! where relative references left the sheet.
std::optional<Formula> RelocateForPaste(const Formula& formula, CellAddress from, CellAddress to);

// Follows insertions, one after the other, in a formula text (without "=") that stands in the
// package's markup (names, validations, conditional formats, chart series, linked cells) and
// belongs to `formula_sheet` (-1: to none). Relative references are taken as the positions they are
// written as. nullopt when the text does not change.
std::optional<std::string> FollowInsertionsInText(std::string_view text, int formula_sheet,
                                                  std::span<const ColumnInsertion> insertions,
                                                  const SheetDirectory& sheets);

// The formulas of one sheet.
class FormulaTable {
 public:
  // The id of an equal formula (text and references), or of this one, newly stored.
  FormulaId Intern(Formula formula);
  const Formula& operator[](FormulaId id) const { return formulas_[id - 1]; }
  // Number of formulas; ids run from 1 to size().
  FormulaId size() const { return static_cast<FormulaId>(formulas_.size()); }

 private:
  std::deque<Formula> formulas_;
  std::unordered_multimap<std::size_t, FormulaId> by_hash_;
};

}  // namespace vantora::embedded
