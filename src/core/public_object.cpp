#include "core/public_object.h"

#include "core/common.h"
#include "core/globals.h"

namespace vantora {

void BoundObject::Init(clsGlobals* globals) {
  if (!globals) {
    ReportProgrammingError(services_.user_interface,
                           {.module = class_name_, .detail = "", .number = kInvalidGlobals});
    return;
  }
  if (!globals->App()) {
    ReportProgrammingError(services_.user_interface,
                           {.module = class_name_, .detail = "", .number = kNoApplication});
    return;
  }
  application_ = globals->App();
  initialized_ = false;  // also when Bind throws
  initialized_ = Bind();
}

}  // namespace vantora
