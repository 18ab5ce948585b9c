#include "cli/inspect.h"

#include <algorithm>

#include "cli/inspection_report.h"
#include "cli/report.h"
#include "host/session.h"

namespace vantora::cli {

namespace {

constexpr std::size_t kMostUncalculated = 20;

// Formulas that no operation can read once what they depend on has changed.
void AddUncalculated(embedded::Session& session, inspection::Inspection& found) {
  const std::vector<embedded::Uncalculated> formulas = session.RecalculateAll().uncalculated;
  const std::size_t told = std::min(formulas.size(), kMostUncalculated);
  for (std::size_t i = 0; i < told; ++i) {
    found.problems.push_back(
        {session.file().model().NameOf(formulas[i].sheet), embedded::ToA1(formulas[i].cell),
         "The formula can't be calculated without Excel: " + formulas[i].reason +
             ". Its last value counts until then."});
  }
  if (formulas.size() > told) {
    found.problems.push_back({"", "",
                              std::to_string(formulas.size() - told) +
                                  " more formulas can't be calculated without Excel; 'vantora "
                                  "recalculate' names them all."});
  }
}

}  // namespace

ExitCode Inspect(const InspectOptions& options, Environment& environment) {
  try {
    const auto session = embedded::Session::Open(options.model);
    inspection::Inspection found =
        inspection::Inspect(*session->application(),
                            [&](const std::string& sheet) { return session->ShapesOf(sheet); });
    AddUncalculated(*session, found);
    if (options.json) {
      WriteInspectionJson(found, environment.out);
    } else {
      WriteInspection(found, environment.out);
    }
    return ExitCode::kDone;
  } catch (const std::exception& error) {
    ReportFailure(error, options.json, environment.out, environment.err);
    return ExitCode::kError;
  }
}

}  // namespace vantora::cli
