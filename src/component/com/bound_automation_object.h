// What every class but clsGlobals has: Init, and members that forward to the engine's class.
#pragma once

#include "component/com/automation.h"
#include "component/com/automation_object.h"

namespace vantora {
class clsGlobals;
}

namespace vantora::com {

// The clsGlobals that a client passed to Init, kept alive while this lives.
class GlobalsArgument {
 public:
  // Anything may be passed: nothing, no object, a foreign object, a reference to any of them.
  explicit GlobalsArgument(const VARIANT& argument);
  // Null unless it is a clsGlobals of this server.
  clsGlobals* get() const { return globals_; }

 private:
  ComPtr<IUnknown> object_;
  clsGlobals* globals_ = nullptr;
};

template <typename Interface, typename EngineClass>
class BoundAutomationObject : public AutomationObject<Interface> {
 public:
  STDMETHODIMP Init(VARIANT globals) override {
    return this->Run([&] { object_.Init(GlobalsArgument(globals).get()); });
  }

 protected:
  explicit BoundAutomationObject(const ComClass& com_class)
      : AutomationObject<Interface>(com_class), object_(this->services()) {}

  // Calls a method without arguments and result.
  HRESULT Call(void (EngineClass::*method)()) {
    return this->Run([&] { (object_.*method)(); });
  }

  EngineClass& object() { return object_; }

 private:
  EngineClass object_;
};

}  // namespace vantora::com
