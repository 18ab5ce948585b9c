// References as a user writes them.
#pragma once

#include <string_view>

#include "host/objects.h"

namespace vantora::embedded {

// The range that a text like "Planning!C12", "'Data 01'!J4:N4", "J4:N9,J12:N14" (active sheet) or
// the name of cells names. Throws HostError 1004, in words for the user, when it is no reference or
// one to cells of several sheets.
host::RangePtr ReferencedRange(const BookHandle& book, std::string_view reference);

}  // namespace vantora::embedded
