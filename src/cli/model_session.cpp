#include "cli/model_session.h"

#include <memory>
#include <utility>

#include "core/model_layout.h"

namespace vantora::cli {

ModelSession::ModelSession(embedded::Session& workbook, UserInterface& user_interface,
                           Environment& environment)
    : workbook_(workbook),
      services_{user_interface, environment.clock, environment.file_versions},
      globals_(services_) {
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
