// What a click on a spin button of the planning sheet does: the projects of its block move by whole
// years.
#pragma once

#include <optional>
#include <string>

#include "core/cell_place.h"
#include "core/public_object.h"

namespace vantora {

class clsPlanningSpinners : public BoundObject {
 public:
  explicit clsPlanningSpinners(Services& services) : BoundObject("clsPlanningSpinners", services) {}

  // Moves the projects below the calling spin button's cell by as many years as its value differs
  // from that of the click before, later or earlier. Works on the active sheet; does nothing unless
  // the object is initialised. What is missing on the sheet is told in a message box. Throws
  // HostError for what the host refuses, 13 for a spin value or inflation factor that is no number,
  // 6 for one that is too large, 11 where an inflation factor to divide by is 0; screen updating
  // then stays off and calculation manual.
  void SpinnerChange();

 private:
  // The columns that row 1 flags.
  struct FlaggedColumns {
    int flags = 0;
    int save = 0;  // the first of the save cells
  };
  // The rows that belong to one spin button, and its value now and at the click before.
  struct Block {
    int first_row = 0;
    int last_row = 0;
    int value = 0;
    int previous = 0;

    bool moves() const;
    bool moves_later() const { return previous < value; }
    int steps() const;
  };
  // What a project row's letters say.
  struct Project {
    int row = 0;
    bool shifts = false;
    bool inflates = false;
    int inflation_row = 0;
    int first_column = 0;  // of the yearly range
  };

  // Nullopt when a flag is missing, which the user has been told.
  std::optional<FlaggedColumns> FindFlaggedColumns();
  // Finds the block of the spin button that called, and stores the button's value in the end row.
  Block TakeClick();
  // 0 when there is none.
  int FindInflationRow();
  Project ReadProject(int row, int inflation_row);
  void MoveLater(const Project& project);
  void MoveEarlier(const Project& project);
  CellPlace FactorPlace(const Project& project, int column) const;
  // By which the amounts of the column's year are inflated.
  double Factor(const Project& project, int column);
  Value FlagOf(int row);

  // Copies the cells of one row, selects the cell at `to_column` and returns it.
  host::RangePtr CopyTowards(int row, int first_column, int last_column, int to_column);
  // Copies the cells of one row and pastes them from `to_column` on: everything, which ends the
  // copy, or formulas only.
  void Move(int row, int first_column, int last_column, int to_column);
  void MoveFormulas(int row, int first_column, int last_column, int to_column);
  void Empty(int row, int column);
  void EndCopy();
  void Tell(const std::string& message);

  host::WorksheetPtr sheet_;
  FlaggedColumns columns_;
  int row_count_ = 0;
};

}  // namespace vantora
