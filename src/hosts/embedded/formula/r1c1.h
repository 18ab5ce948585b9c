// References in R1C1 notation as INDIRECT reads them: "R2C3", "R[-1]C", "Plan!R1C1:R2C[1]", "C4".
#pragma once

#include <optional>
#include <string_view>

#include "formula/formula.h"
#include "formula/operand.h"

namespace vantora::embedded {

// The cells that the text means in `cell` of `own_sheet`; nullopt for anything else, for a sheet
// that does not exist or lacks its quotes, and for cells beyond the sheet's edges.
std::optional<Block> CellsOfR1C1(std::string_view text, int own_sheet, CellAddress cell,
                                 const SheetDirectory& sheets);

}  // namespace vantora::embedded
