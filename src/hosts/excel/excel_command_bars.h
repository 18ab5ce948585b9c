// The menu bars of Excel and what stands on them, late-bound.
#pragma once

#include "core/host.h"
#include "hosts/excel/object.h"

namespace vantora::excel {

class ExcelCommandBar : public host::CommandBar {
 public:
  explicit ExcelCommandBar(Object object) : object_(std::move(object)) {}

  host::CommandBarControlsPtr Controls() override;
  host::CommandBarControlPtr FindControl(std::string_view tag) override;

 private:
  Object object_;
};

}  // namespace vantora::excel
