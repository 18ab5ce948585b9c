// References to cells of tables by name: Sales[Amount], Sales[[#Headers],[Jan]:[Mar]], [@Amount].
// In formulas they stay text, so that they come back as they were written; what they mean is looked
// up in the workbook's tables.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "cells/address.h"

namespace vantora::embedded {

class WorkbookModel;
struct Table;

struct TableReference {
  enum Part : unsigned { kHeaders = 1, kData = 2, kTotals = 4, kThisRow = 8 };

  // Empty: the table in which the formula stands.
  std::string table;
  unsigned parts = kData;
  // Names of columns; empty: all columns.
  std::string first_column;
  std::string last_column;
};

// Reads the reference that starts at `position`, with the table's name or its bracket, and moves
// behind it; nullopt when there is none.
std::optional<TableReference> ReadTableReference(std::string_view text, std::size_t& position);

// What a reference means in a table; for kThisRow all rows of data.
struct TableCells {
  enum class Outcome { kFound, kNoColumn, kNoCells };
  Outcome outcome = Outcome::kFound;
  Area area;
};
TableCells FindCells(const TableReference& reference, const Table& table);

}  // namespace vantora::embedded
