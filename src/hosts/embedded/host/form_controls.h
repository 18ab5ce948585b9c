// The form controls on a sheet (spin buttons, check boxes, ...), as both of their descriptions have
// them: the properties part of each control, and the legacy drawing of older workbooks.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "package/opc_package.h"
#include "package/sheet_markup.h"

namespace vantora::embedded {

// The cell that the control is linked to, as the workbook has it ("$C$12", "Planning!$C$12"); ""
// for a control that is linked to none. Nullopt when the sheet has no form control of that name
// (case-insensitive). Throws FileError.
std::optional<std::string> LinkedCellOf(const OpcPackage& package, const SheetMarkup& markup,
                                        std::string_view sheet_part, std::string_view name);

}  // namespace vantora::embedded
