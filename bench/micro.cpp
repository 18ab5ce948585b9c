// Single steps on planning models: load, save, recalculation, an operation. The arguments of each
// measurement are the model's data sheets and rows.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/globals.h"
#include "formula/calculator.h"
#include "host/session.h"
#include "maintenance/year_end.h"
#include "package/workbook_file.h"
#include "planning_model.h"
#include "support/fake_services.h"
#include "workbook_tools/copy_worksheet.h"

namespace vantora::bench {
namespace {

namespace fs = std::filesystem;
using embedded::Area;
using embedded::Calculator;
using embedded::Session;
using embedded::WorkbookFile;

constexpr Area kWholeSheet{1, 1, embedded::kMaxRow, embedded::kMaxColumn};

// The models that were needed, in a folder that goes when the program ends.
class Models {
 public:
  Models() : folder_(fs::temp_directory_path() / ("vantora-bench-" + std::to_string(getpid()))) {
    fs::create_directory(folder_);
  }
  ~Models() {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }

  struct Model {
    fs::path path;
    ModelCounts counts;
  };
  const Model& Get(const benchmark::State& state) {
    ModelSize size{static_cast<int>(state.range(0)), static_cast<int>(state.range(1))};
    auto [found, is_new] = models_.try_emplace({size.sheets, size.rows});
    if (is_new) {
      fs::path path = folder_ / (std::to_string(models_.size()) + ".xlsm");
      found->second = {path, WritePlanningModel(path, size)};
    }
    return found->second;
  }
  fs::path output() const { return folder_ / "output.xlsm"; }

 private:
  fs::path folder_;
  std::map<std::pair<int, int>, Model> models_;
};

Models& AllModels() {
  static Models models;
  return models;
}

void CountCells(benchmark::State& state) {
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) *
                          static_cast<std::int64_t>(AllModels().Get(state).counts.cells));
}

void Load(benchmark::State& state) {
  const auto& model = AllModels().Get(state);
  for (auto _ : state) benchmark::DoNotOptimize(WorkbookFile::Open(model.path));
  CountCells(state);
}

// Every sheet is written anew: one value of each has changed.
void Save(benchmark::State& state) {
  auto file = WorkbookFile::Open(AllModels().Get(state).path);
  for (auto _ : state) {
    state.PauseTiming();
    for (auto& sheet : file->model().sheets) {
      embedded::CellAddress cell{3, 2};
      double number = sheet->cells.Get(cell).value.number + 1;
      sheet->cells.SetConstant(cell, embedded::CellValue::Number(number));
    }
    state.ResumeTiming();
    file->Save(AllModels().output());
  }
  CountCells(state);
}

void BuildIndex(benchmark::State& state) {
  auto file = WorkbookFile::Open(AllModels().Get(state).path);
  for (auto _ : state) {
    Calculator calculator(file->model());
    calculator.Changed(0, {1, 30, 1, 30});
  }
  CountCells(state);
}

void CountEvaluations(benchmark::State& state, const Calculator& calculator) {
  state.SetItemsProcessed(static_cast<std::int64_t>(calculator.evaluations()));
}

void RecalculateEverything(benchmark::State& state) {
  auto file = WorkbookFile::Open(AllModels().Get(state).path);
  Calculator calculator(file->model());
  for (auto _ : state) {
    for (auto& sheet : file->model().sheets) calculator.Changed(sheet->id, kWholeSheet);
    calculator.CalculateAll();
  }
  if (!calculator.Uncalculable().empty()) state.SkipWithError("formulas can't be calculated");
  CountEvaluations(state, calculator);
}

// One factor of the lookup table, which a good part of the formulas on all sheets use.
void RecalculateAfterOneEdit(benchmark::State& state) {
  auto file = WorkbookFile::Open(AllModels().Get(state).path);
  Calculator calculator(file->model());
  for (auto _ : state) {
    calculator.Changed(0, {14, 28, 14, 28});
    calculator.CalculateAll();
  }
  CountEvaluations(state, calculator);
}

void InsertColumnOnEachSheet(benchmark::State& state) {
  auto file = WorkbookFile::Open(AllModels().Get(state).path);
  Calculator calculator(file->model());
  calculator.Changed(0, {1, 30, 1, 30});
  for (auto _ : state) {
    for (auto& sheet : file->model().sheets) calculator.InsertColumns({sheet->id, 30, 1});
  }
}

void ShiftHistory(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    auto session = Session::Open(AllModels().Get(state).path);
    testing::FakeServices fake({"OK"});
    clsGlobals globals(fake.services);
    globals.SetApp(session->application());
    clsYearEnd year_end(fake.services);
    year_end.Init(&globals);
    state.ResumeTiming();
    year_end.ShiftHistory();
    session->Calculate();
    state.PauseTiming();
    session.reset();
    state.ResumeTiming();
  }
  CountCells(state);
}

// As many look-ups as the table has rows, each of the kinds that a planning model uses, after an
// edit of the table.
void LookUp(benchmark::State& state, const char* formula) {
  const int rows = static_cast<int>(state.range(0));
  embedded::WorkbookModel model;
  embedded::SheetModel& table = model.AddSheet("Accounts");
  embedded::SheetModel& plan = model.AddSheet("Plan");
  const embedded::FormulaId look_up =
      plan.formulas.Intern(embedded::ParseFormula(formula, {1, 2}, model));
  for (int row = 1; row <= rows; ++row) {
    // Neither list is in order, but every account is there.
    const auto account = [&](int number) {
      return embedded::CellValue::Text(model.strings.Intern("Account " + std::to_string(number)));
    };
    table.cells.Load({row, 1}, account(row * 7919 % rows), 0, 0);
    table.cells.Load({row, 2}, embedded::CellValue::Number(row), 0, 0);
    plan.cells.Load({row, 1}, account(row * 104729 % rows), 0, 0);
    plan.cells.Load({row, 2}, embedded::CellValue::Number(0), look_up, 0);
  }
  Calculator calculator(model);
  double number = 0;
  for (auto _ : state) {
    table.cells.SetConstant({1, 2}, embedded::CellValue::Number(++number));
    table.cells.SetConstant({2, 1}, table.cells.Get({2, 1}).value);
    calculator.Changed(table.id, {1, 1, rows, 2});
    calculator.CalculateAll();
  }
  if (!calculator.Uncalculable().empty()) state.SkipWithError("formulas can't be calculated");
  CountEvaluations(state, calculator);
}

// One data sheet into the same workbook, cell by cell.
void CopyWorksheet(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    auto session = Session::Open(AllModels().Get(state).path);
    for (const auto& sheet : session->application()->ActiveWorkbook()->Worksheets()) {
      if (sheet->Name().starts_with("Data")) sheet->Activate();
    }
    testing::FakeServices fake({"frmCopyWorksheet:butCopy", "frmCopyWorksheet:butCancel"});
    clsGlobals globals(fake.services);
    globals.SetApp(session->application());
    clsCopyWorksheet copy(fake.services);
    copy.Init(&globals);
    state.ResumeTiming();
    copy.CopyWorksheet();
    state.PauseTiming();
    state.counters["cells"] =
        static_cast<double>(session->file().model().sheets.back()->cells.size());
    session.reset();
    state.ResumeTiming();
  }
  state.SetComplexityN(state.range(1));
}

#define VANTORA_MEASURE(step) \
  BENCHMARK(step)->Args({4, 500})->Args({20, 1000})->Unit(benchmark::kMillisecond)

VANTORA_MEASURE(Load);
VANTORA_MEASURE(Save);
VANTORA_MEASURE(BuildIndex);
VANTORA_MEASURE(RecalculateEverything);
VANTORA_MEASURE(RecalculateAfterOneEdit);
VANTORA_MEASURE(InsertColumnOnEachSheet);
VANTORA_MEASURE(ShiftHistory);

#define VANTORA_MEASURE_LOOK_UP(name, formula) \
  BENCHMARK_CAPTURE(LookUp, name, formula)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond)

VANTORA_MEASURE_LOOK_UP(vlookup, "VLOOKUP(A1,Accounts!$A$1:$B$5000,2,FALSE)");
VANTORA_MEASURE_LOOK_UP(index_match,
                        "INDEX(Accounts!$B$1:$B$5000,MATCH(A1,Accounts!$A$1:$A$5000,0))");
VANTORA_MEASURE_LOOK_UP(xlookup, "XLOOKUP(A1,Accounts!$A$1:$A$5000,Accounts!$B$1:$B$5000)");
VANTORA_MEASURE_LOOK_UP(sumif, "SUMIF(Accounts!$A$1:$A$5000,A1,Accounts!$B$1:$B$5000)");
VANTORA_MEASURE_LOOK_UP(countif, "COUNTIF(Accounts!$A$1:$A$5000,A1)");
VANTORA_MEASURE_LOOK_UP(growing, "COUNTIF(Accounts!$A$1:$A1,A1)");
VANTORA_MEASURE_LOOK_UP(approximate, "VLOOKUP(A1,Accounts!$A$1:$B$5000,2)");

// Linear in the cells: 28 columns, up to 5,000 rows.
BENCHMARK(CopyWorksheet)
    ->Args({1, 1250})
    ->Args({1, 2500})
    ->Args({1, 5000})
    ->Complexity(benchmark::oN)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantora::bench

BENCHMARK_MAIN();
