#include "maintenance/development_mode.h"

#include "maintenance/planning_key_check.h"
#include "refsheet/ref_sheet.h"

namespace vantora {

void clsDevelopmentMode::CheckPlanningKeys() {
  if (!initialized()) return;
  clsRefSheet ref_sheet(services());
  InitInner(ref_sheet);
  vantora::CheckPlanningKeys(*application(), ref_sheet, services().user_interface);
}

}  // namespace vantora
