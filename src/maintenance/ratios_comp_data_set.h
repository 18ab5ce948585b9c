// Distributing comparison data onto the ratio rows.
#pragma once

#include <array>

#include "core/model_layout.h"
#include "core/public_object.h"

namespace vantora {

class clsRatiosCompDataSet : public BoundObject {
 public:
  explicit clsRatiosCompDataSet(Services& services)
      : BoundObject("clsRatiosCompDataSet", services) {}

  // On each worksheet of the active workbook that carries a "G" in cell A1, copies columns J to O
  // of the g-th block's rows to the row g below the ratio with the same key, and tells how many
  // blocks the sheet has. Does nothing unless the object is initialised. Throws HostError 9 for a
  // block number above 10 and a key outside 0 to 100, 6 for a code or key that is no 16-bit
  // integer, 13 for an error value among the codes, and what the host refuses; screen updating then
  // stays off.
  void RatiosCompDataSet();

 private:
  // Where the ratios and the blocks of comparison data stand; 0 where nothing was found.
  struct Layout {
    std::array<int, model::kLargestRatioKey + 1> ratio_rows{};  // by key
    std::array<int, model::kMostBlocks + 1> first_rows{};       // by block number
    std::array<int, model::kMostBlocks + 1> last_rows{};
  };

  // Adds the sheet's ratios and blocks to the layout and returns the highest block number.
  static int ReadLayout(host::Worksheet& sheet, Layout& layout);
  static void CopyBlock(host::Worksheet& sheet, const Layout& layout, int block);
};

}  // namespace vantora
