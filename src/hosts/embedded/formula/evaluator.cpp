#include "formula/evaluator.h"

#include <algorithm>
#include <cmath>

#include "formula/function.h"
#include "formula/lexical.h"

namespace vantora::embedded {
namespace {

using Kind = Node::Kind;

constexpr int kDeepestNames = 64;
// Names that each use the next one twice double the work at every step.
constexpr int kMostNames = 1 << 17;
// More than the longest formula that can be entered needs, and within any thread's stack.
constexpr int kDeepestNodes = 2800;
// Elements of the largest array that is built.
constexpr std::size_t kLargestArray = std::size_t{1} << 22;

Scalar ValueError() { return Scalar::Error(CellError::kValue); }

// As At of a reference, but round the sheet's edges.
std::optional<Area> WrappedArea(Reference reference, CellAddress cell) {
  const auto wrap = [](int value, int size) { return (value - 1 + size) % size + 1; };
  if (!reference.row1_absolute) reference.row1 = wrap(cell.row + reference.row1, kMaxRow);
  if (!reference.row2_absolute) reference.row2 = wrap(cell.row + reference.row2, kMaxRow);
  if (!reference.column1_absolute) {
    reference.column1 = wrap(cell.column + reference.column1, kMaxColumn);
  }
  if (!reference.column2_absolute) {
    reference.column2 = wrap(cell.column + reference.column2, kMaxColumn);
  }
  reference.row1_absolute = reference.row2_absolute = true;
  reference.column1_absolute = reference.column2_absolute = true;
  return reference.At(cell);
}

// Whether the last bits are all that is left of the two numbers: they agree in 50 bits or more.
bool CancelsOut(double a, double b, double result) {
  if (result == 0 || a == 0 || b == 0) return false;
  return std::max(std::ilogb(a), std::ilogb(b)) - std::ilogb(result) >= 50;
}

std::optional<Block> Intersect(const Block& a, const Block& b) {
  if (a.sheet != b.sheet || !a.area.Intersects(b.area)) return std::nullopt;
  return Block{a.sheet,
               {std::max(a.area.first_row, b.area.first_row),
                std::max(a.area.first_column, b.area.first_column),
                std::min(a.area.last_row, b.area.last_row),
                std::min(a.area.last_column, b.area.last_column)}};
}

}  // namespace

Operand Evaluator::Run(const Formula& formula, const Program& program) {
  return RunFrame({&formula, &program, false, array_formula_});
}

Operand Evaluator::RunFrame(const Frame& frame) {
  if (!frame.program->reason.empty()) {
    Stop(frame.program->reason);
    return ValueError();
  }
  const Frame outer = std::exchange(frame_, frame);
  Operand result;
  const Node& root = frame.program->nodes[frame.program->root];
  if (frame.program->cancels && !frame.array_mode) {
    const Scalar a = ToScalar(Evaluate(frame.program->operands[root.first], false));
    const Scalar b = ToScalar(Evaluate(frame.program->operands[root.first + 1], false));
    Scalar sum = Calculate(*this, root.kind, a, b);
    if (sum.IsNumber()) {
      const Scalar left = ToNumber(*this, a), right = ToNumber(*this, b);
      if (CancelsOut(left.number, right.number, sum.number)) sum.number = 0;
    }
    result = sum;
  } else {
    result = Evaluate(frame.program->root, frame.array_mode);
  }
  frame_ = outer;
  return result;
}

// --- Cells ---

Scalar Evaluator::ScalarOf(const CellValue& value) const {
  Scalar scalar;
  scalar.kind = value.kind;
  switch (value.kind) {
    case CellKind::kNumber:
      scalar.number = value.number;
      break;
    case CellKind::kText:
      scalar.text = model_.strings[value.text];
      break;
    case CellKind::kBoolean:
      scalar.boolean = value.boolean;
      break;
    case CellKind::kError:
      scalar.error = value.error;
      break;
    default:
      scalar.kind = CellKind::kBlank;
  }
  return scalar;
}

bool Evaluator::IsUpToDate(int sheet, CellAddress cell, const Cell& stored) {
  if ((stored.flags & (kNeedsCalculation | kStale)) == 0) return true;
  if (precedents_ == Precedents::kAsTheyAre && !(stored.flags & kStale)) return true;
  if (stored.flags & kStale) {
    if (!reason_.empty()) return false;
    reason_ =
        "it depends on " + model_.NameOf(sheet) + "!" + ToA1(cell) + ", which can't be calculated";
  } else {
    pending_.push_back({sheet, cell});
  }
  return false;
}

Scalar Evaluator::ReadCell(int sheet, CellAddress cell) {
  if (stopped()) return ValueError();
  const Cell stored = model_.sheets[sheet]->cells.Get(cell);
  if (!stored.exists()) return Scalar::Blank();
  if (!IsUpToDate(sheet, cell, stored)) return ValueError();
  return ScalarOf(stored.value);
}

bool Evaluator::EnsureUpToDate(const Block& block) {
  const bool as_they_are = precedents_ == Precedents::kAsTheyAre;
  const CellStore& cells = model_.sheets[block.sheet]->cells;
  if (!as_they_are && model_.line_indexes.AreUpToDate(cells, block)) return !stopped();
  NoteOutOfDate(block);
  if (!stopped() && !as_they_are) model_.line_indexes.NoteUpToDate(cells, block);
  return !stopped();
}

std::optional<std::span<const LineIndex::Entry>> Evaluator::CandidatesIn(const Block& line,
                                                                         const Scalar& value) {
  if (stopped() || precedents_ == Precedents::kAsTheyAre) return std::nullopt;
  const LineIndex* index =
      model_.line_indexes.Find(model_.sheets[line.sheet]->cells, model_.strings, line);
  if (!index) return std::nullopt;
  // The index may go on beyond the line.
  const std::span<const LineIndex::Entry> candidates = index->CandidatesFor(value);
  const int length = std::max(line.area.rows(), line.area.columns());
  const auto end = std::ranges::lower_bound(candidates, length, {}, &LineIndex::Entry::place);
  return candidates.first(end - candidates.begin());
}

// --- Operands ---

Scalar Evaluator::ToScalar(const Operand& operand) {
  switch (operand.kind) {
    case Operand::Kind::kScalar:
    case Operand::Kind::kMissing:
      return operand.scalar;
    case Operand::Kind::kArray:
      return operand.array->values.empty() ? ValueError() : operand.array->values[0];
    case Operand::Kind::kBlocks:
      return ValueError();
    case Operand::Kind::kBlock:
      break;
  }
  const Block& block = operand.block;
  CellAddress cell{block.area.first_row, block.area.first_column};
  if (block.area.rows() > 1) {
    if (block.area.columns() > 1) return ValueError();
    cell.row = position_.cell.row;
  } else if (block.area.columns() > 1) {
    cell.column = position_.cell.column;
  }
  if (!block.area.Contains(cell)) return ValueError();
  return ReadCell(block.sheet, cell);
}

std::optional<Array> Evaluator::NewArray(int rows, int columns) {
  const std::size_t size = static_cast<std::size_t>(rows) * columns;
  if (size > kLargestArray) {
    Stop("it builds an array of " + std::to_string(size) + " values");
    return std::nullopt;
  }
  return Array(rows, columns);
}

Operand Evaluator::ToValues(const Operand& operand) {
  if (operand.kind == Operand::Kind::kBlocks) return ValueError();
  if (!operand.IsBlock()) return operand;
  const Block& block = operand.block;
  if (block.IsCell()) return ToScalar(operand);
  std::optional<Array> array = NewArray(block.area.rows(), block.area.columns());
  if (!array) return ValueError();
  ForEachCell(block, [&](int row, int column, const Scalar& value) {
    array->At(row - block.area.first_row, column - block.area.first_column) = value;
  });
  return *std::move(array);
}

Operand Evaluator::ToParameter(const Operand& operand, bool array_mode) {
  if (operand.IsScalar() || operand.IsMissing() || operand.IsArray()) return operand;
  if (array_mode) return ToValues(operand);
  return ToScalar(operand);
}

std::optional<std::pair<int, int>> Evaluator::SizeOf(const Operand& operand) {
  switch (operand.kind) {
    case Operand::Kind::kBlock:
      return std::pair(operand.block.area.rows(), operand.block.area.columns());
    case Operand::Kind::kArray:
      return std::pair(operand.array->rows, operand.array->columns);
    case Operand::Kind::kBlocks:
      return std::nullopt;
    default:
      return std::pair(1, 1);
  }
}

Scalar Evaluator::ElementAt(const Operand& operand, int row, int column) {
  switch (operand.kind) {
    case Operand::Kind::kBlock:
      return ReadCell(operand.block.sheet, {operand.block.area.first_row + row,
                                            operand.block.area.first_column + column});
    case Operand::Kind::kArray:
      return operand.array->At(row, column);
    case Operand::Kind::kBlocks:
      return ValueError();
    default:
      return operand.scalar;
  }
}

// --- Nodes ---

Operand Evaluator::Evaluate(std::uint32_t index, bool array_mode) {
  if (stopped()) return ValueError();
  if (++nodes_deep_ > kDeepestNodes) {
    Stop("the formula is nested too deeply");
    return ValueError();
  }
  Operand result = EvaluateNode(frame_.program->nodes[index], array_mode);
  --nodes_deep_;
  return result;
}

Operand Evaluator::EvaluateNode(const Node& node, bool array_mode) {
  const Program& program = *frame_.program;
  switch (node.kind) {
    case Kind::kNumber:
      return Scalar::Number(node.number);
    case Kind::kText:
      return Scalar::Text(program.texts[node.index]);
    case Kind::kBoolean:
      return Scalar::Boolean(node.index != 0);
    case Kind::kError:
      return Scalar::Error(static_cast<CellError>(node.index));
    case Kind::kMissing:
      return Operand::Missing();
    case Kind::kReference:
      return EvaluateReference(frame_.formula->references[node.index]);
    case Kind::kName:
      return EvaluateName(program.names[node.index]);
    case Kind::kTable:
      return EvaluateTable(frame_.formula->tables[node.index]);
    case Kind::kArray:
      return EvaluateArray(program.arrays[node.index]);
    case Kind::kIntersectWithCell:
      return ToScalar(Evaluate(program.operands[node.first], false));
    case Kind::kRange:
    case Kind::kIntersection:
    case Kind::kUnion:
      return EvaluateReferenceOperator(node, array_mode);
    case Kind::kCall:
      return EvaluateCall(node, array_mode);
    default:
      return EvaluateOperator(node, array_mode);
  }
}

Operand Evaluator::EvaluateReference(const Reference& reference) {
  const std::optional<Area> area =
      frame_.wraps ? WrappedArea(reference, position_.cell) : reference.At(position_.cell);
  if (!area) return Scalar::Error(CellError::kRef);
  if (reference.first_sheet == reference.last_sheet) {
    return Block{
        reference.first_sheet == Reference::kOwnSheet ? position_.sheet : reference.first_sheet,
        *area};
  }
  // All worksheets between the two, in tab order.
  int from = model_.PositionOf(reference.first_sheet);
  int to = model_.PositionOf(reference.last_sheet);
  if (from > to) std::swap(from, to);
  std::vector<Block> blocks;
  for (int tab = from; tab <= to; ++tab) {
    const int sheet = model_.tab_order[tab];
    if (model_.sheets[sheet]->is_worksheet) blocks.push_back({sheet, *area});
  }
  return Operand(std::move(blocks));
}

Operand Evaluator::EvaluateTable(const TableReference& reference) {
  const Table* table = reference.table.empty() ? model_.TableAt(position_.sheet, position_.cell)
                                               : model_.FindTable(reference.table);
  if (!table) {
    Stop(reference.table.empty() ? "it stands in no table, but refers to its own"
                                 : "there is no table \"" + reference.table + "\"");
    return ValueError();
  }
  TableCells cells = FindCells(reference, *table);
  switch (cells.outcome) {
    case TableCells::Outcome::kNoColumn:
      Stop("the table \"" + table->name + "\" has no column \"" + reference.first_column + "\"" +
           (reference.last_column == reference.first_column
                ? ""
                : " or no column \"" + reference.last_column + "\""));
      return ValueError();
    case TableCells::Outcome::kNoCells:
      return Scalar::Error(CellError::kRef);
    case TableCells::Outcome::kFound:
      break;
  }
  if (reference.parts == TableReference::kThisRow) {
    const int row = position_.cell.row;
    if (row < cells.area.first_row || row > cells.area.last_row) return ValueError();
    cells.area.first_row = cells.area.last_row = row;
  }
  return Block{table->sheet, cells.area};
}

Operand Evaluator::EvaluateName(const UsedName& used) {
  int sheet = position_.sheet;
  if (!used.sheet.empty()) {
    const std::optional<int> named = model_.IdOf(used.sheet);
    if (!named) {
      Stop("there is no sheet \"" + used.sheet + "\"");
      return ValueError();
    }
    sheet = *named;
  }
  const DefinedName* name = model_.FindName(used.name, sheet);
  if (!name) {
    // A table's name alone is its data.
    if (used.sheet.empty() && model_.FindTable(used.name)) {
      TableReference data;
      data.table = used.name;
      return EvaluateTable(data);
    }
    return Scalar::Error(CellError::kName);
  }
  if (++names_deep_ > kDeepestNames) {
    Stop("the name " + used.name + " refers to itself");
    return ValueError();
  }
  if (++names_evaluated_ > kMostNames) {
    Stop("the name " + used.name + " uses other names too often");
    return ValueError();
  }
  Operand result = EvaluateDefinedName(*name, used);
  --names_deep_;
  return result;
}

Operand Evaluator::EvaluateDefinedName(const DefinedName& name, const UsedName& used) {
  if (!used.formula || used.refers_to != name.refers_to) {
    // Relative references of a name are written as they read in the first cell.
    auto formula = std::make_shared<Formula>(ParseFormula(name.refers_to, {1, 1}, model_));
    formula->program = std::make_shared<Program>(Compile(*formula));
    used.refers_to = name.refers_to;
    used.formula = std::move(formula);
  }
  // Kept alive: a name that refers to itself is evaluated again within.
  const std::shared_ptr<const Formula> formula = used.formula;
  // A name's formula is calculated for each element, as an array formula is.
  return RunFrame({formula.get(), formula->program.get(), true, true});
}

Operand Evaluator::EvaluateArray(const ArrayConstant& constant) {
  Array array(constant.rows, constant.columns);
  for (std::size_t i = 0; i < constant.nodes.size(); ++i) {
    array.values[i] = Evaluate(constant.nodes[i], false).scalar;
  }
  return array;
}

Operand Evaluator::EvaluateOperator(const Node& node, bool array_mode) {
  const std::vector<std::uint32_t>& operands = frame_.program->operands;
  const Operand a = ToParameter(Evaluate(operands[node.first], array_mode), array_mode);
  Operand b;
  if (node.count == 2) {
    b = ToParameter(Evaluate(operands[node.first + 1], array_mode), array_mode);
  }
  if (!a.IsArray() && !b.IsArray()) return Calculate(*this, node.kind, a.scalar, b.scalar);
  const auto [rows_a, columns_a] = *SizeOf(a);
  const auto [rows_b, columns_b] = *SizeOf(b);
  std::optional<Array> result = NewArray(std::max(rows_a, rows_b), std::max(columns_a, columns_b));
  if (!result) return ValueError();
  for (int row = 0; row < result->rows; ++row) {
    for (int column = 0; column < result->columns; ++column) {
      result->At(row, column) = Calculate(*this, node.kind, RepeatedElement(a, row, column),
                                          RepeatedElement(b, row, column));
    }
  }
  return *std::move(result);
}

Scalar RepeatedElement(const Operand& operand, int row, int column) {
  if (!operand.IsArray()) return operand.scalar;
  const Array& array = *operand.array;
  if (array.rows == 1) row = 0;
  if (array.columns == 1) column = 0;
  if (row >= array.rows || column >= array.columns) {
    return Scalar::Error(CellError::kNotAvailable);
  }
  return array.At(row, column);
}

Operand Evaluator::EvaluateReferenceOperator(const Node& node, bool array_mode) {
  const std::vector<std::uint32_t>& operands = frame_.program->operands;
  const Operand a = Evaluate(operands[node.first], array_mode);
  const Operand b = Evaluate(operands[node.first + 1], array_mode);
  for (const Operand* operand : {&a, &b}) {
    if (operand->IsScalar() && operand->scalar.IsError()) return operand->scalar;
    if (!operand->IsReference()) return ValueError();
  }
  if (node.kind == Kind::kUnion) {
    std::vector<Block> blocks;
    for (const Operand* operand : {&a, &b}) {
      if (operand->IsBlock()) {
        blocks.push_back(operand->block);
      } else {
        blocks.insert(blocks.end(), operand->blocks->begin(), operand->blocks->end());
      }
    }
    return Operand(std::move(blocks));
  }
  if (!a.IsBlock() || !b.IsBlock()) {
    Stop("ranges between several areas are not supported");
    return ValueError();
  }
  if (node.kind == Kind::kIntersection) {
    if (const std::optional<Block> common = Intersect(a.block, b.block)) return *common;
    return Scalar::Error(CellError::kNull);
  }
  if (a.block.sheet != b.block.sheet) return ValueError();
  return Block{a.block.sheet,
               {std::min(a.block.area.first_row, b.block.area.first_row),
                std::min(a.block.area.first_column, b.block.area.first_column),
                std::max(a.block.area.last_row, b.block.area.last_row),
                std::max(a.block.area.last_column, b.block.area.last_column)}};
}

// --- Calls ---

Operand Evaluator::EvaluateCall(const Node& node, bool array_mode) {
  std::vector<Operand> arguments(node.count);
  for (std::uint32_t i = 0; i < node.count; ++i) {
    const char takes = node.function->Takes(i);
    if (takes == 'z') continue;
    const bool for_each = array_mode || takes == 'a';
    Operand value = Evaluate(frame_.program->operands[node.first + i], for_each);
    if (stopped()) return ValueError();
    arguments[i] = takes == 'v' || takes == 'e' ? ToParameter(value, array_mode) : std::move(value);
  }
  return CallWithValues(node, arguments, array_mode);
}

Operand Evaluator::CallWithValues(const Node& node, std::vector<Operand>& arguments,
                                  bool array_mode) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const char takes = node.function->Takes(i);
    if ((takes == 'v' || takes == 'e') && arguments[i].IsArray()) {
      return CallForEachElement(node, arguments, array_mode);
    }
  }
  return CallOnce(node, arguments, array_mode);
}

Operand Evaluator::CallForEachElement(const Node& node, const std::vector<Operand>& arguments,
                                      bool array_mode) {
  int rows = 1, columns = 1;
  const auto is_value = [&](std::size_t i) {
    const char takes = node.function->Takes(i);
    return takes == 'v' || takes == 'e';
  };
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (!is_value(i)) continue;
    const auto [own_rows, own_columns] = *SizeOf(arguments[i]);
    rows = std::max(rows, own_rows);
    columns = std::max(columns, own_columns);
  }
  std::optional<Array> result = NewArray(rows, columns);
  if (!result) return ValueError();
  for (int row = 0; row < rows && !stopped(); ++row) {
    for (int column = 0; column < columns; ++column) {
      std::vector<Operand> element = arguments;
      for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (is_value(i) && arguments[i].IsArray()) {
          element[i] = RepeatedElement(arguments[i], row, column);
        }
      }
      result->At(row, column) = ToScalar(CallOnce(node, element, array_mode));
    }
  }
  return *std::move(result);
}

Operand Evaluator::CallOnce(const Node& node, std::vector<Operand>& arguments, bool array_mode) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (node.function->Takes(i) == 'v' && arguments[i].scalar.IsError()) {
      return arguments[i].scalar;
    }
  }
  const std::span<const std::uint32_t> nodes(frame_.program->operands.data() + node.first,
                                             node.count);
  Call call(*this, arguments, nodes, array_mode);
  Operand result = node.function->handler(call);
  if (call.error()) return Scalar::Error(*call.error());
  return result;
}

Operand Evaluator::ReferenceFromText(std::string_view text) {
  const Formula formula = ParseFormula(text, position_.cell, model_);
  if (formula.text.size() == 1 && formula.references.size() == 1) {
    const Frame outer = std::exchange(frame_, Frame{&formula, nullptr, false, false});
    Operand result = EvaluateReference(formula.references[0]);
    frame_ = outer;
    return result;
  }
  if (formula.references.empty() && formula.names.empty() && formula.tables.size() == 1) {
    const TableReference& reference = formula.tables[0];
    const Table* table = model_.FindTable(reference.table);
    std::size_t end = 0;
    const bool is_whole =
        ReadTableReference(formula.text, end).has_value() && end == formula.text.size();
    if (is_whole && table && FindCells(reference, *table).outcome == TableCells::Outcome::kFound) {
      return EvaluateTable(reference);
    }
  }
  if (formula.references.empty() && formula.names.size() == 1) {
    UsedName name;
    const std::size_t mark = formula.text.rfind('!');
    if (mark == std::string::npos && UpperAscii(formula.text) == formula.names[0]) {
      name.name = formula.text;
      Operand result = EvaluateName(name);
      if (result.IsReference() || stopped()) return result;
    }
  }
  return Scalar::Error(CellError::kRef);
}

}  // namespace vantora::embedded
