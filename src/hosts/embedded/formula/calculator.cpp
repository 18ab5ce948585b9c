#include "formula/calculator.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <unordered_map>
#include <utility>

#include "formula/circles.h"
#include "formula/evaluate.h"
#include "formula/follow_columns.h"
#include "formula/formula_index.h"
#include "formula/invalidation.h"
#include "formula/run_merger.h"

namespace vantora::embedded {
namespace {

constexpr const char* kCircular = "circular reference";
constexpr const char* kNoProgress = "a cell it depends on could not be brought up to date";

double ChangeBetween(const CellValue& before, const CellValue& after) {
  const auto is_number = [](const CellValue& value) {
    return value.kind == CellKind::kNumber || value.kind == CellKind::kBlank;
  };
  const auto number_of = [](const CellValue& value) {
    return value.kind == CellKind::kNumber ? value.number : 0;
  };
  if (is_number(before) && is_number(after)) return std::fabs(number_of(after) - number_of(before));
  return before == after ? 0 : std::numeric_limits<double>::infinity();
}

}  // namespace

class Calculator::Impl {
 public:
  explicit Impl(WorkbookModel& model)
      : model_(model),
        index_(model),
        invalidation_(model, index_),
        circles_(model, index_, invalidation_) {}

  void Changed(int sheet, const Area& area) {
    if (!Prepare()) index_.Update(sheet, area);
    circles_.Forget();
    invalidation_.MarkArea(sheet, area);
    invalidation_.Propagate();
  }

  void RowsHidden(int sheet, const Area& area) {
    // Without such a formula there is no need for the index.
    if (!is_built_ && !SomeFormulaSeesRows()) return;
    Prepare();
    if (invalidation_.MarkSeersOfRows(sheet, area)) invalidation_.Propagate();
  }

  void NamesChanged() { names_changed_ = true; }
  // Marks the formulas that use names when some changed, once for however many did.
  void ApplyNameChanges();
  void InsertColumns(const ColumnInsertion& insertion);

  bool EnsureCalculated(int sheet, CellAddress cell) {
    std::uint8_t flags = model_.sheets[sheet]->cells.Get(cell).flags;
    if (flags & kNeedsCalculation) {
      if (!is_built_) Prepare();
      Calculate({sheet, cell});
      flags = model_.sheets[sheet]->cells.Get(cell).flags;
    }
    return !(flags & kStale);
  }

  bool EnsureCalculated(int sheet, const Area& area) {
    const CellStore& cells = model_.sheets[sheet]->cells;
    bool all = true;
    int last_column = std::min(area.last_column, cells.LastColumn());
    for (int column = area.first_column; column <= last_column; ++column) {
      cells.ForEachInColumn(column, area.first_row, area.last_row, [&](int row, const Cell& cell) {
        if (cell.flags & (kNeedsCalculation | kStale)) {
          all = EnsureCalculated(sheet, CellAddress{row, column}) && all;
        }
      });
    }
    return all;
  }

  void CalculateAll() {
    if (!is_built_) return;
    Prepare();
    for (const auto& sheet : model_.sheets) {
      for (const Area& area : invalidation_.TakeMarked(sheet->id)) {
        EnsureCalculated(sheet->id, area);
      }
    }
  }

  void CalculateAllAndNew() {
    Prepare();
    CalculateAll();
  }
  void CalculateOnEntry(int sheet, const Area& area);

  std::vector<Uncalculated> Uncalculable() const;
  std::string ReasonFor(int sheet, CellAddress cell) const;
  std::size_t evaluations() const { return evaluations_; }

 private:
  // A formula on the stack of those being calculated.
  struct Pending {
    CellPosition position;
    // It was evaluated and waits for the formulas above it.
    bool waits = false;
    // It was put further up, or is done.
    bool dropped = false;
  };

  static std::uint64_t Key(const CellPosition& position) {
    return static_cast<std::uint64_t>(position.sheet) << 36 |
           static_cast<std::uint64_t>(position.cell.column) << 21 |
           static_cast<std::uint64_t>(position.cell.row);
  }

  bool SomeFormulaSeesRows();
  // Builds the index when that has not been done; true when it was built now.
  bool Prepare();
  void ApplyRuns(const std::vector<FollowingRun>& runs, const ColumnInsertion& insertion);

  void Calculate(const CellPosition& target);
  // Evaluates the formula on top of the stack: it is done then, or waits for others above it.
  void Step();
  bool Push(const CellPosition& position, bool& is_circular);
  // The formulas on the stack from there on go in a circle.
  void MeetCircle(std::size_t first);
  void GiveUpCircle(std::size_t first);
  void Iterate(const std::vector<CellPosition>& circle);
  // One round; the largest change of a value, or nullopt when the circle was given up.
  std::optional<double> IterateOnce(const std::vector<CellPosition>& circle);
  // Calculates the others' precedents first: what is out of date outside the circle.
  std::vector<CellPosition> NeededBy(const std::vector<CellPosition>& circle);
  void SetOutdated(const std::vector<CellPosition>& formulas, bool outdated);
  void Tidy();
  void Finish(const CellPosition& position, const Area* array, const Evaluation& evaluation);
  void GiveUp(const CellPosition& position, const Area* array, const std::string& reason);
  bool IsOutdated(const CellPosition& position) const {
    return model_.sheets[position.sheet]->cells.Get(position.cell).flags & kNeedsCalculation;
  }

  WorkbookModel& model_;
  FormulaIndex index_;
  Invalidation invalidation_;
  Circles circles_;
  bool is_built_ = false;
  bool names_changed_ = false;
  std::size_t evaluations_ = 0;
  std::vector<Pending> stack_;
  // Places of the formulas on the stack that are not dropped.
  std::unordered_map<std::uint64_t, std::size_t> places_;
  // By sheet and place, why formulas could not be calculated. What has been calculated since is
  // without the flag.
  std::vector<std::map<std::pair<int, int>, std::string>> reasons_;
};

bool Calculator::Impl::Prepare() {
  bool builds = !is_built_;
  if (builds) {
    index_.Build();
    is_built_ = true;
  }
  index_.AddSheets();
  invalidation_.AddSheets();
  reasons_.resize(model_.sheets.size());
  if (builds) invalidation_.MarkNeverCalculated();
  return builds;
}

bool Calculator::Impl::SomeFormulaSeesRows() {
  for (const auto& sheet : model_.sheets) {
    for (FormulaId id = 1; id <= sheet->formulas.size(); ++id) {
      if (sheet->formulas[id].sees_hidden_rows) return true;
    }
  }
  for (std::size_t name = 0; name < model_.names.size(); ++name) {
    if (index_.precedents().FormulaOfName(name).sees_hidden_rows) return true;
  }
  return false;
}

void Calculator::Impl::ApplyNameChanges() {
  if (!names_changed_) return;
  names_changed_ = false;
  model_.ForgetNames();
  if (!Prepare()) index_.Rebuild();
  circles_.Forget();
  for (const auto& sheet : model_.sheets) {
    for (const SpecialFormulas& special : index_.specials(sheet->id)) {
      invalidation_.MarkFormulas(sheet->id, special.source, special.formula);
    }
  }
  invalidation_.Propagate();
}

void Calculator::Impl::InsertColumns(const ColumnInsertion& insertion) {
  Prepare();
  circles_.Forget();
  std::vector<FollowingRun> runs = FormulaFollower(model_, insertion).Find(index_);
  SheetModel& sheet = *model_.sheets[insertion.sheet];
  sheet.cells.InsertColumns(insertion.column, insertion.count);
  FollowColumnsOfSheet(sheet, insertion);
  index_.InsertColumns(insertion);
  invalidation_.InsertColumns(insertion);
  std::map<std::pair<int, int>, std::string> moved;
  for (auto& [place, reason] : reasons_[insertion.sheet]) {
    auto [row, column] = place;
    if (column >= insertion.column) column += insertion.count;
    moved.emplace(std::pair(row, column), std::move(reason));
  }
  reasons_[insertion.sheet] = std::move(moved);

  ApplyRuns(runs, insertion);
  std::vector<bool> changed_names = FollowNames(model_, index_.precedents(), insertion);
  const bool changed_tables = FollowTables(model_, insertion);
  if (changed_tables ||
      std::find(changed_names.begin(), changed_names.end(), true) != changed_names.end()) {
    index_.RefreshUsers(changed_names, changed_tables,
                        [&](int user, const SpecialFormulas& special) {
                          invalidation_.MarkFormulas(user, special.source, special.formula);
                        });
  }
  invalidation_.Propagate();
}

// Puts the formulas that read otherwise into their cells, which have moved by now.
void Calculator::Impl::ApplyRuns(const std::vector<FollowingRun>& runs,
                                 const ColumnInsertion& insertion) {
  auto column_after = [&](const FollowingRun& run) {
    bool moves = run.sheet == insertion.sheet && run.column >= insertion.column;
    return moves ? run.column + insertion.count : run.column;
  };
  for (std::size_t i = 0; i < runs.size();) {
    int sheet = runs[i].sheet;
    CellStore& cells = model_.sheets[sheet]->cells;
    RunMerger merger(
        [&](const Area& area, FormulaId formula) { index_.Add(sheet, area, formula); });
    int next_row = 1;
    for (; i < runs.size() && runs[i].sheet == sheet; ++i) {
      const FollowingRun& run = runs[i];
      if (i > 0 && runs[i - 1].column != run.column) next_row = 1;
      int column = column_after(run);
      // Cells come once for each of their references: only the first time counts.
      for (int row = std::max(run.first_row, next_row); row <= run.last_row; ++row) {
        cells.SetFormula({row, column}, run.after);
        merger.Add(column, row, row, run.after);
      }
      next_row = std::max(next_row, run.last_row + 1);
      if (!run.outdated) continue;
      invalidation_.MarkFormulas(sheet, {run.first_row, column, run.last_row, column}, run.after);
    }
    merger.Finish();
  }
}

void Calculator::Impl::Calculate(const CellPosition& target) {
  bool is_circular = false;
  Push(target, is_circular);
  while (!stack_.empty()) {
    const Pending& top = stack_.back();
    if (top.dropped) {
      stack_.pop_back();
    } else if (!IsOutdated(top.position)) {
      places_.erase(Key(top.position));
      stack_.pop_back();
    } else {
      Step();
    }
  }
}

void Calculator::Impl::CalculateOnEntry(int sheet_id, const Area& area) {
  SheetModel& sheet = *model_.sheets[sheet_id];
  for (int column = area.first_column; column <= area.last_column; ++column) {
    sheet.cells.ForEachInColumn(
        column, area.first_row, area.last_row, [&](int row, const Cell& cell) {
          if (!cell.formula || !(cell.flags & kNeedsCalculation)) return;
          const CellPosition position{sheet_id, {row, column}};
          Evaluation evaluation = Evaluate(model_, sheet.formulas[cell.formula], position, nullptr,
                                           Precedents::kAsTheyAre);
          ++evaluations_;
          if (evaluation.outcome != Evaluation::Outcome::kValue) return;
          sheet.cells.SetValue(position.cell, evaluation.value);
        });
  }
}

void Calculator::Impl::Step() {
  CellPosition position = stack_.back().position;
  SheetModel& sheet = *model_.sheets[position.sheet];
  const Formula& formula = sheet.formulas[sheet.cells.Get(position.cell).formula];
  const Area* array = invalidation_.ArrayIn(position.sheet, position.cell);
  Evaluation evaluation = Evaluate(model_, formula, position, array);
  ++evaluations_;
  switch (evaluation.outcome) {
    case Evaluation::Outcome::kValue:
      Finish(position, array, evaluation);
      return;
    case Evaluation::Outcome::kUncalculable:
      GiveUp(position, array, evaluation.reason);
      return;
    case Evaluation::Outcome::kPending:
      break;
  }
  stack_.back().waits = true;
  bool pushed = false;
  // The first one listed comes on top: lists run along rows and columns, as most models do.
  for (auto needed = evaluation.pending.rbegin(); needed != evaluation.pending.rend(); ++needed) {
    bool is_circular = false;
    pushed = Push(*needed, is_circular) || pushed;
    if (is_circular) return;
  }
  if (!pushed) GiveUp(position, array, kNoProgress);
  if (stack_.size() > 2 * places_.size() + 1024) Tidy();
}

// Puts a formula on top of the stack, from further down where it is there already. False when it is
// up to date. Where it waits itself for what asks for it, all formulas of the circle are given up.
bool Calculator::Impl::Push(const CellPosition& needed, bool& is_circular) {
  CellPosition position = needed;
  SheetModel& sheet = *model_.sheets[position.sheet];
  Cell cell = sheet.cells.Get(position.cell);
  if (!(cell.flags & kNeedsCalculation)) return false;
  if (!cell.formula) {
    // A result of an array formula, or a flag that outlived its formula.
    auto master = invalidation_.MasterOf(position.sheet, position.cell);
    if (!master || !IsOutdated({position.sheet, *master})) {
      sheet.cells.SetFlag(position.cell, kNeedsCalculation, false);
      return true;
    }
    position.cell = *master;
  }
  auto [place, is_new] = places_.try_emplace(Key(position), stack_.size());
  if (!is_new) {
    if (stack_[place->second].waits) {
      is_circular = true;
      MeetCircle(place->second);
      return true;
    }
    stack_[place->second].dropped = true;
    place->second = stack_.size();
  }
  stack_.push_back({position});
  return true;
}

// The waiting formulas on the stack from there on each wait for the next one, and the last for the
// first.
void Calculator::Impl::MeetCircle(std::size_t first) {
  if (!model_.iteration.enabled) {
    GiveUpCircle(first);
    return;
  }
  std::vector<CellPosition> waiting;
  for (std::size_t i = first; i < stack_.size(); ++i) {
    if (stack_[i].waits && !stack_[i].dropped) waiting.push_back(stack_[i].position);
  }
  const std::vector<CellPosition> circle = circles_.Of(waiting);
  for (const CellPosition& needed : NeededBy(circle)) {
    // Where it waits itself, it is part of a circle that only the values make.
    const auto place = places_.find(Key(needed));
    if (place != places_.end() && stack_[place->second].waits) {
      GiveUpCircle(place->second);
      return;
    }
    bool is_circular = false;
    Push(needed, is_circular);
    if (is_circular) return;
  }
  if (stack_.back().waits) Iterate(circle);
}

void Calculator::Impl::GiveUpCircle(std::size_t first) {
  for (std::size_t i = first; i < stack_.size(); ++i) {
    if (!stack_[i].waits || stack_[i].dropped) continue;
    const CellPosition& position = stack_[i].position;
    GiveUp(position, invalidation_.ArrayIn(position.sheet, position.cell), kCircular);
  }
}

void Calculator::Impl::SetOutdated(const std::vector<CellPosition>& formulas, bool outdated) {
  for (const CellPosition& position : formulas) {
    CellStore& cells = model_.sheets[position.sheet]->cells;
    const Area* array = invalidation_.ArrayIn(position.sheet, position.cell);
    const CellAddress last =
        array ? CellAddress{array->last_row, array->last_column} : position.cell;
    for (int column = position.cell.column; column <= last.column; ++column) {
      for (int row = position.cell.row; row <= last.row; ++row) {
        cells.SetFlag({row, column}, kNeedsCalculation, outdated);
      }
    }
  }
}

std::vector<CellPosition> Calculator::Impl::NeededBy(const std::vector<CellPosition>& circle) {
  std::vector<CellPosition> needed;
  SetOutdated(circle, false);
  for (const CellPosition& position : circle) {
    const SheetModel& sheet = *model_.sheets[position.sheet];
    const Evaluation evaluation =
        Evaluate(model_, sheet.formulas[sheet.cells.Get(position.cell).formula], position,
                 invalidation_.ArrayIn(position.sheet, position.cell));
    ++evaluations_;
    needed.insert(needed.end(), evaluation.pending.begin(), evaluation.pending.end());
  }
  SetOutdated(circle, true);
  std::sort(needed.begin(), needed.end());
  needed.erase(std::unique(needed.begin(), needed.end()), needed.end());
  return needed;
}

void Calculator::Impl::Iterate(const std::vector<CellPosition>& circle) {
  SetOutdated(circle, false);
  for (int round = 0; round < model_.iteration.most_rounds; ++round) {
    const std::optional<double> change = IterateOnce(circle);
    if (!change || *change <= model_.iteration.largest_change) return;
  }
}

std::optional<double> Calculator::Impl::IterateOnce(const std::vector<CellPosition>& circle) {
  double largest = 0;
  for (const CellPosition& position : circle) {
    const SheetModel& sheet = *model_.sheets[position.sheet];
    const Formula& formula = sheet.formulas[sheet.cells.Get(position.cell).formula];
    const Area* array = invalidation_.ArrayIn(position.sheet, position.cell);
    const Evaluation evaluation = Evaluate(model_, formula, position, array);
    ++evaluations_;
    if (evaluation.outcome != Evaluation::Outcome::kValue) {
      const bool uncalculable = evaluation.outcome == Evaluation::Outcome::kUncalculable;
      for (const CellPosition& member : circle) {
        GiveUp(member, invalidation_.ArrayIn(member.sheet, member.cell),
               uncalculable ? evaluation.reason : kCircular);
      }
      return std::nullopt;
    }
    const CellValue before = sheet.cells.Get(position.cell).value;
    largest = std::max(largest, ChangeBetween(before, evaluation.value));
    Finish(position, array, evaluation);
  }
  return largest;
}

void Calculator::Impl::Tidy() {
  std::erase_if(stack_, [](const Pending& pending) { return pending.dropped; });
  for (std::size_t i = 0; i < stack_.size(); ++i) places_[Key(stack_[i].position)] = i;
}

void Calculator::Impl::Finish(const CellPosition& position, const Area* array,
                              const Evaluation& evaluation) {
  CellStore& cells = model_.sheets[position.sheet]->cells;
  auto put = [&](CellAddress cell, const CellValue& value) {
    cells.SetValue(cell, value);
    cells.SetFlag(cell, kNeedsCalculation, false);
  };
  if (array) {
    for (int row = 0; row < array->rows(); ++row) {
      for (int column = 0; column < array->columns(); ++column) {
        put({array->first_row + row, array->first_column + column},
            evaluation.array.at(row).at(column));
      }
    }
  } else {
    put(position.cell, evaluation.value);
  }
  auto& reasons = reasons_[position.sheet];
  if (!reasons.empty()) reasons.erase({position.cell.row, position.cell.column});
  invalidation_.NoteCalculated(position.sheet, cells.Get(position.cell).formula);
}

void Calculator::Impl::GiveUp(const CellPosition& position, const Area* array,
                              const std::string& reason) {
  SheetModel& sheet = *model_.sheets[position.sheet];
  auto flag = [&](CellAddress cell) {
    sheet.cells.SetFlag(cell, kNeedsCalculation, false);
    sheet.cells.SetFlag(cell, kStale, true);
  };
  if (array) {
    for (int row = array->first_row; row <= array->last_row; ++row) {
      for (int column = array->first_column; column <= array->last_column; ++column) {
        flag({row, column});
      }
    }
  } else {
    flag(position.cell);
  }
  reasons_[position.sheet][{position.cell.row, position.cell.column}] = reason;
  invalidation_.NoteCalculated(position.sheet, sheet.cells.Get(position.cell).formula);
}

std::vector<Uncalculated> Calculator::Impl::Uncalculable() const {
  std::vector<Uncalculated> all;
  for (int sheet : model_.tab_order) {
    if (static_cast<std::size_t>(sheet) >= reasons_.size()) continue;
    for (const auto& [place, reason] : reasons_[sheet]) {
      CellAddress cell{place.first, place.second};
      Cell stored = model_.sheets[sheet]->cells.Get(cell);
      if (stored.formula && (stored.flags & kStale)) all.push_back({sheet, cell, reason});
    }
  }
  return all;
}

std::string Calculator::Impl::ReasonFor(int sheet, CellAddress cell) const {
  Cell stored = model_.sheets[sheet]->cells.Get(cell);
  if (!(stored.flags & kStale) || static_cast<std::size_t>(sheet) >= reasons_.size()) return {};
  // A result of an array formula is as its formula is.
  if (!stored.formula) cell = invalidation_.MasterOf(sheet, cell).value_or(cell);
  auto found = reasons_[sheet].find({cell.row, cell.column});
  return found == reasons_[sheet].end() ? std::string() : found->second;
}

Calculator::Calculator(WorkbookModel& model) : impl_(std::make_unique<Impl>(model)) {}
Calculator::~Calculator() = default;

void Calculator::Changed(int sheet, const Area& area) {
  impl_->ApplyNameChanges();
  impl_->Changed(sheet, area);
}

void Calculator::RowsHidden(int sheet, const Area& area) {
  impl_->ApplyNameChanges();
  impl_->RowsHidden(sheet, area);
}

void Calculator::NamesChanged() { impl_->NamesChanged(); }

void Calculator::InsertColumns(const ColumnInsertion& insertion) {
  impl_->ApplyNameChanges();
  impl_->InsertColumns(insertion);
}

bool Calculator::EnsureCalculated(int sheet, CellAddress cell) {
  impl_->ApplyNameChanges();
  return impl_->EnsureCalculated(sheet, cell);
}

bool Calculator::EnsureCalculated(int sheet, const Area& area) {
  impl_->ApplyNameChanges();
  return impl_->EnsureCalculated(sheet, area);
}

void Calculator::CalculateAll() {
  impl_->ApplyNameChanges();
  impl_->CalculateAll();
}

void Calculator::CalculateAllAndNew() {
  impl_->ApplyNameChanges();
  impl_->CalculateAllAndNew();
}

void Calculator::CalculateOnEntry(int sheet, const Area& area) {
  impl_->CalculateOnEntry(sheet, area);
}

std::vector<Uncalculated> Calculator::Uncalculable() const { return impl_->Uncalculable(); }

std::string Calculator::ReasonFor(int sheet, CellAddress cell) const {
  return impl_->ReasonFor(sheet, cell);
}

std::size_t Calculator::evaluations() const { return impl_->evaluations(); }

}  // namespace vantora::embedded
