// The cells of one worksheet, stored by column in blocks of rows.
//
// A column is a list of blocks; a block exists only where the column has cells, so an empty cell
// costs nothing and a whole column moves by moving one pointer. Each column remembers which column
// of the package's sheet part it came from, and each cell what of it differs from that part, so
// that the writer can carry over what no edit touched.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "cells/address.h"
#include "cells/string_pool.h"
#include "core/value.h"

namespace vantora::embedded {

// Index of a cell format (cellXfs) in the workbook's styles; 0 is the default format.
using StyleId = std::uint32_t;
// A formula of the sheet's FormulaTable; 0 means no formula.
using FormulaId = std::uint32_t;

enum class CellKind : std::uint8_t { kAbsent, kBlank, kNumber, kText, kBoolean, kError };

enum CellFlag : std::uint8_t {
  // What differs from the package's sheet part (all three for a cell that is new).
  kValueChanged = 1,
  kFormulaChanged = 2,
  kStyleChanged = 4,
  // The value is out of date: inputs changed since it was calculated.
  kNeedsCalculation = 8,
  // The formula can't be calculated and its inputs changed: the value is of before.
  kStale = 16,
};

// A value without its text: what a cell stores.
struct CellValue {
  CellKind kind = CellKind::kBlank;
  union {
    double number = 0;
    TextId text;
    bool boolean;
    CellError error;
  };

  static CellValue Blank() { return {}; }
  static CellValue Number(double number);
  static CellValue Text(TextId text);
  static CellValue Boolean(bool boolean);
  static CellValue Error(CellError error);
  bool operator==(const CellValue& other) const;
};

// One cell as read. kAbsent when there is none: its format is then its row's or its column's.
struct Cell {
  CellValue value{};
  StyleId style = 0;
  FormulaId formula = 0;
  std::uint8_t flags = 0;

  bool exists() const { return value.kind != CellKind::kAbsent; }
  bool has_content() const {
    return formula != 0 || (exists() && value.kind != CellKind::kBlank);
  }
};

class CellStore {
 public:
  static constexpr int kBlockRows = 64;
  // Origin of a column that no column of the package's part became.
  static constexpr int kNewColumn = 0;

  Cell Get(CellAddress cell) const;
  bool Exists(CellAddress cell) const;

  // While reading the package: stores a cell as the part has it, no change flags.
  void Load(CellAddress cell, const CellValue& value, FormulaId formula, StyleId style);

  // Edits. Each creates the cell where there is none (with style 0) and sets the change flags for
  // what really differs. SetValue keeps the formula; SetConstant drops it.
  void SetValue(CellAddress cell, const CellValue& value);
  void SetConstant(CellAddress cell, const CellValue& value);
  void SetFormula(CellAddress cell, FormulaId formula);
  void SetStyle(CellAddress cell, StyleId style);
  void SetFlag(CellAddress cell, CellFlag flag, bool on);  // for an existing cell
  // Removes the cell altogether (the writer leaves it out).
  void Erase(CellAddress cell);

  // Makes room for `count` new empty columns at `column`. The caller has checked that the last
  // `count` columns of the sheet are empty.
  void InsertColumns(int column, int count);

  // The bounds of all existing cells with content or a format other than the default; nullopt when
  // there is none. Costs a look at each block's ends, not at each cell.
  std::optional<Area> UsedArea() const;

  // The rightmost column that has blocks; 0 when the sheet is empty.
  int LastColumn() const { return static_cast<int>(columns_.size()); }
  // Column of the package's part that this column came from (kNewColumn: none).
  int OriginOf(int column) const;

  // Calls visit(row, Cell) for each existing cell of the column within the rows, top down. The
  // visitor may edit the store, except for inserting columns.
  template <typename Visitor>
  void ForEachInColumn(int column, int first_row, int last_row, Visitor&& visit) const {
    if (column < 1 || column > LastColumn()) return;
    const Column& blocks = *columns_[column - 1];
    int last_block = std::min((last_row - 1) / kBlockRows, static_cast<int>(blocks.blocks.size()) - 1);
    for (int index = (first_row - 1) / kBlockRows; index <= last_block; ++index) {
      const Block* block = blocks.blocks[index].get();
      if (!block) continue;
      int base = index * kBlockRows + 1;
      int from = std::max(first_row - base, 0);
      int to = std::min(last_row - base, kBlockRows - 1);
      for (int offset = from; offset <= to; ++offset) {
        if (block->kind[offset] != CellKind::kAbsent) visit(base + offset, block->At(offset));
      }
    }
  }

  // A count of the changes so far of what cells hold: of values, and of the flags that call them
  // out of date or stale.
  std::uint64_t changes() const { return changes_; }
  // Whether something of that changed within the area after `changes()` gave that count. Costs a
  // look at each of the area's blocks at the most.
  bool ChangedSince(const Area& area, std::uint64_t count) const;

  // A copy of all cells, for telling later what changed.
  CellStore Clone() const;

  // Number of existing cells.
  std::size_t size() const { return size_; }
  // What the cells take in memory, about. Columns that were inserted count for nothing.
  std::size_t bytes() const { return bytes_; }

 private:
  struct Block {
    std::array<std::uint64_t, kBlockRows> payload{};
    std::array<StyleId, kBlockRows> style{};
    std::array<FormulaId, kBlockRows> formula{};
    std::array<CellKind, kBlockRows> kind{};
    std::array<std::uint8_t, kBlockRows> flags{};
    // The store's count at the last change.
    std::uint64_t changed_at = 0;

    Cell At(int offset) const;
    void PutValue(int offset, const CellValue& value);
  };
  struct Column {
    int origin = kNewColumn;
    std::uint64_t changed_at = 0;
    std::vector<std::unique_ptr<Block>> blocks;
  };

  const Block* FindBlock(CellAddress cell) const;
  // The block of the cell, made when missing; `kind` is turned from kAbsent to kBlank and the
  // change flags of a new cell are set.
  Block& Ensure(CellAddress cell);
  Column& EnsureColumn(int column);
  void NoteChange(int column, Block& block) {
    block.changed_at = columns_[column - 1]->changed_at = ++changes_;
  }

  // No entry is null. Columns right of the last one have no cells; they come from the package's
  // column of their number less what was inserted.
  std::vector<std::unique_ptr<Column>> columns_;
  int inserted_ = 0;
  std::size_t size_ = 0;
  std::size_t bytes_ = 0;
  std::uint64_t changes_ = 0;
  // The count when columns were last inserted.
  std::uint64_t moved_at_ = 0;
};

}  // namespace vantora::embedded
