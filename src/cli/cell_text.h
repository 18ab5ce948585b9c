// A cell's content, and how many there are, for a person.
#pragma once

#include <cstddef>
#include <string>

#include "host/cell_differences.h"

namespace vantora::cli {

// Printable, with "\n" for each line break; "(empty)" for an empty text.
std::string OnOneLine(const std::string& text);
// "12", "=A1+1 [12]", "(empty)".
std::string ContentText(const embedded::CellContent& content);

// "1 formula", "2 formulas".
std::string Count(std::size_t count, const std::string& one, const std::string& many);

}  // namespace vantora::cli
