// The embedded host's application: the host interfaces over open workbooks.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/host.h"
#include "host/open_workbook.h"
#include "host/pending_saves.h"
#include "host/prompts.h"
#include "host/workbook_windows.h"

namespace vantora::embedded {

// What the objects of one application share.
struct ApplicationState {
  // Cells that Copy took, until the copy is ended.
  struct CopySource {
    OpenWorkbook* workbook;
    int sheet;
    Area area;
  };

  // At least one, in the order in which they were opened. They stay in memory and can be saved; for
  // a macro, one whose last window was closed is no longer open.
  std::vector<std::unique_ptr<OpenWorkbook>> workbooks;
  OpenWorkbook* active_workbook = nullptr;
  std::optional<CopySource> copied;
  bool screen_updating = true;
  // As Application.Version tells it: of Excel 2016 and all since.
  std::string version = "16.0";
  // Null when nobody answers what operations ask through the host.
  Prompts* prompts = nullptr;
  PendingSaves saves;
  // Space for windows, in points.
  double usable_height = kUsualWindowHeight;
  double usable_width = kUsualWindowWidth;
  bool full_screen = false;
  // Name of the shape that runs the macro.
  std::string caller;
};

// The application object. Every object made from it keeps `state` alive.
host::ApplicationPtr MakeApplication(std::shared_ptr<ApplicationState> state);

}  // namespace vantora::embedded
