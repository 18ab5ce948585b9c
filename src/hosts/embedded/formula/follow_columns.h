// What an insertion of columns makes of a model beside its cells.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "formula/formula_index.h"
#include "formula/workbook_model.h"

namespace vantora::embedded {

// Cells of one column whose formula reads otherwise after an insertion, or whose value may differ.
struct FollowingRun {
  int sheet = 0;
  int column = 1;  // before the insertion
  int first_row = 1;
  int last_row = 1;
  FormulaId before = 0;
  FormulaId after = 0;
  // A reference grew, or the value depends on where things stand.
  bool outdated = false;
};

// Finds the cells that an insertion concerns, through the index: those that refer to cells of the
// sheet at or right of the insertion, and those that stand there themselves.
class FormulaFollower {
 public:
  FormulaFollower(WorkbookModel& model, const ColumnInsertion& insertion)
      : model_(model), insertion_(insertion) {}

  // In order of sheet, column and row. To be called while the cells and the index are still as
  // before; cells may come more than once.
  std::vector<FollowingRun> Find(FormulaIndex& index);

 private:
  struct Outcome {
    FormulaId after = 0;
    bool outdated = false;
  };
  // Where a formula's references stand relative to the insertion, two bits for each end: formulas
  // of one id and one situation read alike afterwards.
  struct Situation {
    std::uint64_t key = 0;
    bool moves = false;
    bool grows = false;
  };

  Situation SituationOf(const Formula& formula, int sheet, int column) const;
  const Outcome& OutcomeOf(int sheet, FormulaId id, int column);
  bool SpansInsertion(const Reference& reference) const;

  WorkbookModel& model_;
  ColumnInsertion insertion_;
  std::map<std::tuple<int, FormulaId, std::uint64_t>, Outcome> outcomes_;
};

// Moves the sheet's array areas and column formats; new columns take over the format of the column
// left of them.
void FollowColumnsOfSheet(SheetModel& sheet, const ColumnInsertion& insertion);

// Moves and widens the tables of the sheet; columns within them get names as their parts give them.
// True when a table changed.
bool FollowTables(WorkbookModel& model, const ColumnInsertion& insertion);

// Makes the names' texts follow; tells for each name whether it changed.
std::vector<bool> FollowNames(WorkbookModel& model, PrecedentFinder& precedents,
                              const ColumnInsertion& insertion);
// What the name, which need not be one of the model's, refers to after the insertion.
std::string FollowedReference(const DefinedName& name, const WorkbookModel& model,
                              const ColumnInsertion& insertion);

}  // namespace vantora::embedded
