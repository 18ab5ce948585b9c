// Clients that use the engine's classes themselves.
#include <stdexcept>

#include "component/class_table.h"
#include "core/globals.h"
#include "operations/client.h"
#include "presentation/menu_management.h"

namespace vantora::testing {

struct Client::Impl {
  Impl(const component::PublicClass& public_class, Services& services)
      : public_class(public_class), globals(services), object(public_class.create(services)) {}

  const component::PublicClass& public_class;
  clsGlobals globals;
  std::shared_ptr<PublicObject> object;
};

Client::Client(std::string_view class_name, Services& services, host::ApplicationPtr application)
    : impl_(std::make_unique<Impl>(*component::FindClass(class_name), services)) {
  if (!application) return;
  impl_->globals.SetApp(std::move(application));
  Init();
}

Client::~Client() = default;

void Client::Init() { dynamic_cast<BoundObject&>(*impl_->object).Init(&impl_->globals); }

void Client::SetMenus(Client& menus) {
  auto object = std::dynamic_pointer_cast<clsMenuManagement>(menus.impl_->object);
  if (!object) throw std::invalid_argument("SetMenus takes a client of clsMenuManagement");
  impl_->globals.SetMenus(std::move(object));
}

Value Client::Call(std::string_view method, std::vector<Argument> arguments) {
  return CallByReference(method, arguments);
}

Value Client::CallByReference(std::string_view method, std::vector<Argument>& arguments) {
  return component::FindMethod(impl_->public_class, method)->call(*impl_->object, arguments);
}

}  // namespace vantora::testing
