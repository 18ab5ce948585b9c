// Cell A1 of a sheet: its letters, their numbers, and what takes them.
#pragma once

#include "inspection/sheet_reader.h"

namespace vantora::inspection {

// Fills in `a1`, `flags` and `operations`; reports numbers that are not taken, and a cell that
// reads like words.
void InspectFlags(SheetReader& reader, SheetFacts& facts);

// The facts' flag of that letter; null when the sheet does not carry it.
const SheetFlag* FindFlag(const SheetFacts& facts, std::string_view letter);

}  // namespace vantora::inspection
