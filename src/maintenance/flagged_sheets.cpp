#include "maintenance/flagged_sheets.h"

namespace vantora {

host::WorkbookPtr ActiveWorkbookOf(host::Application& application) {
  host::WorkbookPtr workbook = application.ActiveWorkbook();
  if (!workbook) {
    throw HostError(HostError::kObjectNotSet, "No workbook is open.", "Orvanemcro1");
  }
  return workbook;
}

}  // namespace vantora
