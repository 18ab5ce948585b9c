#include "cli/recalculate.h"

#include <nlohmann/json.hpp>

#include "cli/cell_text.h"
#include "cli/report.h"
#include "cli/save.h"
#include "cli/writing_checks.h"
#include "host/session.h"
#include "ui/console/terminal_text.h"

namespace vantora::cli {
namespace {

using Json = nlohmann::ordered_json;

struct Result {
  std::size_t formulas = 0;
  std::vector<embedded::StoredValueDifference> differences;
  std::vector<UncalculatedFormula> uncalculated;
};

Result Calculate(embedded::Session& session) {
  Result result;
  embedded::Recalculation recalculation = session.RecalculateAll();
  result.formulas = recalculation.formulas;
  result.differences = std::move(recalculation.differences);
  for (const embedded::Uncalculated& formula : recalculation.uncalculated) {
    result.uncalculated.push_back(
        {session.file().model().NameOf(formula.sheet), formula.cell, formula.reason});
  }
  return result;
}

void Write(const Result& result, const RecalculateOptions& options, std::ostream& out) {
  out << Count(result.formulas, "formula", "formulas") << " calculated\n";
  if (options.compare) {
    out << Count(result.differences.size(), "stored value differs", "stored values differ") << '\n';
    for (const auto& difference : result.differences) {
      out << "  " << ui::Printable(difference.sheet) << "!" << embedded::ToA1(difference.cell)
          << "  " << OnOneLine(difference.stored) << "  ->  " << OnOneLine(difference.calculated)
          << '\n';
    }
  }
  out << Count(result.uncalculated.size(), "formula", "formulas") << " could not be calculated\n";
  for (const UncalculatedFormula& formula : result.uncalculated) {
    out << "  " << ui::Printable(formula.sheet) << "!" << embedded::ToA1(formula.cell) << ": "
        << ui::Printable(formula.reason) << '\n';
  }
}

void WriteJson(const Result& result, const RecalculateOptions& options, std::ostream& out) {
  Json differences = Json::array();
  for (const auto& difference : result.differences) {
    differences.push_back({{"sheet", difference.sheet},
                           {"cell", embedded::ToA1(difference.cell)},
                           {"stored", difference.stored},
                           {"calculated", difference.calculated}});
  }
  Json uncalculated = Json::array();
  for (const UncalculatedFormula& formula : result.uncalculated) {
    uncalculated.push_back({{"sheet", formula.sheet},
                            {"cell", embedded::ToA1(formula.cell)},
                            {"reason", formula.reason}});
  }
  Json json = {{"formulas", result.formulas}};
  if (options.compare) json["differences"] = differences;
  json["uncalculated"] = uncalculated;
  json["written"] = options.output ? Json(options.output->string()) : Json(nullptr);
  out << json.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace

ExitCode Recalculate(const RecalculateOptions& options, Environment& environment) {
  if (options.output) CheckOutput(options.model, *options.output);
  try {
    if (options.output) RequireWritable(*options.output);
    const auto session = embedded::Session::Open(options.model);
    const Result result = Calculate(*session);
    if (options.output) session->Save(*options.output);
    if (options.json) {
      WriteJson(result, options, environment.out);
    } else {
      Write(result, options, environment.out);
    }
    if (options.output) environment.err << "Written: " << options.output->string() << '\n';
    return ExitCode::kDone;
  } catch (const std::exception& error) {
    ReportFailure(error, options.json, environment.out, environment.err);
    return ExitCode::kError;
  }
}

}  // namespace vantora::cli
