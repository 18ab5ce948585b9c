// Joins vertical runs of cells into rectangles: a formula filled over a block arrives as one run a
// column and leaves as one rectangle.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "cells/address.h"
#include "cells/cell_store.h"

namespace vantora::embedded {

// `Emit` is called as emit(Area, FormulaId) for each rectangle, at the latest by Finish.
template <typename Emit>
class RunMerger {
 public:
  explicit RunMerger(Emit emit) : emit_(std::move(emit)) {}

  // Runs come by ascending column, within a column by ascending row, and do not overlap. Adjoining
  // rows of one id are joined as well.
  void Add(int column, int first_row, int last_row, FormulaId id) {
    if (column != column_) StartColumn(column);
    if (!current_.empty() && current_.back().id == id &&
        current_.back().last_row + 1 == first_row) {
      current_.back().last_row = last_row;
    } else {
      current_.push_back({first_row, last_row, column, id});
    }
  }

  void Finish() {
    StartColumn(0);
    column_ = 0;
  }

 private:
  struct Rectangle {
    int first_row;
    int last_row;
    int first_column;
    FormulaId id;
  };

  // Closes the current column: its runs go on where the column left of it has the same run.
  void StartColumn(int column) {
    std::size_t open = 0;
    for (Rectangle& run : current_) {
      while (open < open_.size() && open_[open].first_row < run.first_row) EmitOpen(open++);
      if (open < open_.size() && open_[open].first_row == run.first_row) {
        if (open_[open].last_row == run.last_row && open_[open].id == run.id) {
          run.first_column = open_[open++].first_column;
        }
      }
    }
    while (open < open_.size()) EmitOpen(open++);
    open_.swap(current_);
    current_.clear();
    open_column_ = column_;
    if (column != column_ + 1) {
      for (std::size_t i = 0; i < open_.size(); ++i) EmitOpen(i);
      open_.clear();
    }
    column_ = column;
  }

  void EmitOpen(std::size_t index) {
    const Rectangle& run = open_[index];
    emit_(Area{run.first_row, run.first_column, run.last_row, open_column_}, run.id);
  }

  Emit emit_;
  int column_ = 0;
  int open_column_ = 0;
  std::vector<Rectangle> open_;     // rectangles that reach into `open_column_`
  std::vector<Rectangle> current_;  // runs of `column_`
};

}  // namespace vantora::embedded
