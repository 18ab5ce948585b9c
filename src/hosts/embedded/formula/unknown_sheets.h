// Formulas that name sheets which are not there.
#pragma once

#include <optional>
#include <string>

#include "formula/formula.h"

namespace vantora::embedded {

// The first sheet that the formula names before a "!" and that does not exist ("Budget",
// "[2]Plan"); nullopt when there is none. References whose sheet is gone (#REF!) name none.
std::optional<std::string> UnknownSheetIn(const Formula& formula, const SheetDirectory& sheets);

}  // namespace vantora::embedded
