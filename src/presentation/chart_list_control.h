// The dashboard's chart list control: reserved. Workbooks may create it and call Init; it does
// nothing else yet.
#pragma once

#include "core/public_object.h"

namespace vantora {

class clsChartListControl : public BoundObject {
 public:
  explicit clsChartListControl(Services& services) : BoundObject("clsChartListControl", services) {}
};

}  // namespace vantora
