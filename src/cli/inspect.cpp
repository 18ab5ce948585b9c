#include "cli/inspect.h"

#include "cli/inspection_report.h"
#include "cli/report.h"
#include "host/session.h"

namespace vantora::cli {

ExitCode Inspect(const InspectOptions& options, Environment& environment) {
  try {
    const auto session = embedded::Session::Open(options.model);
    const inspection::Inspection found =
        inspection::Inspect(*session->application(),
                            [&](const std::string& sheet) { return session->ShapesOf(sheet); });
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
