// What stands at cells follows them when rows are put in another order.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "cells/address.h"
#include "package/sheet_markup.h"

namespace vantora::embedded {

// The rows of `area` that moved, with the row at which each stands now.
struct RowMoves {
  Area area;
  std::map<int, int> rows;

  // Where a cell stands now; nullopt when it stayed.
  std::optional<CellAddress> Of(CellAddress cell) const;
};

// Gives elements of that local name whose `ref` is a cell that moved its new place. nullopt when
// there are none. Throws XmlError.
std::optional<std::string> MoveReferences(std::string_view text, std::string_view element,
                                          const RowMoves& moves);

void MoveHyperlinks(SheetMarkup& markup, const RowMoves& moves);

}  // namespace vantora::embedded
