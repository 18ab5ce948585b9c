// Switching the model between normal mode and development mode.
#pragma once

#include "core/public_object.h"

namespace vantora {

class clsDevelopmentMode : public BoundObject {
 public:
  explicit clsDevelopmentMode(Services& services) : BoundObject("clsDevelopmentMode", services) {}

  // Lists the model's planning keys and their discrepancies on the Reference Sheet.
  void CheckPlanningKeys();
};

}  // namespace vantora
