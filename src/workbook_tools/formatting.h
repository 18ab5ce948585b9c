// Editing aids for the yearly columns of the model sheets.
#pragma once

#include <functional>
#include <optional>

#include "core/public_object.h"

namespace vantora {

class clsFormatting : public BoundObject {
 public:
  explicit clsFormatting(Services& services) : BoundObject("clsFormatting", services) {}

  // Selects, in the selected rows, the next block of yearly columns (the one before when not
  // `forward`), or the block of that number, 1 to 5; another number counts as none.
  void RangeSelect(bool forward, std::optional<int> index = std::nullopt);
  // Ask for cells and format them, each area for itself: as a block of headings, and as a block of
  // figures that are entered.
  void LeftFormat();
  void RightFormat();
  // Pastes the copied formulas into every area of the selection. A step that fails is told of and
  // skipped.
  void PasteFormula();

 private:
  struct BlockFormat;

  void FormatChosenRange(const BlockFormat& format);
  void FormatArea(host::Range& area, const BlockFormat& format);
  // Tells the user, and is true, when the range has whole rows or whole columns.
  bool RefuseWholeRowsAndColumns(const host::RangePtr& range);
  void PasteIntoSelection();
  void PasteIntoEach(const host::RangePtr& selection);
  // Takes one step; tells the user when the host refuses it.
  void Try(const std::function<void()>& step);
};

}  // namespace vantora
