// The planning-key check: compares the planning keys that the model's sheets use with those that
// the model defines.
#pragma once

#include "core/host.h"
#include "core/user_interface.h"
#include "refsheet/ref_sheet.h"

namespace vantora {

// Fills the planning keys list and the discrepancy list of the Reference Sheet that `ref_sheet` is
// bound to, and tells the user when there are discrepancies. Does nothing when the Reference Sheet
// lacks one of the lists. Leaves the Reference Sheet active.
//
// Keys stand under a heading "Planning key". In column I of a sheet flagged "L" they are the ones
// that the model defines; everywhere else they are keys in use. Upper and lower case are the same.
void CheckPlanningKeys(host::Application& application, clsRefSheet& ref_sheet,
                       UserInterface& user_interface);

}  // namespace vantora
