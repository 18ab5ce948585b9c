// The macros that the workbook offers behind its menus, carried out without them: each is a few
// lines that call the component, and what those lines do is known.
#pragma once

#include "cli/model_session.h"
#include "cli/run_outcome.h"
#include "host/menu_control.h"

namespace vantora::cli {

// Does what the workbook's macro behind a menu entry does:
//   VA_SelSheet            activates the worksheet that the entry's caption names
//   VA_SelChart            activates the dashboard and scrolls its left or right pane to the chart
//   VA_selConfig           applies the configuration in the entry's tag and activates the dashboard
//   VA_ and the name of a method without arguments: calls that method
// Throws UsageError for any other macro, and what the macro itself ends with.
void RunWorkbookMacro(const embedded::MenuEntry& entry, ModelSession& session, RunOutcome& outcome);

}  // namespace vantora::cli
