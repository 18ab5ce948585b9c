// Writing the .xls format of before Excel 2007, which an installed LibreOffice does.
#pragma once

#include <filesystem>
#include <memory>

#include "host/open_workbook.h"

namespace vantora::embedded {

// Writes the workbook as it is into a file beside `target`, which its Commit puts in place. Throws
// FileError (kCannotWrite) where LibreOffice is not installed or does not manage.
std::unique_ptr<ReplacementFile> ExportXls(OpenWorkbook& workbook,
                                           const std::filesystem::path& target);

}  // namespace vantora::embedded
