#include "cells/cell_store.h"

#include <bit>
#include <cstring>

namespace vantora::embedded {

namespace {

constexpr std::uint8_t kNewCellFlags = kValueChanged | kFormulaChanged | kStyleChanged;

int BlockIndex(int row) { return (row - 1) / CellStore::kBlockRows; }
int BlockOffset(int row) { return (row - 1) % CellStore::kBlockRows; }

}  // namespace

CellValue CellValue::Number(double number) {
  CellValue value;
  value.kind = CellKind::kNumber;
  value.number = number;
  return value;
}

CellValue CellValue::Text(TextId text) {
  CellValue value;
  value.kind = CellKind::kText;
  value.text = text;
  return value;
}

CellValue CellValue::Boolean(bool boolean) {
  CellValue value;
  value.kind = CellKind::kBoolean;
  value.boolean = boolean;
  return value;
}

CellValue CellValue::Error(CellError error) {
  CellValue value;
  value.kind = CellKind::kError;
  value.error = error;
  return value;
}

bool CellValue::operator==(const CellValue& other) const {
  if (kind != other.kind) return false;
  switch (kind) {
    case CellKind::kNumber: return number == other.number;
    case CellKind::kText: return text == other.text;
    case CellKind::kBoolean: return boolean == other.boolean;
    case CellKind::kError: return error == other.error;
    default: return true;
  }
}

Cell CellStore::Block::At(int offset) const {
  Cell cell;
  cell.style = style[offset];
  cell.formula = formula[offset];
  cell.flags = flags[offset];
  switch (kind[offset]) {
    case CellKind::kNumber:
      cell.value = CellValue::Number(std::bit_cast<double>(payload[offset]));
      break;
    case CellKind::kText:
      cell.value = CellValue::Text(static_cast<TextId>(payload[offset]));
      break;
    case CellKind::kBoolean:
      cell.value = CellValue::Boolean(payload[offset] != 0);
      break;
    case CellKind::kError:
      cell.value = CellValue::Error(static_cast<CellError>(payload[offset]));
      break;
    default:
      cell.value.kind = kind[offset];
  }
  return cell;
}

void CellStore::Block::PutValue(int offset, const CellValue& value) {
  kind[offset] = value.kind;
  switch (value.kind) {
    case CellKind::kNumber: payload[offset] = std::bit_cast<std::uint64_t>(value.number); break;
    case CellKind::kText: payload[offset] = value.text; break;
    case CellKind::kBoolean: payload[offset] = value.boolean; break;
    case CellKind::kError: payload[offset] = static_cast<std::uint64_t>(value.error); break;
    default: payload[offset] = 0;
  }
}

const CellStore::Block* CellStore::FindBlock(CellAddress cell) const {
  if (cell.column > LastColumn()) return nullptr;
  const auto& blocks = columns_[cell.column - 1]->blocks;
  std::size_t index = BlockIndex(cell.row);
  return index < blocks.size() ? blocks[index].get() : nullptr;
}

CellStore::Column& CellStore::EnsureColumn(int column) {
  while (LastColumn() < column) {
    auto added = std::make_unique<Column>();
    added->origin = LastColumn() + 1 - inserted_;
    columns_.push_back(std::move(added));
  }
  return *columns_[column - 1];
}

CellStore::Block& CellStore::Ensure(CellAddress cell) {
  auto& blocks = EnsureColumn(cell.column).blocks;
  std::size_t index = BlockIndex(cell.row);
  if (index >= blocks.size()) {
    bytes_ += (index + 1 - blocks.size()) * sizeof blocks[0];
    blocks.resize(index + 1);
  }
  if (!blocks[index]) {
    bytes_ += sizeof(Block);
    blocks[index] = std::make_unique<Block>();
  }
  Block& block = *blocks[index];
  int offset = BlockOffset(cell.row);
  if (block.kind[offset] == CellKind::kAbsent) {
    block.kind[offset] = CellKind::kBlank;
    block.flags[offset] = kNewCellFlags;
    ++size_;
  }
  return block;
}

Cell CellStore::Get(CellAddress cell) const {
  if (const Block* block = FindBlock(cell)) return block->At(BlockOffset(cell.row));
  Cell absent;
  absent.value.kind = CellKind::kAbsent;
  return absent;
}

bool CellStore::Exists(CellAddress cell) const {
  const Block* block = FindBlock(cell);
  return block && block->kind[BlockOffset(cell.row)] != CellKind::kAbsent;
}

void CellStore::Load(CellAddress cell, const CellValue& value, FormulaId formula, StyleId style) {
  Block& block = Ensure(cell);
  int offset = BlockOffset(cell.row);
  block.PutValue(offset, value);
  block.formula[offset] = formula;
  block.style[offset] = style;
  block.flags[offset] = 0;
  NoteChange(cell.column, block);
}

void CellStore::SetValue(CellAddress cell, const CellValue& value) {
  Block& block = Ensure(cell);
  int offset = BlockOffset(cell.row);
  if (block.At(offset).value == value) return;
  block.PutValue(offset, value);
  block.flags[offset] |= kValueChanged;
  NoteChange(cell.column, block);
}

void CellStore::SetConstant(CellAddress cell, const CellValue& value) {
  Block& block = Ensure(cell);
  int offset = BlockOffset(cell.row);
  if (block.formula[offset] != 0) {
    block.formula[offset] = 0;
    block.flags[offset] |= kFormulaChanged;
  }
  block.flags[offset] &= static_cast<std::uint8_t>(~(kNeedsCalculation | kStale));
  SetValue(cell, value);
}

void CellStore::SetFormula(CellAddress cell, FormulaId formula) {
  Block& block = Ensure(cell);
  int offset = BlockOffset(cell.row);
  if (block.formula[offset] == formula) return;
  block.formula[offset] = formula;
  block.flags[offset] |= kFormulaChanged;
}

void CellStore::SetStyle(CellAddress cell, StyleId style) {
  Block& block = Ensure(cell);
  int offset = BlockOffset(cell.row);
  if (block.style[offset] == style) return;
  block.style[offset] = style;
  block.flags[offset] |= kStyleChanged;
}

void CellStore::SetFlag(CellAddress cell, CellFlag flag, bool on) {
  Block& block = Ensure(cell);
  std::uint8_t& flags = block.flags[BlockOffset(cell.row)];
  flags = static_cast<std::uint8_t>(on ? flags | flag : flags & ~flag);
  // That a value is up to date again changes nothing of what was found while it was.
  if (on) NoteChange(cell.column, block);
}

void CellStore::Erase(CellAddress cell) {
  if (!Exists(cell)) return;
  Block& block = Ensure(cell);
  int offset = BlockOffset(cell.row);
  block.payload[offset] = 0;
  block.kind[offset] = CellKind::kAbsent;
  block.formula[offset] = 0;
  block.style[offset] = 0;
  block.flags[offset] = 0;
  --size_;
  NoteChange(cell.column, block);
}

void CellStore::InsertColumns(int column, int count) {
  // Columns further right than any cell have nothing to move; they keep counting from the last one.
  EnsureColumn(std::max(column - 1, 1));
  std::vector<std::unique_ptr<Column>> added(count);
  for (auto& one : added) one = std::make_unique<Column>();
  columns_.insert(columns_.begin() + (column - 1), std::make_move_iterator(added.begin()),
                  std::make_move_iterator(added.end()));
  inserted_ += count;
  moved_at_ = ++changes_;
}

bool CellStore::ChangedSince(const Area& area, std::uint64_t count) const {
  if (changes_ <= count) return false;
  if (moved_at_ > count) return true;
  const int last_column = std::min(area.last_column, LastColumn());
  for (int number = area.first_column; number <= last_column; ++number) {
    const Column& column = *columns_[number - 1];
    if (column.changed_at <= count) continue;
    const int last =
        std::min(BlockIndex(area.last_row), static_cast<int>(column.blocks.size()) - 1);
    for (int index = BlockIndex(area.first_row); index <= last; ++index) {
      const Block* block = column.blocks[index].get();
      if (block && block->changed_at > count) return true;
    }
  }
  return false;
}

std::optional<Area> CellStore::UsedArea() const {
  std::optional<Area> used;
  auto counts = [](const Block& block, int offset) {
    return block.kind[offset] > CellKind::kBlank || block.formula[offset] != 0 ||
           block.style[offset] != 0;
  };
  for (int column = 1; column <= LastColumn(); ++column) {
    const auto& blocks = columns_[column - 1]->blocks;
    int first = 0;
    int last = 0;
    for (std::size_t index = 0; index < blocks.size() && first == 0; ++index) {
      for (int offset = 0; blocks[index] && offset < kBlockRows && first == 0; ++offset) {
        if (counts(*blocks[index], offset)) first = static_cast<int>(index) * kBlockRows + offset + 1;
      }
    }
    if (first == 0) continue;
    for (std::size_t index = blocks.size(); index-- > 0 && last == 0;) {
      for (int offset = kBlockRows; blocks[index] && offset-- > 0 && last == 0;) {
        if (counts(*blocks[index], offset)) last = static_cast<int>(index) * kBlockRows + offset + 1;
      }
    }
    if (!used) {
      used = Area{first, column, last, column};
    } else {
      used->first_row = std::min(used->first_row, first);
      used->last_row = std::max(used->last_row, last);
      used->last_column = column;
    }
  }
  return used;
}

CellStore CellStore::Clone() const {
  CellStore copy;
  copy.inserted_ = inserted_;
  copy.size_ = size_;
  copy.bytes_ = bytes_;
  copy.changes_ = changes_;
  copy.moved_at_ = moved_at_;
  for (const auto& column : columns_) {
    auto& added = copy.columns_.emplace_back(std::make_unique<Column>());
    added->origin = column->origin;
    added->changed_at = column->changed_at;
    for (const auto& block : column->blocks) {
      added->blocks.push_back(block ? std::make_unique<Block>(*block) : nullptr);
    }
  }
  return copy;
}

int CellStore::OriginOf(int column) const {
  return column <= LastColumn() ? columns_[column - 1]->origin : column - inserted_;
}

}  // namespace vantora::embedded
