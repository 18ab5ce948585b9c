// Lists of areas as features of a sheet have them (sqref), and what clearing and pasting make of
// them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cells/address.h"

namespace vantora::embedded {

// Takes `cut` out of a feature's cells; a paste also adds those of `source`, moved onto `cut` (both
// of the same size).
struct AreaEdit {
  Area cut;
  std::optional<Area> source;

  // `area` moved as the source is.
  Area Moved(Area area) const;
};

bool Covers(const Area& outer, const Area& inner);
std::optional<Area> Intersection(const Area& a, const Area& b);

// "J5:Y56 AA5"; what is no area is left out.
std::vector<Area> ParseAreas(std::string_view sqref);
std::string ToSqref(const std::vector<Area>& areas);

// The areas after the edit, put together to few rectangles, by row and column; nullopt when the
// same cells are left.
std::optional<std::vector<Area>> Edited(const std::vector<Area>& areas, const AreaEdit& edit);

// The cell that relative references of a feature's formulas are written for: the corner of the
// rectangle around its areas. `areas` is not empty.
CellAddress AnchorOf(const std::vector<Area>& areas);

}  // namespace vantora::embedded
