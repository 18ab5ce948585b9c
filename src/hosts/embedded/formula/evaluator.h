// Walks an expression tree for one cell.
#pragma once

#include <algorithm>
#include <deque>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "formula/evaluate.h"
#include "formula/operand.h"
#include "formula/program.h"

namespace vantora::embedded {

class Evaluator {
 public:
  // `array_formula`: every expression is calculated for each element of its cells and arrays.
  Evaluator(WorkbookModel& model, const CellPosition& position, bool array_formula,
            Precedents precedents)
      : model_(model),
        position_(position),
        array_formula_(array_formula),
        precedents_(precedents) {}

  WorkbookModel& model() const { return model_; }
  const CellPosition& position() const { return position_; }
  // Whether what is being run is calculated for each element: an array formula, or a name's
  // formula.
  bool array_formula() const { return frame_.array_mode; }

  Operand Run(const Formula& formula, const Program& program);

  // Once a precedent was found to be out of date, or something that can't be calculated: nothing
  // more is evaluated, and what is returned until the end is an error value that no one sees.
  bool stopped() const { return !pending_.empty() || !reason_.empty(); }
  void Stop(std::string reason) {
    if (!stopped()) reason_ = std::move(reason);
  }
  std::vector<CellPosition>& pending() { return pending_; }
  std::string& reason() { return reason_; }

  // --- Cells ---

  Scalar ReadCell(int sheet, CellAddress cell);
  // Calls visit(row, column, value) for the existing cells of the block, column by column; blank
  // ones that only have a format are left out. All cells that are out of date are noted.
  template <typename Visitor>
  void ForEachCell(const Block& block, Visitor&& visit) {
    const CellStore& cells = model_.sheets[block.sheet]->cells;
    const int last = std::min(block.area.last_column, cells.LastColumn());
    for (int column = block.area.first_column; column <= last; ++column) {
      cells.ForEachInColumn(column, block.area.first_row, block.area.last_row,
                            [&](int row, const Cell& cell) {
                              if (!IsUpToDate(block.sheet, {row, column}, cell)) return;
                              if (cell.value.kind == CellKind::kBlank) return;
                              visit(row, column, ScalarOf(cell.value));
                            });
    }
  }
  // Notes all cells of the block that are out of date; true when there is none.
  bool EnsureUpToDate(const Block& block);
  void NoteOutOfDate(const Block& block) {
    ForEachCell(block, [](int, int, const Scalar&) {});
  }
  // Where the value may stand in a column or row of cells, by ascending place: see LineIndex.
  // nullopt when that is not known and the cells are to be read one by one. Valid until the next
  // call of this or EnsureUpToDate.
  std::optional<std::span<const LineIndex::Entry>> CandidatesIn(const Block& line,
                                                                const Scalar& value);

  // --- Operands ---

  // A single value: of a block the cell in the formula's row or column, of an array the first one.
  Scalar ToScalar(const Operand& operand);
  // An array of blank values; nullopt, and the evaluation stops, when it would be too large.
  std::optional<Array> NewArray(int rows, int columns);
  // A value or an array: blocks become arrays.
  Operand ToValues(const Operand& operand);
  // What a value parameter gets: ToValues where each element is wanted, else arrays as they are and
  // the one cell of a block.
  Operand ToParameter(const Operand& operand, bool array_mode);
  // Rows and columns of an operand; 1 and 1 for a value. Several blocks have none.
  static std::optional<std::pair<int, int>> SizeOf(const Operand& operand);
  // The element at 0-based coordinates.
  Scalar ElementAt(const Operand& operand, int row, int column);

  // Keeps a text until the end of the evaluation.
  std::string_view Keep(std::string text) {
    texts_.push_back(std::move(text));
    return texts_.back();
  }

  // Evaluates one node of the program that is being run.
  Operand Evaluate(std::uint32_t node, bool array_mode);

  // The cells that a text like "Plan!A1:B2" or a defined name refers to; an error value when none.
  Operand ReferenceFromText(std::string_view text);

 private:
  // The formula being run: the cell's, or a name's.
  struct Frame {
    const Formula* formula;
    const Program* program;
    // References that leave the sheet come in again at its other side, as a name's do.
    bool wraps;
    // Every expression is calculated for each element of its cells and arrays.
    bool array_mode;
  };

  Operand RunFrame(const Frame& frame);
  Operand EvaluateNode(const Node& node, bool array_mode);
  bool IsUpToDate(int sheet, CellAddress cell, const Cell& stored);
  Scalar ScalarOf(const CellValue& value) const;

  Operand EvaluateReference(const Reference& reference);
  Operand EvaluateTable(const TableReference& reference);
  Operand EvaluateName(const UsedName& name);
  Operand EvaluateDefinedName(const DefinedName& name, const UsedName& used);
  Operand EvaluateArray(const ArrayConstant& constant);
  Operand EvaluateOperator(const Node& node, bool array_mode);
  Operand EvaluateReferenceOperator(const Node& node, bool array_mode);
  Operand EvaluateCall(const Node& node, bool array_mode);
  Operand CallWithValues(const Node& node, std::vector<Operand>& arguments, bool array_mode);
  Operand CallForEachElement(const Node& node, const std::vector<Operand>& arguments,
                             bool array_mode);
  Operand CallOnce(const Node& node, std::vector<Operand>& arguments, bool array_mode);

  WorkbookModel& model_;
  CellPosition position_;
  bool array_formula_;
  Precedents precedents_;
  Frame frame_{};
  int names_deep_ = 0;
  int names_evaluated_ = 0;
  int nodes_deep_ = 0;
  std::deque<std::string> texts_;
  std::vector<CellPosition> pending_;
  std::string reason_;
};

// The element of an array at 0-based coordinates, a single row or column repeated, #N/A beyond its
// ends; a value itself.
Scalar RepeatedElement(const Operand& operand, int row, int column);

// The operators on two single values (and on one: `b` is not looked at for a sign or percent).
Scalar Calculate(Evaluator& evaluator, Node::Kind kind, const Scalar& a, const Scalar& b);
// A value in arithmetic; an error value when it is none.
Scalar ToNumber(Evaluator& evaluator, const Scalar& value);

}  // namespace vantora::embedded
