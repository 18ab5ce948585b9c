// Planning models of any size, for measurements: data sheets with history, current year and plan
// years, half of whose cells are formulas with right stored values and a fifth of whose rows
// hold a base case, a Reference sheet, a Planning sheet with projects under a spin button, and a
// sheet of ratios with comparison data.
#pragma once

#include <cstddef>
#include <filesystem>

namespace vantora::bench {

struct ModelSize {
  int sheets = 0;  // data sheets
  int rows = 0;    // of each data sheet
};

struct ModelCounts {
  std::size_t cells = 0;
  std::size_t formulas = 0;
};

// Writes the model as an .xlsm file, sheet by sheet. Throws std::runtime_error when the file can't
// be written.
ModelCounts WritePlanningModel(const std::filesystem::path& path, ModelSize size);

}  // namespace vantora::bench
