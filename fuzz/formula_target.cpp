// A formula's text in a small workbook. Written out and read again it is the same formula, and
// following an insertion, copying and calculating do no harm.
#include "formula/calculator.h"
#include "formula/formula.h"
#include "formula/workbook_model.h"
#include "fuzz_support.h"

using namespace vantora;
using namespace vantora::embedded;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  WorkbookModel model;
  SheetModel& sheet = model.AddSheet("Data");
  model.AddSheet("Other 1");
  model.names.push_back({.name = "rate", .scope = -1, .refers_to = "Data!$A$1"});
  sheet.cells.SetConstant({1, 1}, CellValue::Number(2.5));
  sheet.cells.SetConstant({2, 1}, CellValue::Text(model.strings.Intern("text")));
  const CellAddress cell{3, 3};

  const Formula formula = ParseFormula(text, cell, model);
  const std::string written = FormulaText(formula, cell, model);
  const Formula again = ParseFormula(written, cell, model);
  fuzz::Require(FormulaText(again, cell, model) == written, "a formula reads as it was written");

  FollowInsertion(formula, 0, cell, {3, 4}, {.sheet = 0, .column = 2, .count = 1});
  const ColumnInsertion insertions[] = {{.sheet = 0, .column = 1, .count = 2}};
  FollowInsertionsInText(text, 0, insertions, model);
  RelocateForPaste(formula, cell, {1, 1});

  sheet.cells.SetFormula(cell, sheet.formulas.Intern(formula));
  Calculator calculator(model);
  calculator.Changed(0, {1, 1, 3, 3});
  calculator.CalculateAll();
  calculator.InsertColumns({.sheet = 0, .column = 2, .count = 1});
  calculator.CalculateAll();
  return 0;
}
