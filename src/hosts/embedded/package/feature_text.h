// Conditional formats and validations as they stand in a sheet's markup.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cells/address.h"

namespace vantora::embedded {

// One conditional format or validation, as views into its text. The older form has its areas in an
// attribute and its formulas in elements of their own; the extension's are all elements <xm:f>.
struct Feature {
  struct FormulaPiece {
    std::string_view text;
    bool is_attribute = false;
  };
  std::string_view sqref;
  std::vector<FormulaPiece> formulas;
};

// Throws XmlError.
Feature ReadFeature(std::string_view text);

// The formula as it reads at `to`, meaning the same for each cell as it did written for `from`.
// Relative references to cells wrap around at the sheet's edges, as these formulas' do.
std::string Reanchored(const std::string& text, CellAddress from, CellAddress to);

}  // namespace vantora::embedded
