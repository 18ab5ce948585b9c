// What an expression yields: a value, cells, or an array of values.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "formula/scalar.h"

namespace vantora::embedded {

// Cells of one sheet.
struct Block {
  int sheet = 0;
  Area area;

  bool IsCell() const {
    return area.first_row == area.last_row && area.first_column == area.last_column;
  }
  bool operator==(const Block&) const = default;
};

// Values by row; 0-based.
struct Array {
  int rows = 1;
  int columns = 1;
  std::vector<Scalar> values;

  Array(int rows, int columns)
      : rows(rows), columns(columns), values(static_cast<std::size_t>(rows) * columns) {}
  Scalar& At(int row, int column) {
    return values[static_cast<std::size_t>(row) * columns + column];
  }
  const Scalar& At(int row, int column) const {
    return values[static_cast<std::size_t>(row) * columns + column];
  }
};

struct Operand {
  enum class Kind : std::uint8_t {
    kScalar,
    kMissing,  // an argument that is left out
    kBlock,
    kBlocks,  // several areas, or an area of several sheets
    kArray,
  };
  Kind kind = Kind::kScalar;
  Scalar scalar;
  Block block;
  std::shared_ptr<const std::vector<Block>> blocks;
  std::shared_ptr<const Array> array;

  Operand() = default;
  Operand(const Scalar& value) : scalar(value) {}  // NOLINT: a value is an operand
  Operand(const Block& cells) : kind(Kind::kBlock), block(cells) {}  // NOLINT
  Operand(Array values)                                              // NOLINT
      : kind(Kind::kArray), array(std::make_shared<const Array>(std::move(values))) {}
  explicit Operand(std::vector<Block> cells)
      : kind(Kind::kBlocks), blocks(std::make_shared<const std::vector<Block>>(std::move(cells))) {}
  static Operand Missing() {
    Operand operand;
    operand.kind = Kind::kMissing;
    return operand;
  }

  bool IsScalar() const { return kind == Kind::kScalar; }
  bool IsMissing() const { return kind == Kind::kMissing; }
  bool IsBlock() const { return kind == Kind::kBlock; }
  bool IsReference() const { return kind == Kind::kBlock || kind == Kind::kBlocks; }
  bool IsArray() const { return kind == Kind::kArray; }
};

}  // namespace vantora::embedded
