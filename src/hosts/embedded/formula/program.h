// The calculation form of a formula: its expression as a tree.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "formula/formula.h"
#include "formula/function.h"

namespace vantora::embedded {

// One node; its operands are `count` entries of Program::operands from `first` on.
struct Node {
  enum class Kind : std::uint8_t {
    kNumber,     // number
    kText,       // texts[index]
    kBoolean,    // index is 0 or 1
    kError,      // index is a CellError
    kMissing,    // an argument that is left out
    kReference,  // references[index] of the formula
    kName,       // names[index]
    kArray,      // arrays[index]
    kTable,      // tables[index] of the formula
    kPlus,       // operators, from here on
    kMinus,
    kPercent,
    kIntersectWithCell,  // "@"
    kAdd,
    kSubtract,
    kMultiply,
    kDivide,
    kPower,
    kJoin,
    kEqual,
    kNotEqual,
    kLess,
    kLessOrEqual,
    kGreater,
    kGreaterOrEqual,
    kRange,         // A1:INDEX(...)
    kIntersection,  // A1:B2 B1:C2
    kUnion,         // (A1,B2)
    kCall,          // function with the operands as its arguments
  };
  Kind kind = Kind::kMissing;
  std::uint32_t index = 0;
  std::uint32_t first = 0;
  std::uint32_t count = 0;
  double number = 0;
  const FunctionEntry* function = nullptr;
};

// A defined name used in a formula. What it refers to is read once and again when that has changed.
struct UsedName {
  // Empty when the name is written without a sheet.
  std::string sheet;
  std::string name;
  mutable std::string refers_to;
  mutable std::shared_ptr<const Formula> formula;
};

// The elements of "{1,2;3,4}" by row; each is the index of a constant's node.
struct ArrayConstant {
  int rows = 0;
  int columns = 0;
  std::vector<std::uint32_t> nodes;
};

class Program {
 public:
  // Why the formula can't be calculated, in plain words; empty when it can.
  std::string reason;
  // The text is no formula in any program (a parenthesis is missing).
  bool is_malformed = false;
  std::vector<Node> nodes;
  std::vector<std::uint32_t> operands;
  std::vector<std::string> texts;
  std::vector<UsedName> names;
  std::vector<ArrayConstant> arrays;
  std::uint32_t root = 0;
  // The last operation is a sum or difference outside parentheses: it is 0 when the two numbers
  // cancel out but for their last bits.
  bool cancels = false;
};

Program Compile(const Formula& formula);

// Whether a relation (kEqual to kGreaterOrEqual) holds between two values whose order is `order`:
// negative, 0 or positive, as CompareScalars gives it.
bool RelationHolds(Node::Kind relation, int order);

}  // namespace vantora::embedded
