// Formula text to expression tree.
#include <charconv>
#include <utility>

#include "formula/lexical.h"
#include "formula/program.h"
#include "formula/sheet_prefix.h"

namespace vantora::embedded {
namespace {

using Kind = Node::Kind;

// Thrown within this file alone, when the text is no formula that can be calculated.
struct CannotCompile {
  std::string reason;
};

constexpr std::string_view kUnreadable = "the formula can't be read";
constexpr int kDeepestNesting = 300;

struct BinaryOperator {
  std::string_view sign;
  Kind kind;
  int precedence;
};

// Longer signs stand before those they start with.
constexpr BinaryOperator kBinaryOperators[] = {
    {"<=", Kind::kLessOrEqual, 1}, {">=", Kind::kGreaterOrEqual, 1},
    {"<>", Kind::kNotEqual, 1},    {"=", Kind::kEqual, 1},
    {"<", Kind::kLess, 1},         {">", Kind::kGreater, 1},
    {"&", Kind::kJoin, 2},         {"+", Kind::kAdd, 3},
    {"-", Kind::kSubtract, 3},     {"*", Kind::kMultiply, 4},
    {"/", Kind::kDivide, 4},       {"^", Kind::kPower, 5},
};

class Compiler {
 public:
  explicit Compiler(const Formula& formula) : formula_(formula), text_(formula.text) {}

  Program Run() {
    try {
      program_.root = ReadExpression(1);
      SkipBlanks();
      if (position_ < text_.size()) throw Unreadable();
      const Kind kind = program_.nodes[program_.root].kind;
      program_.cancels =
          (kind == Kind::kAdd || kind == Kind::kSubtract) && program_.root != in_parentheses_;
    } catch (const CannotCompile& problem) {
      program_ = Program();
      program_.reason = problem.reason;
      program_.is_malformed = problem.reason == kUnreadable;
    }
    return std::move(program_);
  }

 private:
  static CannotCompile Unreadable() { return {std::string(kUnreadable)}; }

  char Peek(std::size_t ahead = 0) const {
    return position_ + ahead < text_.size() ? text_[position_ + ahead] : '\0';
  }
  bool SkipBlanks() {
    const std::size_t start = position_;
    while (IsBlank(Peek())) ++position_;
    return position_ > start;
  }
  bool Take(char c) {
    SkipBlanks();
    if (Peek() != c) return false;
    ++position_;
    return true;
  }

  std::uint32_t Add(Kind kind, std::initializer_list<std::uint32_t> operands = {},
                    std::uint32_t index = 0) {
    Node node;
    node.kind = kind;
    node.index = index;
    return Add(node, operands);
  }
  template <typename Operands>
  std::uint32_t Add(Node node, const Operands& operands) {
    node.first = static_cast<std::uint32_t>(program_.operands.size());
    node.count = static_cast<std::uint32_t>(operands.size());
    program_.operands.insert(program_.operands.end(), operands.begin(), operands.end());
    program_.nodes.push_back(node);
    return static_cast<std::uint32_t>(program_.nodes.size() - 1);
  }

  // Operators of at least this precedence, all of which group from the left.
  std::uint32_t ReadExpression(int precedence) {
    if (++nesting_ > kDeepestNesting) throw CannotCompile{"the formula is nested too deeply"};
    std::uint32_t left = ReadSigned();
    for (;;) {
      SkipBlanks();
      const BinaryOperator* next = nullptr;
      for (const BinaryOperator& candidate : kBinaryOperators) {
        if (text_.substr(position_, candidate.sign.size()) == candidate.sign) {
          next = &candidate;
          break;
        }
      }
      if (!next || next->precedence < precedence) break;
      position_ += next->sign.size();
      const std::uint32_t right = ReadExpression(next->precedence + 1);
      left = Add(next->kind, {left, right});
    }
    --nesting_;
    return left;
  }

  // A sign binds more tightly than any operator but "%": -2^2 is 4.
  std::uint32_t ReadSigned() {
    std::vector<Kind> signs;
    for (;;) {
      if (Take('-')) {
        signs.push_back(Kind::kMinus);
      } else if (Take('+')) {
        signs.push_back(Kind::kPlus);
      } else {
        break;
      }
    }
    std::uint32_t node = ReadIntersection();
    while (Take('%')) node = Add(Kind::kPercent, {node});
    while (!signs.empty()) {
      node = Add(signs.back(), {node});
      signs.pop_back();
    }
    return node;
  }

  // Two references with a blank between them.
  std::uint32_t ReadIntersection() {
    std::uint32_t node = ReadRange();
    for (;;) {
      const std::size_t start = position_;
      if (!SkipBlanks() || !StartsReference()) {
        position_ = start;
        return node;
      }
      const std::uint32_t right = ReadRange();
      node = Add(Kind::kIntersection, {node, right});
    }
  }
  bool StartsReference() const {
    const char c = Peek();
    return c == kReferenceMark || c == '(' || c == '\'' || c == '[' || IsNameStart(c);
  }

  std::uint32_t ReadRange() {
    // However often it is written, "@" means the same cell.
    bool with_cell = false;
    while (Take('@')) with_cell = true;
    if (with_cell) return Add(Kind::kIntersectWithCell, {ReadRange()});
    std::uint32_t node = ReadPrimary();
    for (;;) {
      const std::size_t start = position_;
      if (!Take(':')) {
        position_ = start;
        return node;
      }
      const std::uint32_t right = ReadPrimary();
      node = Add(Kind::kRange, {node, right});
    }
  }

  std::uint32_t ReadPrimary() {
    SkipBlanks();
    const char c = Peek();
    if (c == kReferenceMark) return ReadReference();
    if (c == '(') return ReadParentheses();
    if (c == '"') return ReadText();
    if (c == '{') return ReadArray();
    if (c == '#') return ReadError();
    if (IsDigit(c) || c == '.') return ReadNumber();
    if (c == '\'') return ReadBehindSheet(EndOfQuoted(text_, position_));
    if (c == '[') return ReadTable();
    if (IsNameStart(c)) return ReadWord();
    throw Unreadable();
  }

  std::uint32_t ReadTable() {
    if (text_[position_] == '[') {
      std::size_t word = EndOfName(text_, EndOfBrackets(text_, position_));
      if (word < text_.size() && text_[word] == ':') word = EndOfName(text_, word + 1);
      if (word < text_.size() && text_[word] == '!') {
        throw CannotCompile{"it refers to another workbook"};
      }
    }
    if (!ReadTableReference(text_, position_)) {
      throw CannotCompile{"the reference to a table can't be read"};
    }
    return Add(Kind::kTable, {}, next_table_++);
  }

  std::uint32_t ReadReference() {
    ++position_;
    if (next_reference_ >= formula_.references.size()) throw Unreadable();
    const std::uint32_t node = Add(Kind::kReference, {}, next_reference_++);
    if (Peek() == '#') throw CannotCompile{"references to spilled arrays are not supported"};
    return node;
  }

  std::uint32_t ReadParentheses() {
    ++position_;
    std::uint32_t node = ReadExpression(1);
    while (Take(',')) {
      const std::uint32_t right = ReadExpression(1);
      node = Add(Kind::kUnion, {node, right});
    }
    if (!Take(')')) throw Unreadable();
    in_parentheses_ = node;
    return node;
  }

  std::uint32_t ReadText() {
    const std::size_t end = EndOfQuoted(text_, position_);
    if (end - position_ < 2 || text_[end - 1] != '"') throw Unreadable();
    std::string text;
    for (std::size_t i = position_ + 1; i + 1 < end; ++i) {
      text.push_back(text_[i]);
      if (text_[i] == '"') ++i;
    }
    position_ = end;
    program_.texts.push_back(std::move(text));
    return Add(Kind::kText, {}, static_cast<std::uint32_t>(program_.texts.size() - 1));
  }

  std::uint32_t ReadNumber() {
    const std::size_t end = EndOfNumber(text_, position_);
    Node node;
    node.kind = Kind::kNumber;
    const auto [behind, error] =
        std::from_chars(text_.data() + position_, text_.data() + end, node.number);
    if (behind != text_.data() + end || error != std::errc()) throw Unreadable();
    position_ = end;
    return Add(node, std::initializer_list<std::uint32_t>{});
  }

  std::uint32_t ReadError() {
    const std::size_t length = ErrorNameLength(text_, position_);
    const std::optional<CellError> error = ErrorOfName(text_.substr(position_, length));
    if (!error) throw Unreadable();
    position_ += length;
    // What follows "#REF!" at once is what is left of a reference to a sheet that is gone.
    if (*error == CellError::kRef) position_ = EndOfName(text_, position_);
    return Add(Kind::kError, {}, static_cast<std::uint32_t>(*error));
  }

  // A function's name, a constant, a defined name, a sheet's name.
  std::uint32_t ReadWord() {
    const std::size_t end = EndOfName(text_, position_);
    const std::string_view word = text_.substr(position_, end - position_);
    const char behind = end < text_.size() ? text_[end] : '\0';
    if (behind == '(') return ReadCall(word);
    if (behind == '!') return ReadBehindSheet(end);
    if (behind == '[') return ReadTable();
    position_ = end;
    if (EqualIgnoringAsciiCase(word, "TRUE")) return Add(Kind::kBoolean, {}, 1);
    if (EqualIgnoringAsciiCase(word, "FALSE")) return Add(Kind::kBoolean, {}, 0);
    return AddName("", word);
  }

  // A name of a sheet ("Plan!rate"). References behind a sheet that exists have become marks; what
  // else looks like one lies on a sheet that does not, or in another workbook.
  std::uint32_t ReadBehindSheet(std::size_t sheet_end) {
    std::string_view sheet = text_.substr(position_, sheet_end - position_);
    if (sheet_end >= text_.size() || text_[sheet_end] != '!') throw Unreadable();
    std::string name;
    if (sheet.front() == '\'') {
      if (sheet.find('[') != std::string_view::npos) {
        throw CannotCompile{"it refers to another workbook"};
      }
      name = WithoutDoubledQuotes(sheet.substr(1, sheet.size() - 2));
      sheet = name;
    }
    const std::size_t end = EndOfName(text_, sheet_end + 1);
    const std::string_view word = text_.substr(sheet_end + 1, end - sheet_end - 1);
    if (word.empty() || (end < text_.size() && text_[end] == '(')) throw Unreadable();
    if (ParseA1(word)) {
      throw CannotCompile{"there is no sheet \"" + std::string(sheet) + "\""};
    }
    position_ = end;
    return AddName(sheet, word);
  }

  std::uint32_t AddName(std::string_view sheet, std::string_view name) {
    UsedName used;
    used.sheet = sheet;
    used.name = name;
    program_.names.push_back(std::move(used));
    return Add(Kind::kName, {}, static_cast<std::uint32_t>(program_.names.size() - 1));
  }

  std::uint32_t ReadCall(std::string_view word) {
    const std::string upper = UpperAscii(word);
    const std::string_view name = WithoutPrefix(upper);
    Node node;
    node.kind = Kind::kCall;
    node.function = FindFunction(name);
    if (!node.function) {
      throw CannotCompile{"function " + std::string(name) + " is not supported"};
    }
    position_ += word.size() + 1;
    const std::vector<std::uint32_t> arguments = ReadArguments();
    if (static_cast<int>(arguments.size()) < node.function->least ||
        static_cast<int>(arguments.size()) > node.function->most) {
      throw CannotCompile{"function " + std::string(name) + " has too few or too many arguments"};
    }
    return Add(node, arguments);
  }

  std::vector<std::uint32_t> ReadArguments() {
    std::vector<std::uint32_t> arguments;
    if (Take(')')) return arguments;
    for (;;) {
      SkipBlanks();
      if (Peek() == ',' || Peek() == ')') {
        arguments.push_back(Add(Kind::kMissing));
      } else {
        arguments.push_back(ReadExpression(1));
      }
      if (Take(')')) return arguments;
      if (!Take(',')) throw Unreadable();
    }
  }

  std::uint32_t ReadArray() {
    ++position_;
    ArrayConstant array;
    int columns = 0;
    for (;;) {
      array.nodes.push_back(ReadConstant());
      ++columns;
      if (Take(',')) continue;
      ++array.rows;
      if (array.columns != 0 && array.columns != columns) throw Unreadable();
      array.columns = columns;
      columns = 0;
      if (Take('}')) break;
      if (!Take(';')) throw Unreadable();
    }
    program_.arrays.push_back(std::move(array));
    return Add(Kind::kArray, {}, static_cast<std::uint32_t>(program_.arrays.size() - 1));
  }

  std::uint32_t ReadConstant() {
    const bool negative = Take('-');
    if (!negative) Take('+');
    SkipBlanks();
    if (Peek() == '{') throw Unreadable();
    const std::uint32_t node = ReadPrimary();
    Node& constant = program_.nodes[node];
    if (constant.kind > Kind::kError) throw Unreadable();
    if (negative) constant.number = -constant.number;
    return node;
  }

  const Formula& formula_;
  std::string_view text_;
  std::size_t position_ = 0;
  std::uint32_t next_reference_ = 0;
  std::uint32_t next_table_ = 0;
  std::uint32_t in_parentheses_ = UINT32_MAX;
  int nesting_ = 0;
  Program program_;
};

}  // namespace

Program Compile(const Formula& formula) { return Compiler(formula).Run(); }

}  // namespace vantora::embedded
