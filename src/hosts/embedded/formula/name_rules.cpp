#include "formula/name_rules.h"

#include <algorithm>
#include <charconv>

#include "formula/lexical.h"
#include "formula/sheet_prefix.h"
#include "formula/unicode.h"

namespace vantora::embedded {
namespace {

constexpr std::size_t kLongestName = 255;
// Names with a meaning of their own; the file keeps them under a prefix.
constexpr std::string_view kBuiltInPrefix = "_xlnm.";
constexpr std::string_view kBuiltInNames[] = {"Print_Area",       "Print_Titles",   "Criteria",
                                              "Consolidate_Area", "Database",       "Extract",
                                              "Sheet_Title",      "_FilterDatabase"};

bool IsBuiltIn(std::string_view name) {
  return EqualIgnoringAsciiCase(name.substr(0, kBuiltInPrefix.size()), kBuiltInPrefix) ||
         std::any_of(std::begin(kBuiltInNames), std::end(kBuiltInNames),
                     [&](std::string_view own) { return EqualIgnoringAsciiCase(own, name); });
}

bool HasNameCharactersOnly(std::string_view name) {
  if (name.empty() || !IsNameStart(name.front())) return false;
  for (std::size_t position = 0; position < name.size();) {
    if (IsBeyondAscii(name[position])) {
      if (!IsAlphabetic(NextCharacter(name, position))) return false;
    } else if (!IsNameCharacter(name[position++])) {
      return false;
    }
  }
  return true;
}

// One corner of a reference: 0 for a row or column that it leaves open ("R12", "C3").
struct Corner {
  int row = 0;
  int column = 0;
};

// Reads "R12" or "C3" at the start of `text`, which moves behind it. 0 when it does not start so,
// nullopt when the number is none of a sheet's.
std::optional<int> TakeNumber(std::string_view& text, char letter, int largest) {
  if (text.empty() || UpperAscii(text.front()) != letter) return 0;
  int number = 0;
  const auto [end, error] = std::from_chars(text.data() + 1, text.data() + text.size(), number);
  if (error != std::errc() || number < 1 || number > largest) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return number;
}

std::optional<Corner> ParseCorner(std::string_view text) {
  const std::optional<int> row = TakeNumber(text, 'R', kMaxRow);
  const std::optional<int> column = row ? TakeNumber(text, 'C', kMaxColumn) : std::nullopt;
  if (!column || !text.empty() || (*row == 0 && *column == 0)) return std::nullopt;
  return Corner{*row, *column};
}

std::optional<Area> ParseR1C1(std::string_view text) {
  const std::size_t colon = text.find(':');
  const std::optional<Corner> first = ParseCorner(text.substr(0, colon));
  const std::optional<Corner> last =
      colon == std::string_view::npos ? first : ParseCorner(text.substr(colon + 1));
  if (!first || !last) return std::nullopt;
  if ((first->row == 0) != (last->row == 0) || (first->column == 0) != (last->column == 0)) {
    return std::nullopt;
  }
  Area area = {1, 1, kMaxRow, kMaxColumn};
  if (first->row != 0) {
    area.first_row = std::min(first->row, last->row);
    area.last_row = std::max(first->row, last->row);
  }
  if (first->column != 0) {
    area.first_column = std::min(first->column, last->column);
    area.last_column = std::max(first->column, last->column);
  }
  return area;
}

// The sheet that stands before the "!"; nullopt when it does not exist or lacks its quotes.
std::optional<int> SheetOfPrefix(std::string_view prefix, const SheetDirectory& sheets) {
  if (prefix.size() >= 2 && prefix.front() == '\'' && prefix.back() == '\'') {
    return sheets.IdOf(WithoutDoubledQuotes(prefix.substr(1, prefix.size() - 2)));
  }
  return NeedsQuotes(prefix) ? std::nullopt : sheets.IdOf(prefix);
}

std::string Absolute(const Area& area) {
  auto row = [](int number) { return "$" + std::to_string(number); };
  auto column = [](int number) { return "$" + ColumnLetters(number); };
  if (area.IsWholeRows()) return row(area.first_row) + ":" + row(area.last_row);
  if (area.IsWholeColumns()) return column(area.first_column) + ":" + column(area.last_column);
  const std::string first = column(area.first_column) + row(area.first_row);
  if (area.rows() == 1 && area.columns() == 1) return first;
  return first + ":" + column(area.last_column) + row(area.last_row);
}

}  // namespace

bool IsValidName(std::string_view name) {
  return HasNameCharactersOnly(name) && LengthOf(name) <= kLongestName && !LooksLikeR1C1(name) &&
         !ParseA1(name) && !EqualIgnoringAsciiCase(name, "TRUE") &&
         !EqualIgnoringAsciiCase(name, "FALSE") && !IsBuiltIn(name);
}

std::optional<std::string> ReferenceFromR1C1(std::string_view formula, int own_sheet,
                                             const SheetDirectory& sheets) {
  if (formula.empty() || formula.front() != '=') return std::nullopt;
  formula.remove_prefix(1);
  const std::size_t mark = formula.rfind('!');
  std::optional<int> sheet = own_sheet;
  if (mark != std::string_view::npos) {
    sheet = SheetOfPrefix(formula.substr(0, mark), sheets);
    formula.remove_prefix(mark + 1);
  }
  const std::optional<Area> area = ParseR1C1(formula);
  if (!sheet || !area) return std::nullopt;
  std::string text;
  AppendSheetPrefix(text, *sheet, *sheet, sheets);
  return text + Absolute(*area);
}

}  // namespace vantora::embedded
