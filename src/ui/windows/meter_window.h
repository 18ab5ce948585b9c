// The bar of a progress dialog.
#pragma once

#include <string>

#include "ui/windows/control_window.h"

namespace vantora::ui {

// Stands at the place of the meter's background and draws all three labels in one go.
class MeterWindow final : public ControlWindow {
 public:
  MeterWindow(const ControlPlace& place, const Meter& meter);

  void Draw(const DRAWITEMSTRUCT& item) override;

 private:
  // What is on the screen.
  struct Shown {
    std::string back;
    std::string front;
    double fraction = 0;
    bool operator==(const Shown&) const = default;
  };

  void UpdateContent() override;
  void Paint(HDC canvas, const RECT& area) const;

  Meter meter_;
  Shown shown_;
};

}  // namespace vantora::ui
