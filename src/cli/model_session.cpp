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
  // Macros don't run here, and these only restore the look of buttons: a model whose macros have
  // not been imported yet can do without them.
  workbook_.AddSheetRoutine(model::kResetKeySortButtons);
  workbook_.AddSheetRoutine(model::kResetNamesSortButtons);
}

}  // namespace vantora::cli
