// What may be a defined name, and what a name may refer to, as a macro gives it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "formula/formula.h"

namespace vantora::embedded {

// Whether a workbook may have a name called so: letters, digits, "_", "\", "." and "?", a letter,
// "_" or "\" first, at most 255 characters, and nothing that reads as a cell ("Q1", "R1C1", "C") or
// belongs to Excel ("Print_Area").
bool IsValidName(std::string_view name);

// The cells that a formula in R1C1 notation refers to, as a formula without "=" writes them:
// "Plan!$A$12:$AB$12" for "=Plan!R12C1:R12C28". Without a sheet, those of `own_sheet`. Nullopt for
// anything but an absolute reference to cells, rows or columns of one existing sheet, whose name
// stands in quotes where it needs them.
std::optional<std::string> ReferenceFromR1C1(std::string_view formula, int own_sheet,
                                             const SheetDirectory& sheets);

}  // namespace vantora::embedded
