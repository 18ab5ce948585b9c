// The embedded host's application: the host interfaces over open workbooks.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "core/host.h"
#include "host/open_workbook.h"

namespace vantora::embedded {

// What the objects of one application share.
struct ApplicationState {
  // Cells that Copy took, until the copy is ended.
  struct CopySource {
    int sheet;
    Area area;
  };

  std::unique_ptr<OpenWorkbook> workbook;
  std::optional<CopySource> copied;
  bool screen_updating = true;
  // Name of the shape that runs the macro.
  std::string caller;
};

// The application object. Every object made from it keeps `state` alive.
host::ApplicationPtr MakeApplication(std::shared_ptr<ApplicationState> state);

// Objects of the application's workbook, by place.
host::WorksheetPtr MakeWorksheet(std::shared_ptr<ApplicationState> state, int sheet);
host::RangePtr MakeRange(std::shared_ptr<ApplicationState> state, int sheet, const Area& area);

}  // namespace vantora::embedded
