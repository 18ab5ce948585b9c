// Excel's own results: every formula of a workbook that it saved is evaluated with the stored
// values of its precedents and compared with the stored result. Each workbook in
// tests/data/recalculation and of the collection of realistic models beside the checkout that holds
// formulas is a test.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iostream>
#include <map>
#include <vector>

#include "formula/evaluate.h"
#include "package/workbook_file.h"
#include "package/zip_archive.h"

namespace vantora::embedded {
namespace {

// A workbook with formulas keeps the order in which they are calculated, which is quicker to look
// for than the formulas. One that can't be read is left to its test to tell of.
bool HasFormulas(const std::filesystem::path& workbook) {
  try {
    return std::ranges::any_of(ZipArchive(workbook).entries(), [](const ZipArchive::Entry& entry) {
      return entry.name == "xl/calcChain.xml";
    });
  } catch (const FileError&) {
    return true;
  }
}

std::vector<std::filesystem::path> Workbooks() {
  std::vector<std::filesystem::path> found;
  const std::filesystem::path models =
      std::filesystem::path(VANTORA_SOURCE_DIR) / "../shared/models";
  for (const auto& folder : {std::filesystem::path(VANTORA_TEST_DATA) / "recalculation", models,
                             models / "made-by-excel"}) {
    if (!std::filesystem::is_directory(folder)) continue;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      const std::string extension = entry.path().extension().string();
      const bool is_workbook = extension == ".xlsx" || extension == ".xlsm";
      if (is_workbook && HasFormulas(entry.path())) found.push_back(entry.path());
    }
  }
  std::sort(found.begin(), found.end());
  return found;
}

bool SameResult(const CellValue& stored, const CellValue& value) {
  if (stored.kind == CellKind::kNumber && value.kind == CellKind::kNumber) {
    const double scale = std::max(std::fabs(stored.number), std::fabs(value.number));
    return std::fabs(stored.number - value.number) <= std::max(scale * 1e-9, 1e-15);
  }
  return stored == value;
}

std::string Shown(const WorkbookModel& model, const CellValue& value) {
  switch (value.kind) {
    case CellKind::kNumber:
      return testing::PrintToString(value.number);
    case CellKind::kText:
      return "\"" + model.strings[value.text] + "\"";
    case CellKind::kBoolean:
      return value.boolean ? "TRUE" : "FALSE";
    case CellKind::kError:
      return "error " + std::to_string(static_cast<int>(value.error));
    default:
      return "blank";
  }
}

// Compares the formulas of a workbook and tells what could not be calculated.
class Comparison {
 public:
  explicit Comparison(WorkbookModel& model) : model_(model) {}

  void Run() {
    for (const auto& sheet : model_.sheets) {
      for (const ArrayFormula& array : sheet->arrays) CompareArray(*sheet, array.area);
      for (int column = 1; column <= sheet->cells.LastColumn(); ++column) {
        sheet->cells.ForEachInColumn(column, 1, kMaxRow, [&](int row, const Cell& cell) {
          if (cell.formula != 0) CompareCell(*sheet, {row, column}, cell);
        });
      }
    }
    for (const auto& [reason, count] : skipped_) {
      std::cout << "  not compared: " << count << " formulas, " << reason << "\n";
    }
    std::cout << "  compared: " << compared_ << " formulas\n";
  }
  int compared() const { return compared_; }

 private:
  static bool InArray(const SheetModel& sheet, CellAddress cell) {
    for (const ArrayFormula& array : sheet.arrays) {
      if (array.area.Contains(cell)) return true;
    }
    return false;
  }

  void CompareCell(const SheetModel& sheet, CellAddress cell, const Cell& stored) {
    if (InArray(sheet, cell)) return;
    const Formula& formula = sheet.formulas[stored.formula];
    const Evaluation result = Evaluate(model_, formula, {sheet.id, cell});
    if (ChangesByItself(formula)) {
      ++skipped_["its value depends on the time or on chance"];
    } else if (result.outcome != Evaluation::Outcome::kValue) {
      ++skipped_[result.reason];
    } else {
      Compare(sheet, cell, formula, stored.value, result.value);
    }
  }

  void CompareArray(const SheetModel& sheet, const Area& area) {
    const CellAddress corner{area.first_row, area.first_column};
    const Cell first = sheet.cells.Get(corner);
    if (first.formula == 0) return;
    const Formula& formula = sheet.formulas[first.formula];
    const Evaluation result = Evaluate(model_, formula, {sheet.id, corner}, &area);
    if (result.outcome != Evaluation::Outcome::kValue) {
      ++skipped_[result.reason];
      return;
    }
    for (int row = 0; row < area.rows(); ++row) {
      for (int column = 0; column < area.columns(); ++column) {
        const CellAddress cell{area.first_row + row, area.first_column + column};
        Compare(sheet, cell, formula, sheet.cells.Get(cell).value, result.array[row][column]);
      }
    }
  }

  static bool ChangesByItself(const Formula& formula) {
    constexpr const char* kFunctions[] = {"NOW(", "TODAY(", "RAND(", "RANDBETWEEN("};
    return std::ranges::any_of(kFunctions, [&](const char* function) {
      return formula.text.find(function) != std::string::npos;
    });
  }

  void Compare(const SheetModel& sheet, CellAddress cell, const Formula& formula,
               const CellValue& stored, const CellValue& value) {
    ++compared_;
    EXPECT_TRUE(SameResult(stored, value))
        << sheet.name << "!" << ToA1(cell) << " =" << FormulaText(formula, cell, model_)
        << "\n  stored " << Shown(model_, stored) << ", calculated " << Shown(model_, value);
  }

  WorkbookModel& model_;
  int compared_ = 0;
  std::map<std::string, int> skipped_;
};

class Recalculation : public testing::TestWithParam<std::filesystem::path> {};

TEST_P(Recalculation, GivesTheStoredResults) {
  const std::unique_ptr<WorkbookFile> file = WorkbookFile::Open(GetParam());
  Comparison comparison(file->model());
  comparison.Run();
  EXPECT_GT(comparison.compared(), 0);
}

TEST(RecalculationWorkbooks, AreThere) {
  if (Workbooks().empty()) {
    GTEST_SKIP() << "There is no folder of realistic workbooks beside the checkout.";
  }
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(Recalculation);
INSTANTIATE_TEST_SUITE_P(Workbooks, Recalculation, testing::ValuesIn(Workbooks()),
                         [](const auto& info) {
                           std::string name = info.param.stem().string();
                           for (char& c : name)
                             c = std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
                           return name;
                         });

}  // namespace
}  // namespace vantora::embedded
