// The Reference Sheet's lists and menu table, and the groups of the model's menu.
#pragma once

#include "inspection/sheet_reader.h"

namespace vantora::inspection {

ReferenceSheetFacts InspectReferenceSheet(SheetReader& reader);

// Groups of the model's menu over all sheets: numbers that are no group, groups with too many
// sheets.
void InspectMenuGroups(const std::vector<SheetFacts>& sheets, std::vector<Problem>& problems);

}  // namespace vantora::inspection
