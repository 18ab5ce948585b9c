// What every class but clsGlobals has: Init, and members that forward to the engine's class.
#pragma once

#include <string>

#include "component/com/automation.h"
#include "component/com/automation_object.h"
#include "hosts/excel/text.h"

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

// Results as clients get them.
inline void Store(bool value, VARIANT_BOOL& result) {
  result = value ? VARIANT_TRUE : VARIANT_FALSE;
}
inline void Store(int value, LONG& result) { result = value; }
// The engine gives numbers of 16 bits here, and error 6 beyond.
inline void Store(int value, SHORT& result) { result = static_cast<SHORT>(value); }
inline void Store(const std::string& value, BSTR& result) { result = excel::MakeBstr(value); }

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

  // Calls a method without arguments and hands its result to the client.
  template <typename EngineResult, typename Result>
  HRESULT Call(EngineResult (EngineClass::*method)(), Result* result) {
    if (!result) return E_POINTER;
    *result = {};
    return this->Run([&] { Store((object_.*method)(), *result); });
  }

  EngineClass& object() { return object_; }

 private:
  EngineClass object_;
};

}  // namespace vantora::com
