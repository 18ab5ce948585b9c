#include "formula/r1c1.h"

#include <algorithm>
#include <charconv>
#include <tuple>

#include "formula/lexical.h"
#include "formula/sheet_prefix.h"

namespace vantora::embedded {
namespace {

// One end: a cell, a whole row (column 0) or a whole column (row 0).
struct Corner {
  int row = 0;
  int column = 0;
};

// Takes "R", "R2" or "R[-1]" from the front of `text`: false when the letter does not stand there.
// `number` becomes 0 when what follows it makes no row or column of a sheet.
bool TakePart(std::string_view& text, char letter, int own, int last, int& number) {
  if (text.empty() || UpperAscii(text.front()) != letter) return false;
  text.remove_prefix(1);
  const bool is_relative = !text.empty() && text.front() == '[';
  if (is_relative) text.remove_prefix(1);
  const char* const end = text.data() + text.size();
  number = 0;
  const auto [behind, error] = std::from_chars(text.data(), end, number);
  const bool has_number = error == std::errc();
  text.remove_prefix(behind - text.data());
  if (is_relative) {
    const bool is_closed = has_number && !text.empty() && text.front() == ']';
    if (is_closed) text.remove_prefix(1);
    number = is_closed && number > -last && number < last ? own + number : 0;
  } else if (!has_number) {
    number = error == std::errc::invalid_argument ? own : 0;
  }
  if (number < 1 || number > last) number = 0;
  return true;
}

std::optional<Corner> ParseCorner(std::string_view text, CellAddress cell) {
  Corner corner;
  const bool has_row = TakePart(text, 'R', cell.row, kMaxRow, corner.row);
  const bool has_column = TakePart(text, 'C', cell.column, kMaxColumn, corner.column);
  if (!text.empty() || (!has_row && !has_column)) return std::nullopt;
  if ((has_row && corner.row == 0) || (has_column && corner.column == 0)) return std::nullopt;
  return corner;
}

std::optional<int> SheetOf(std::string_view prefix, const SheetDirectory& sheets) {
  if (prefix.size() >= 2 && prefix.front() == '\'' && prefix.back() == '\'') {
    return sheets.IdOf(WithoutDoubledQuotes(prefix.substr(1, prefix.size() - 2)));
  }
  return NeedsQuotes(prefix) ? std::nullopt : sheets.IdOf(prefix);
}

}  // namespace

std::optional<Block> CellsOfR1C1(std::string_view text, int own_sheet, CellAddress cell,
                                 const SheetDirectory& sheets) {
  std::optional<int> sheet = own_sheet;
  if (const std::size_t mark = text.rfind('!'); mark != std::string_view::npos) {
    sheet = SheetOf(text.substr(0, mark), sheets);
    text.remove_prefix(mark + 1);
  }
  const std::size_t colon = text.find(':');
  const std::optional<Corner> first = ParseCorner(text.substr(0, colon), cell);
  const std::optional<Corner> last =
      colon == std::string_view::npos ? first : ParseCorner(text.substr(colon + 1), cell);
  if (!sheet || !first || !last) return std::nullopt;
  if ((first->row == 0) != (last->row == 0) || (first->column == 0) != (last->column == 0)) {
    return std::nullopt;
  }
  Block block{*sheet, {1, 1, kMaxRow, kMaxColumn}};
  if (first->row != 0) {
    std::tie(block.area.first_row, block.area.last_row) = std::minmax(first->row, last->row);
  }
  if (first->column != 0) {
    std::tie(block.area.first_column, block.area.last_column) =
        std::minmax(first->column, last->column);
  }
  return block;
}

}  // namespace vantora::embedded
