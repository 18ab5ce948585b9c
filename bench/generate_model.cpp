// vantora-bench-model OUT.xlsm --sheets N --rows R: writes a planning model of that size.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <string>

#include "planning_model.h"

int main(int argc, char** argv) {
  CLI::App app("Writes a planning model for measurements.");
  std::string out;
  vantora::bench::ModelSize size{20, 1000};
  app.add_option("out", out, "The .xlsm file to write")->required();
  app.add_option("--sheets", size.sheets, "Data sheets")->check(CLI::Range(1, 200));
  app.add_option("--rows", size.rows, "Rows of each data sheet")->check(CLI::Range(20, 100000));
  CLI11_PARSE(app, argc, argv);
  try {
    auto counts = vantora::bench::WritePlanningModel(out, size);
    std::printf("%zu cells, %zu formulas\n", counts.cells, counts.formulas);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "vantora-bench-model: %s\n", error.what());
    return 1;
  }
}
