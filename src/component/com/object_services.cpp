#include "component/com/windows_services.h"
#include "ui/windows/windows_user_interface.h"

namespace vantora::com {
namespace {

class WindowsServices final : public ObjectServices {
 public:
  Services& services() override { return services_; }

 private:
  ui::WindowsUserInterface user_interface_;
  WindowsClock clock_;
  WindowsFileVersions file_versions_;
  Services services_{user_interface_, clock_, file_versions_};
};

}  // namespace

std::unique_ptr<ObjectServices> MakeObjectServices() { return std::make_unique<WindowsServices>(); }

}  // namespace vantora::com
