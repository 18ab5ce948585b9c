// Positions on a worksheet. Rows and columns are 1-based; column 1 is A.
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vantora::embedded {

inline constexpr int kMaxRow = 1048576;
inline constexpr int kMaxColumn = 16384;

struct CellAddress {
  int row = 1;
  int column = 1;
  auto operator<=>(const CellAddress&) const = default;
};

// A rectangle, corners included; first <= last in both directions.
struct Area {
  int first_row = 1;
  int first_column = 1;
  int last_row = 1;
  int last_column = 1;

  int rows() const { return last_row - first_row + 1; }
  int columns() const { return last_column - first_column + 1; }
  bool Contains(CellAddress cell) const {
    return cell.row >= first_row && cell.row <= last_row && cell.column >= first_column &&
           cell.column <= last_column;
  }
  bool Intersects(const Area& other) const {
    return first_row <= other.last_row && other.first_row <= last_row &&
           first_column <= other.last_column && other.first_column <= last_column;
  }
  bool IsWholeColumns() const { return first_row == 1 && last_row == kMaxRow; }
  bool IsWholeRows() const { return first_column == 1 && last_column == kMaxColumn; }
  auto operator<=>(const Area&) const = default;
};

inline constexpr Area WholeColumns(int first, int last) { return {1, first, kMaxRow, last}; }

// "AD" for 30.
std::string ColumnLetters(int column);
// 30 for "AD" or "ad"; nullopt when `letters` is no column of a sheet.
std::optional<int> ColumnNumber(std::string_view letters);
// "AD7".
std::string ToA1(CellAddress cell);
// "AD7" for one cell, else "J4:N4"; whole columns and rows as "J:J" and "4:5".
std::string ToA1(const Area& area);
// "AD7", "$AD$7", "J4:N4", "J:J", "4:5" (`$` ignored); corners in any order. nullopt when it is no
// reference or lies outside a sheet.
std::optional<Area> ParseA1(std::string_view text);

// Whole columns inserted on a sheet: what stood at `column` or right of it moves `count` to the
// right. The one structural edit that operations make.
struct ColumnInsertion {
  int sheet = 0;  // id of the sheet
  int column = 1;
  int count = 1;
};

}  // namespace vantora::embedded
