// What the operations look for on a sheet besides its cell A1.
#pragma once

#include "inspection/sheet_reader.h"

namespace vantora::inspection {

// Each fills in its part of the facts and reports what an operation would stumble over.

// Row 1 of a history sheet: the marker column's flag.
void InspectHistory(SheetReader& reader, SheetFacts& facts);
// Column AB of a sheet that takes part in freezing.
void InspectBaseRows(SheetReader& reader, SheetFacts& facts);
// Row 1, the flag column and the spin buttons of a planning sheet; nothing on other sheets.
void InspectSpinners(SheetReader& reader, const std::vector<std::string>& shapes,
                     SheetFacts& facts);
// Columns with a "Planning key" heading.
void InspectKeyColumns(SheetReader& reader, SheetFacts& facts);
// Columns A, E and I of a ratio sheet.
void InspectRatios(SheetReader& reader, SheetFacts& facts);
// Row 1 of the title sheet.
void InspectTitleSheet(SheetReader& reader, SheetFacts& facts);
// Row 1 of the dashboard: which configurations hide a column.
void InspectConfigurationTokens(SheetReader& reader, SheetFacts& facts);
// The dashboard's charts: which of them no column has, and which are wider than theirs.
void InspectCharts(SheetReader& reader);

}  // namespace vantora::inspection
