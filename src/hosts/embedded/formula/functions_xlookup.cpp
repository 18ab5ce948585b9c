// XLOOKUP and XMATCH.
#include "formula/functions.h"
#include "formula/lookup_line.h"
#include "formula/unicode.h"

namespace vantora::embedded {
namespace {

// What counts as a hit besides an equal value.
enum class Match { kNextSmaller = -1, kExact = 0, kNextLarger = 1, kPattern = 2 };
enum class Order { kFirstToLast = 1, kLastToFirst = -1, kAscending = 2, kDescending = -2 };

struct Search {
  Scalar wanted;
  Match match = Match::kExact;
  Order order = Order::kFirstToLast;
};

// Reads the modes from arguments `i` and `i + 1`; false when one is no mode.
bool ReadModes(Call& call, std::size_t i, Search& search) {
  const int match = call.Given(i) ? call.Integer(i) : 0;
  const int order = call.Given(i + 1) ? call.Integer(i + 1) : 1;
  const bool halves = order == 2 || order == -2;
  if (match < -1 || match > 2 || order < -2 || order > 2 || order == 0 || (match == 2 && halves)) {
    call.Fail(CellError::kValue);
  }
  search.match = static_cast<Match>(match);
  search.order = static_cast<Order>(order);
  return !call.failed();
}

// A line that was sorted as the order says, by halving.
int FindByHalving(const Line& line, const Search& search) {
  const bool ascending = search.order == Order::kAscending;
  const int found = FindSorted(line, search.wanted, ascending);
  if (found >= 0 && CompareScalars(line.At(found), search.wanted) == 0) return found;
  if (search.match == Match::kExact) return -1;
  if (ascending == (search.match == Match::kNextSmaller)) return found;
  // The neighbour on the other side.
  if (found + 1 >= line.length()) return -1;
  return line.At(found + 1).kind == search.wanted.kind ? found + 1 : -1;
}

// A blank finds a blank.
int FindBlank(const Line& line, bool from_end) {
  for (int i = 0; i < line.length(); ++i) {
    const int place = from_end ? line.length() - 1 - i : i;
    if (line.At(place).IsBlank()) return place;
  }
  return -1;
}

// As FindOneByOne, where an index tells; nullopt where the line is to be read.
std::optional<int> FindIndexed(const Line& line, const Search& search, bool from_end) {
  const bool is_pattern =
      search.match == Match::kPattern && search.wanted.IsText() && IsPattern(search.wanted.text);
  if (is_pattern) return std::nullopt;
  const auto is_equal = [&](const Scalar& value) {
    return value.kind == search.wanted.kind && CompareScalars(value, search.wanted) == 0;
  };
  const std::optional<int> found = line.FindIndexed(search.wanted, from_end, is_equal);
  const bool takes_others =
      search.match == Match::kNextSmaller || search.match == Match::kNextLarger;
  return found == -1 && takes_others ? std::nullopt : found;
}

int FindOneByOne(const Line& line, const Search& search) {
  const bool from_end = search.order == Order::kLastToFirst;
  if (search.wanted.IsBlank()) return FindBlank(line, from_end);
  if (const std::optional<int> found = FindIndexed(line, search, from_end)) return *found;
  int exact = -1, nearest = -1;
  Scalar nearest_value;
  line.FindFirst(0, [&](int i, const Scalar& value) {
    if (value.kind != search.wanted.kind) return false;
    if (search.match == Match::kPattern && value.IsText()) {
      if (MatchesPattern(value.text, search.wanted.text)) exact = i;
      return exact >= 0 && !from_end;
    }
    const int order = CompareScalars(value, search.wanted);
    if (order == 0) {
      exact = i;
      return !from_end;
    }
    const bool is_candidate = (search.match == Match::kNextSmaller && order < 0) ||
                              (search.match == Match::kNextLarger && order > 0);
    if (!is_candidate) return false;
    const int closer = nearest < 0 ? 1
                       : order < 0 ? CompareScalars(value, nearest_value)
                                   : CompareScalars(nearest_value, value);
    if (closer > 0 || (closer == 0 && from_end)) {
      nearest = i;
      nearest_value = value;
    }
    return false;
  });
  return exact >= 0 ? exact : nearest;
}

// The place in the operand, which is a single row or column; -1 when it is not found.
int Find(Call& call, const Operand& operand, const Search& search, bool vertical) {
  const Line line(call.evaluator(), operand, vertical);
  if (search.order == Order::kAscending || search.order == Order::kDescending) {
    return FindByHalving(line, search);
  }
  return FindOneByOne(line, search);
}

// Whether the operand is a column (true) or a row; nullopt, and #VALUE!, when it is neither.
std::optional<bool> IsVertical(Call& call, const Operand& operand) {
  if (operand.IsScalar() && call.FailIfError(operand.scalar)) return std::nullopt;
  const std::optional<std::pair<int, int>> size = Evaluator::SizeOf(operand);
  if (size && size->second == 1) return true;
  if (size && size->first == 1) return false;
  call.Fail(CellError::kValue);
  return std::nullopt;
}

Operand XMatch(Call& call) {
  Search search{.wanted = call.Value(0)};
  const std::optional<bool> vertical = IsVertical(call, call[1]);
  if (!vertical || !ReadModes(call, 2, search)) return {};
  const int found = Find(call, call[1], search, *vertical);
  if (found < 0) return Scalar::Error(CellError::kNotAvailable);
  return Scalar::Number(found + 1);
}

// The row or column of the results that belongs to the place.
Operand ResultAt(const Operand& results, int place, bool vertical) {
  if (results.IsBlock()) {
    Block block = results.block;
    if (vertical) {
      block.area.first_row = block.area.last_row = block.area.first_row + place;
    } else {
      block.area.first_column = block.area.last_column = block.area.first_column + place;
    }
    return block;
  }
  if (!results.IsArray()) return results.scalar;
  const Array& from = *results.array;
  Array part(vertical ? 1 : from.rows, vertical ? from.columns : 1);
  for (int i = 0; i < static_cast<int>(part.values.size()); ++i) {
    part.values[i] = vertical ? from.At(place, i) : from.At(i, place);
  }
  return part;
}

Operand XLookUp(Call& call) {
  Search search{.wanted = call.Value(0)};
  const std::optional<bool> vertical = IsVertical(call, call[1]);
  if (!vertical || !ReadModes(call, 4, search)) return {};
  const auto size = Evaluator::SizeOf(call[1]), results = Evaluator::SizeOf(call[2]);
  if (call[2].IsScalar() && call.FailIfError(call[2].scalar)) return {};
  if (!results || (*vertical ? results->first != size->first : results->second != size->second)) {
    return Scalar::Error(CellError::kValue);
  }
  const int found = Find(call, call[1], search, *vertical);
  if (found >= 0) return ResultAt(call[2], found, *vertical);
  if (call.evaluator().stopped()) return {};
  if (call.size() > 3) {
    const Operand otherwise = call.Evaluate(3);
    if (!otherwise.IsMissing()) return otherwise;
  }
  return Scalar::Error(CellError::kNotAvailable);
}

constexpr FunctionEntry kFunctions[] = {
    {"XLOOKUP", 3, 6, "vrrzvv", XLookUp},
    {"XMATCH", 2, 4, "vrvv", XMatch},
};

}  // namespace

std::span<const FunctionEntry> XLookupFunctions() { return kFunctions; }

}  // namespace vantora::embedded
