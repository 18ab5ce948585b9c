// Formula texts in which a sheet has a new name.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vantora::embedded {

struct SheetRename {
  std::string before;
  std::string after;
};

// A formula's text (without "=") that names the sheet as it is called now: before references and
// names of the sheet's own, and where the sheet begins or ends a span of sheets. Texts in double
// quotes, sheets of other workbooks and columns of tables stay. Nullopt when the text does not name
// the sheet.
std::optional<std::string> RenameSheetInText(std::string_view text, const SheetRename& rename);

// The same for the place within the workbook that a hyperlink leads to, whose sheet may stand
// without the quotes that a formula needs ("My plan!A1").
std::optional<std::string> RenameSheetInLocation(std::string_view location,
                                                 const SheetRename& rename);

}  // namespace vantora::embedded
