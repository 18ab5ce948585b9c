// Walking over the sheets of the active workbook that carry a flag in cell A1.
#pragma once

#include <string_view>

#include "core/common.h"
#include "core/host.h"

namespace vantora {

// Calls work(sheet) for each worksheet of the active workbook that carries the flag, in tab order.
// Each sheet's flag is looked at when its turn comes. Throws HostError 91 when no workbook is open.
template <typename Work>
void ForEachFlaggedSheet(host::Application& application, std::string_view flag, Work&& work) {
  for (const host::WorksheetPtr& sheet : ActiveWorkbookOf(application)->Worksheets()) {
    if (SheetHasFlag(sheet, flag)) work(sheet);
  }
}

}  // namespace vantora
