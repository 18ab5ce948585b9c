// What stands before the "!" of a reference.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "formula/formula.h"

namespace vantora::embedded {

// Sheet ids as Reference has them.
struct SheetSpan {
  int first = Reference::kOwnSheet;
  int last = Reference::kOwnSheet;
};

// "Owner's" for "Owner''s".
std::string WithoutDoubledQuotes(std::string_view quoted);

// Appends "Owner''s" for "Owner's".
void AppendDoublingQuotes(std::string& out, std::string_view name);

// The sheets of "Plan" or "First:Last" (without quotes); nullopt when one does not exist.
std::optional<SheetSpan> FindSheets(std::string_view names, const SheetDirectory& sheets);

// Whether a formula can name the sheet only in quotes.
bool NeedsQuotes(std::string_view name);

// "R", "C", "RC", "R1", "C1", "R1C1".
bool LooksLikeR1C1(std::string_view name);

// Appends "Plan!" or "'First:Last'!", in quotes where the names need them.
void AppendSheetPrefix(std::string& out, int first, int last, const SheetDirectory& sheets);

}  // namespace vantora::embedded
