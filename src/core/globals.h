// The session context that the workbook's macros create first and hand to every other class.
#pragma once

#include <memory>
#include <string>

#include "core/public_object.h"

namespace vantora {

class clsMenuManagement;

class clsGlobals : public PublicObject {
 public:
  // `services` must outlive the object.
  explicit clsGlobals(Services& services) : services_(services) {}
  clsGlobals(const clsGlobals&) = delete;
  clsGlobals& operator=(const clsGlobals&) = delete;

  std::string_view class_name() const override { return "clsGlobals"; }

  // The host application; null until it has been set.
  const host::ApplicationPtr& App() const { return app_; }
  void SetApp(host::ApplicationPtr app) { app_ = std::move(app); }

  // The one object that rebuilds and adjusts the model's menus; null until it has been set.
  const std::shared_ptr<clsMenuManagement>& Menus() const { return menus_; }
  void SetMenus(std::shared_ptr<clsMenuManagement> menus) { menus_ = std::move(menus); }

  // The component's version line. Looked up each time it is read.
  std::string Version() const;

  // Refers to this object without owning it, and to nothing once it is gone.
  std::weak_ptr<clsGlobals> Reference() const { return self_; }

 private:
  std::shared_ptr<clsGlobals> self_{this, [](clsGlobals*) {}};
  Services& services_;
  // Declared in this order so that the host application is released before the menus.
  std::shared_ptr<clsMenuManagement> menus_;
  host::ApplicationPtr app_;
};

}  // namespace vantora
