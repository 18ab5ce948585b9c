// The desktop's windows, as the model's rules name the platform's functions for them.
#pragma once

#include "core/user_interface.h"

namespace vantora::ui {

class Desktop final : public WindowSystem {
 public:
  WindowHandle FindByCaption(std::string_view caption) override;
  WindowHandle Foreground() override;
  void SetForeground(WindowHandle window) override;
  std::uint32_t ThreadOf(WindowHandle window) override;
  std::uint32_t Style(WindowHandle window) override;
  void SetStyle(WindowHandle window, std::uint32_t style) override;
};

}  // namespace vantora::ui
