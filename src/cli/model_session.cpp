#include "cli/model_session.h"

#include <utility>

namespace vantora::cli {

ModelSession::ModelSession(const std::filesystem::path& model, UserInterface& user_interface,
                           Environment& environment)
    : workbook_(embedded::Session::Open(model)),
      services_{user_interface, environment.clock, environment.file_versions},
      globals_(services_) {
  host::ApplicationPtr application = workbook_->application();
  if (environment.wrap_application) application = environment.wrap_application(application);
  globals_.SetApp(std::move(application));
  auto menus = std::make_shared<clsMenuManagement>(services_);
  menus->Init(&globals_);
  globals_.SetMenus(std::move(menus));
}

}  // namespace vantora::cli
