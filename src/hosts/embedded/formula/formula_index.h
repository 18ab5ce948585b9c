// Which formulas a workbook's cells hold, as the calculation knows them, and what depends on what.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <set>
#include <utility>
#include <vector>

#include "formula/dependency_index.h"
#include "formula/precedents.h"
#include "formula/workbook_model.h"

namespace vantora::embedded {

// The formula ids of one sheet's cells as they were when last looked at. A cell that has been
// erased may keep its formula here: what is found through it is looked up in the cells again.
class FormulaMap {
 public:
  FormulaId At(int column, int row) const;
  void Set(int column, int row, FormulaId formula);
  void InsertColumns(int column, int count);
  int LastColumn() const { return static_cast<int>(columns_.size()); }

  // Calls visit(first_row, last_row, formula) for each run of one formula, top down.
  template <typename Visitor>
  void ForEachRun(int column, Visitor&& visit) const {
    int first = 0;
    FormulaId current = 0;
    int row = 1;
    for (const auto& block : columns_[column - 1]) {
      for (int offset = 0; offset < kBlockRows; ++offset) {
        FormulaId formula = block ? (*block)[offset] : 0;
        if (formula == current) continue;
        if (current) visit(first, row + offset - 1, current);
        first = row + offset;
        current = formula;
      }
      row += kBlockRows;
    }
    if (current) visit(first, row - 1, current);
  }

 private:
  static constexpr int kBlockRows = 64;
  using Block = std::array<FormulaId, kBlockRows>;
  std::vector<std::vector<std::unique_ptr<Block>>> columns_;
};

// Formulas that need more than their references: volatile ones, those that use names or tables or
// span sheets.
struct SpecialFormulas {
  Area source;
  FormulaId formula = 0;
  // Itself or through a name.
  bool is_volatile = false;
};

class FormulaIndex {
 public:
  explicit FormulaIndex(WorkbookModel& model) : model_(model), precedents_(model) {}

  // Indexes all formulas of the workbook as its cells hold them now.
  void Build();
  // The same from what the index knows of the cells, after names or sheets changed.
  void Rebuild();
  // Indexes the formulas that came into the area since.
  void Update(int sheet, const Area& area);
  // Sheets that were added have no formulas yet.
  void AddSheets();

  // See DependencyIndex.
  template <typename Visitor>
  void ForEachDependent(int sheet, const Area& area, Visitor&& visit) {
    dependencies_.ForEachDependent(sheet, area, std::forward<Visitor>(visit));
  }
  // Grows when a formula is indexed. A cell listed may hold another formula by now.
  const std::vector<SpecialFormulas>& specials(int sheet) const { return specials_[sheet]; }
  const FormulaMap& formulas(int sheet) const { return formulas_[sheet]; }
  PrecedentFinder& precedents() { return precedents_; }
  // Whether an indexed formula is volatile only through a name that it uses.
  bool IsVolatileByName(int sheet, FormulaId formula) const {
    return volatile_by_name_.contains({sheet, formula});
  }

  // Moves what is known with the cells; the formulas themselves are still those of before.
  void InsertColumns(const ColumnInsertion& insertion);
  // All cells of `source` got `formula`, or refer to other cells than before with it.
  void Add(int sheet, const Area& source, FormulaId formula);
  // Indexes the users of changed names, and of tables when these `changed_tables`, anew and calls
  // visit(sheet, SpecialFormulas) for each.
  template <typename Visitor>
  void RefreshUsers(const std::vector<bool>& changed_names, bool changed_tables, Visitor&& visit) {
    for (std::size_t sheet = 0; sheet < specials_.size(); ++sheet) {
      int id = static_cast<int>(sheet);
      std::vector<SpecialFormulas> specials = std::exchange(specials_[sheet], {});
      for (const SpecialFormulas& special : specials) {
        const Formula& formula = model_.sheets[sheet]->formulas[special.formula];
        if (precedents_.UsesName(formula, id, changed_names) ||
            (changed_tables && precedents_.UsesTable(formula, id))) {
          AddEntries(id, special.source, special.formula);
          visit(id, special);
        } else {
          specials_[sheet].push_back(special);
        }
      }
    }
  }

  // Changes when the entries' numbers do.
  std::size_t generation() const { return generation_; }
  std::size_t memory() const { return dependencies_.memory(); }

 private:
  template <typename Merger>
  void UpdateColumn(int sheet, int column, const Area& area, Merger&& merger);
  void AddEntries(int sheet, const Area& source, FormulaId formula);
  void RebuildWhenMostIsOutdated();

  WorkbookModel& model_;
  PrecedentFinder precedents_;
  DependencyIndex dependencies_;
  std::vector<FormulaMap> formulas_;
  std::vector<std::vector<SpecialFormulas>> specials_;
  std::set<std::pair<int, FormulaId>> volatile_by_name_;
  std::size_t generation_ = 0;
  std::size_t special_count_ = 0;  // with those that went
  std::size_t size_when_built_ = 0;
};

}  // namespace vantora::embedded
