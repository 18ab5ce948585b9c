// A model opened for the macros that work on it.
#pragma once

#include <filesystem>
#include <memory>

#include "cli/environment.h"
#include "core/globals.h"
#include "host/session.h"
#include "presentation/menu_management.h"

namespace vantora::cli {

// A workbook and the session context as the workbook's own open event sets it up: `App` is the
// host's application, `Menus` an initialised menu object that has not made any menu yet.
class ModelSession {
 public:
  // `user_interface` and `environment` must outlive the object. Throws embedded::FileError.
  ModelSession(const std::filesystem::path& model, UserInterface& user_interface,
               Environment& environment);

  embedded::Session& workbook() { return *workbook_; }
  Services& services() { return services_; }
  clsGlobals& globals() { return globals_; }
  clsMenuManagement& menus() { return *globals_.Menus(); }
  host::Application& application() { return *globals_.App(); }

 private:
  std::unique_ptr<embedded::Session> workbook_;
  Services services_;
  clsGlobals globals_;
};

}  // namespace vantora::cli
