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
  BindTo(globals->App(), globals->Reference());
}

void BoundObject::InitInner(BoundObject& inner) const { inner.BindTo(application_, globals_); }

std::shared_ptr<clsMenuManagement> BoundObject::menus() const {
  auto globals = globals_.lock();
  return globals ? globals->Menus() : nullptr;
}

void BoundObject::BindTo(host::ApplicationPtr application, std::weak_ptr<clsGlobals> globals) {
  application_ = std::move(application);
  globals_ = std::move(globals);
  initialized_ = false;  // also when Bind throws
  initialized_ = Bind();
}

}  // namespace vantora
