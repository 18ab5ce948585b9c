// A sheet's new name in what stands around the cells.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "formula/rename_sheet.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {

// The text of a part, or of an element of a sheet's part, with the sheet's new name wherever it
// names it: formulas of conditional formats, validations, charts, tables, sparklines; linked cells
// and fill ranges of controls; linked texts of shapes; sources of pivot tables and consolidations;
// the pivot table that a chart shows; where hyperlinks within the workbook lead. Cells' formulas
// are the cell writer's. Nullopt when it names it nowhere. Throws XmlError.
std::optional<std::string> RenameSheetInMarkup(std::string_view text, const SheetRename& rename,
                                               XmlScanner::Mode mode = XmlScanner::Mode::kStrict);

}  // namespace vantora::embedded
