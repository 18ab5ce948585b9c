// A cell's content on one line for a person.
#pragma once

#include <string>

#include "host/cell_differences.h"

namespace vantora::cli {

// Printable, with "\n" for each line break; "(empty)" for an empty text.
std::string OnOneLine(const std::string& text);
// "12", "=A1+1 [12]", "(empty)".
std::string ContentText(const embedded::CellContent& content);

}  // namespace vantora::cli
