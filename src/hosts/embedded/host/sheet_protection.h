// The protection of a worksheet, as Excel switches it on and off without a password.
#pragma once

#include "host/open_workbook.h"

namespace vantora::embedded {

// Protects drawing objects, contents and scenarios; everything else that a protection may allow is
// forbidden. A sheet that is protected with a password stays as it is.
void ProtectSheet(OpenWorkbook& book, int sheet);
// Throws HostError 1004 when the sheet is protected with a password.
void UnprotectSheet(OpenWorkbook& book, int sheet);

// False when the sheet is protected and its protection does not allow formatting rows.
bool MayFormatRows(OpenWorkbook& book, int sheet);

}  // namespace vantora::embedded
