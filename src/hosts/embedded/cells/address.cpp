#include "cells/address.h"

#include <algorithm>
#include <charconv>

namespace vantora::embedded {

namespace {

// One corner of a reference as far as it is written: "$J$4", "$J", "4".
struct Corner {
  std::optional<int> row;
  std::optional<int> column;
};

bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::optional<Corner> ParseCorner(std::string_view text) {
  Corner corner;
  std::size_t at = 0;
  auto skip_dollar = [&] {
    if (at < text.size() && text[at] == '$') ++at;
  };
  skip_dollar();
  std::size_t letters = at;
  while (at < text.size() && IsLetter(text[at])) ++at;
  if (at > letters) {
    corner.column = ColumnNumber(text.substr(letters, at - letters));
    if (!corner.column) return std::nullopt;
    skip_dollar();
  }
  std::size_t digits = at;
  while (at < text.size() && IsDigit(text[at])) ++at;
  if (at != text.size()) return std::nullopt;
  if (at > digits) {
    int row = 0;
    auto [end, error] = std::from_chars(text.data() + digits, text.data() + at, row);
    if (error != std::errc() || row < 1 || row > kMaxRow) return std::nullopt;
    corner.row = row;
  }
  if (!corner.row && !corner.column) return std::nullopt;
  if (text.back() == '$') return std::nullopt;
  return corner;
}

}  // namespace

std::string ColumnLetters(int column) {
  std::string letters;
  for (int rest = column; rest > 0; rest = (rest - 1) / 26) {
    letters.insert(letters.begin(), static_cast<char>('A' + (rest - 1) % 26));
  }
  return letters;
}

std::optional<int> ColumnNumber(std::string_view letters) {
  if (letters.empty() || letters.size() > 3) return std::nullopt;
  int column = 0;
  for (char letter : letters) {
    if (!IsLetter(letter)) return std::nullopt;
    column = column * 26 + ((letter | 0x20) - 'a' + 1);
  }
  return column <= kMaxColumn ? std::optional(column) : std::nullopt;
}

std::string ToA1(CellAddress cell) { return ColumnLetters(cell.column) + std::to_string(cell.row); }

std::string ToA1(const Area& area) {
  if (area.IsWholeColumns()) {
    return ColumnLetters(area.first_column) + ":" + ColumnLetters(area.last_column);
  }
  if (area.IsWholeRows()) {
    return std::to_string(area.first_row) + ":" + std::to_string(area.last_row);
  }
  std::string first = ToA1(CellAddress{area.first_row, area.first_column});
  if (area.rows() == 1 && area.columns() == 1) return first;
  return first + ":" + ToA1(CellAddress{area.last_row, area.last_column});
}

std::optional<Area> ParseA1(std::string_view text) {
  std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) {
    auto corner = text.empty() ? std::nullopt : ParseCorner(text);
    if (!corner || !corner->row || !corner->column) return std::nullopt;
    return Area{*corner->row, *corner->column, *corner->row, *corner->column};
  }
  if (colon == 0 || colon + 1 == text.size()) return std::nullopt;
  auto first = ParseCorner(text.substr(0, colon));
  auto last = ParseCorner(text.substr(colon + 1));
  if (!first || !last || first->row.has_value() != last->row.has_value() ||
      first->column.has_value() != last->column.has_value()) {
    return std::nullopt;
  }
  auto [top, bottom] = std::minmax({first->row.value_or(1), last->row.value_or(kMaxRow)});
  auto [left, right] = std::minmax({first->column.value_or(1), last->column.value_or(kMaxColumn)});
  return Area{top, left, bottom, right};
}

}  // namespace vantora::embedded
