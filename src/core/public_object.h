// What every public class of the component is.
#pragma once

#include <memory>
#include <string_view>

#include "core/host.h"
#include "core/user_interface.h"

namespace vantora {

class clsGlobals;
class clsMenuManagement;

// A public class as the outside holds it.
class PublicObject {
 public:
  virtual ~PublicObject() = default;
  virtual std::string_view class_name() const = 0;
};

// Every public class other than clsGlobals: bound to the session by Init, and silent until then.
class BoundObject : public PublicObject {
 public:
  std::string_view class_name() const override { return class_name_; }

  // Binds the object to the session. `globals` is null when the caller passed nothing, or something
  // that is no clsGlobals. Takes the application from it; a missing context or application is
  // reported with the programming-error report under the class's own name, and the object stays
  // unusable: its methods do nothing and return their type's empty value. May be called again, to
  // replace the application; a call that is refused then leaves the object as it was.
  void Init(clsGlobals* globals);
  bool initialized() const { return initialized_; }

 protected:
  // `class_name` must be a literal; `services` must outlive the object.
  BoundObject(std::string_view class_name, Services& services)
      : class_name_(class_name), services_(services) {}

  // Further set-up once the application is known; returns whether the object is usable. When it
  // throws, the object is not, and the caller of Init gets the error.
  virtual bool Bind() { return true; }

  Services& services() { return services_; }
  // Null until Init has found it.
  const host::ApplicationPtr& application() const { return application_; }
  // The menus of the session context; null when none were set, or the context is gone.
  std::shared_ptr<clsMenuManagement> menus() const;

  // Binds an object that this one made for its own work to the same session. This object has been
  // initialised; it works on even when the session context itself is gone.
  void InitInner(BoundObject& inner) const;

 private:
  std::string_view class_name_;
  Services& services_;
  void BindTo(host::ApplicationPtr application, std::weak_ptr<clsGlobals> globals);

  host::ApplicationPtr application_;
  std::weak_ptr<clsGlobals> globals_;
  bool initialized_ = false;
};

}  // namespace vantora
