#include "cli/model_session.h"

#include <memory>
#include <utility>

#include "core/model_layout.h"

namespace vantora::cli {
namespace {

// Routines of the Reference Sheet's code module that operations call. Macros don't run here, and
// what these restore is the look of buttons that only macros have a use for: a model whose macros
// have not been imported yet can do without them.
constexpr const char* kSheetRoutines[] = {"ResetKeySortButtons", "resetNamesSortButtons"};

}  // namespace

ModelSession::ModelSession(embedded::Session& workbook, UserInterface& user_interface,
                           Environment& environment)
    : workbook_(workbook),
      services_{user_interface, environment.clock, environment.file_versions},
      globals_(services_) {
  for (const char* routine : kSheetRoutines) workbook_.AddSheetRoutine(routine);
  host::ApplicationPtr application = workbook_.application();
  if (environment.wrap_application) application = environment.wrap_application(application);
  globals_.SetApp(std::move(application));
  auto menus = std::make_shared<clsMenuManagement>(services_);
  menus->Init(&globals_);
  globals_.SetMenus(std::move(menus));
  // No macro runs here anyway: what a workbook with macros only restores the look of its buttons
  // with is no reason to refuse one without.
  workbook_.AddSheetRoutine(model::kResetKeySortButtons);
  workbook_.AddSheetRoutine(model::kResetNamesSortButtons);
}

}  // namespace vantora::cli
