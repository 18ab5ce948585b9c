// An open model as the macros that work on it find it.
#pragma once

#include "cli/environment.h"
#include "core/globals.h"
#include "host/session.h"
#include "presentation/menu_management.h"

namespace vantora::cli {

// A workbook and the session context as the workbook's own open event sets it up: `App` is the
// host's application, `Menus` an initialised menu object that has not made any menu yet.
class ModelSession {
 public:
  // All three must outlive the object.
  ModelSession(embedded::Session& workbook, UserInterface& user_interface,
               Environment& environment);

  embedded::Session& workbook() { return workbook_; }
  Services& services() { return services_; }
  clsGlobals& globals() { return globals_; }
  clsMenuManagement& menus() { return *globals_.Menus(); }
  host::Application& application() { return *globals_.App(); }

 private:
  embedded::Session& workbook_;
  Services services_;
  clsGlobals globals_;
};

}  // namespace vantora::cli
