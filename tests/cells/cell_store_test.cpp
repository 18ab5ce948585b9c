#include "cells/cell_store.h"

#include <gtest/gtest.h>

#include <map>

namespace vantora::embedded {
namespace {

std::map<int, double> NumbersIn(const CellStore& cells, int column, int first_row, int last_row) {
  std::map<int, double> numbers;
  cells.ForEachInColumn(column, first_row, last_row,
                        [&](int row, const Cell& cell) { numbers[row] = cell.value.number; });
  return numbers;
}

TEST(CellStoreTest, KeepsEveryKindOfValue) {
  CellStore cells;
  const std::pair<CellAddress, CellValue> values[] = {
      {{1, 1}, CellValue::Number(-0.1)},   {{64, 1}, CellValue::Text(7)},
      {{65, 1}, CellValue::Boolean(true)}, {{1048576, 16384}, CellValue::Error(CellError::kNum)},
      {{3, 2}, CellValue::Blank()},
  };
  for (const auto& [cell, value] : values) cells.Load(cell, value, 0, 5);
  for (const auto& [cell, value] : values) {
    EXPECT_EQ(cells.Get(cell).value, value) << ToA1(cell);
    EXPECT_EQ(cells.Get(cell).flags, 0) << ToA1(cell);
  }
  EXPECT_FALSE(cells.Get({2, 1}).exists());
  EXPECT_FALSE(cells.Get({64, 2}).exists());
  EXPECT_EQ(cells.size(), std::size(values));
}

TEST(CellStoreTest, FlagsOnlyWhatReallyDiffers) {
  CellStore cells;
  cells.Load({5, 3}, CellValue::Number(2), 4, 1);
  cells.SetValue({5, 3}, CellValue::Number(2));
  cells.SetFormula({5, 3}, 4);
  cells.SetStyle({5, 3}, 1);
  EXPECT_EQ(cells.Get({5, 3}).flags, 0);
  cells.SetValue({5, 3}, CellValue::Number(3));
  EXPECT_EQ(cells.Get({5, 3}).flags, kValueChanged);
  EXPECT_EQ(cells.Get({5, 3}).formula, 4u);
  cells.SetConstant({5, 3}, CellValue::Number(3));
  EXPECT_EQ(cells.Get({5, 3}).flags, kValueChanged | kFormulaChanged);
  EXPECT_EQ(cells.Get({5, 3}).formula, 0u);
  cells.SetStyle({6, 3}, 0);
  EXPECT_EQ(cells.Get({6, 3}).flags, kValueChanged | kFormulaChanged | kStyleChanged);
}

TEST(CellStoreTest, InsertedColumnsMoveCellsAndKeepTheirOrigin) {
  CellStore cells;
  for (int column : {1, 3, 5}) cells.Load({10, column}, CellValue::Number(column), 0, 0);
  cells.InsertColumns(3, 2);
  EXPECT_EQ(cells.Get({10, 1}).value.number, 1);
  EXPECT_FALSE(cells.Get({10, 3}).exists());
  EXPECT_EQ(cells.Get({10, 5}).value.number, 3);
  EXPECT_EQ(cells.Get({10, 7}).value.number, 5);
  const int origins[] = {1, 2, CellStore::kNewColumn, CellStore::kNewColumn, 3, 4, 5, 6, 7};
  for (int column = 1; column <= 9; ++column) {
    EXPECT_EQ(cells.OriginOf(column), origins[column - 1]) << column;
  }
  // Right of every cell, and again between.
  cells.InsertColumns(20, 1);
  cells.InsertColumns(1, 1);
  EXPECT_EQ(cells.OriginOf(1), CellStore::kNewColumn);
  EXPECT_EQ(cells.OriginOf(20), 17);
  EXPECT_EQ(cells.OriginOf(21), CellStore::kNewColumn);
  EXPECT_EQ(cells.OriginOf(22), 18);
  EXPECT_EQ(cells.OriginOf(500), 496);
  EXPECT_EQ(cells.Get({10, 8}).value.number, 5);
}

TEST(CellStoreTest, UsedAreaCountsContentAndFormats) {
  CellStore cells;
  EXPECT_EQ(cells.UsedArea(), std::nullopt);
  cells.Load({100, 4}, CellValue::Number(1), 0, 0);
  cells.Load({7, 6}, CellValue::Blank(), 0, 3);    // a format counts
  cells.Load({900, 9}, CellValue::Blank(), 0, 0);  // nothing at all does not
  EXPECT_EQ(cells.UsedArea(), (Area{7, 4, 100, 6}));
  cells.SetStyle({7, 6}, 0);
  EXPECT_EQ(cells.UsedArea(), (Area{100, 4, 100, 4}));
}

TEST(CellStoreTest, WalksAColumnWithinRows) {
  CellStore cells;
  for (int row : {1, 63, 64, 65, 200}) cells.Load({row, 2}, CellValue::Number(row), 0, 0);
  EXPECT_EQ(NumbersIn(cells, 2, 1, kMaxRow).size(), 5u);
  EXPECT_EQ(NumbersIn(cells, 2, 64, 199), (std::map<int, double>{{64, 64}, {65, 65}}));
  EXPECT_TRUE(NumbersIn(cells, 3, 1, kMaxRow).empty());
  cells.Erase({64, 2});
  EXPECT_EQ(NumbersIn(cells, 2, 64, 64).size(), 0u);
}

TEST(CellStoreTest, ACloneIsIndependent) {
  CellStore cells;
  cells.Load({1, 1}, CellValue::Number(1), 0, 0);
  CellStore clone = cells.Clone();
  cells.SetValue({1, 1}, CellValue::Number(2));
  EXPECT_EQ(clone.Get({1, 1}).value.number, 1);
}

TEST(AddressTest, ReadsAndWritesReferences) {
  struct Case {
    const char* text;
    std::optional<Area> area;
    const char* written;
  };
  const Case cases[] = {
      {"A1", Area{1, 1, 1, 1}, "A1"},
      {"$XFD$1048576", Area{kMaxRow, kMaxColumn, kMaxRow, kMaxColumn}, "XFD1048576"},
      {"n4:$J$4", Area{4, 10, 4, 14}, "J4:N4"},
      {"$J:K", WholeColumns(10, 11), "J:K"},
      {"5:4", Area{4, 1, 5, kMaxColumn}, "4:5"},
      {"XFE1", std::nullopt, ""},
      {"A1048577", std::nullopt, ""},
      {"A0", std::nullopt, ""},
      {"A", std::nullopt, ""},
      {"A1:B", std::nullopt, ""},
      {"A1:", std::nullopt, ""},
      {"$", std::nullopt, ""},
      {"", std::nullopt, ""},
  };
  for (const Case& one : cases) {
    auto area = ParseA1(one.text);
    EXPECT_EQ(area, one.area) << one.text;
    if (area) {
      EXPECT_EQ(ToA1(*area), one.written);
    }
  }
}

}  // namespace
}  // namespace vantora::embedded
