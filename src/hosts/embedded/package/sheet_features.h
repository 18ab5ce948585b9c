// What copy, paste and clearing do to the features around the cells of one sheet: validations,
// conditional formats, merged cells, hyperlinks.
#pragma once

#include <vector>

#include "cells/address.h"
#include "package/sheet_markup.h"

namespace vantora::embedded {

enum FeatureSet : unsigned {
  kConditionalFormats = 1,
  kValidations = 2,
  kMergedCells = 4,
  kHyperlinks = 8,
};

// Takes `area` out of the features' areas; a feature left without cells goes.
void ClearFeatures(SheetMarkup& markup, const Area& area, unsigned features);

// As a paste of `from` at `to` (the same size) does: clears the features there, then extends or
// adds those of `from`, formulas shifted relatively. Both areas lie on the sheet of `markup`.
void PasteFeatures(SheetMarkup& markup, const Area& from, const Area& to, unsigned features);

// The areas of all these features, in any order.
std::vector<Area> AreasOfFeatures(const SheetMarkup& markup);

// Merged areas of the sheet.
std::vector<Area> MergedAreas(const SheetMarkup& markup);

}  // namespace vantora::embedded
