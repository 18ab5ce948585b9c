// Reads a workbook's own parts: its sheets and names, shared strings, formats, and all its sheets.
#pragma once

#include <string>
#include <vector>

#include "formula/workbook_model.h"
#include "package/file_limits.h"
#include "package/opc_package.h"
#include "package/sheet_markup.h"

namespace vantora::embedded {

// Names of the parts that a workbook is made of; "" for one that it lacks.
struct WorkbookParts {
  std::string workbook;
  std::string shared_strings;
  std::string styles;
  std::string theme;
  std::string calculation_chain;
  // By sheet id: the parts, and their relationships with the workbook's.
  std::vector<std::string> sheets;
  std::vector<std::string> sheet_relationships;
};

// What a sheet's `state` says.
Visibility VisibilityOf(std::string_view state);

// Finds the workbook's part. Throws FileError when the package is of another kind, `file_name` in
// its text.
std::string FindWorkbookPart(const OpcPackage& package, const std::string& file_name);

// Reads workbook.xml into the model: sheets (without their cells), names, calendar. The active
// sheet's id goes to `active_sheet`. Throws FileError.
WorkbookParts ReadWorkbook(const OpcPackage& package, const std::string& workbook_part,
                           WorkbookModel& model, int& active_sheet);

// Reads the shared strings table, of at most so many texts. Throws FileError.
void ReadSharedStrings(const OpcPackage& package, const std::string& part, StringPool& strings,
                       std::size_t most = kMostSharedStrings);

// Reads every sheet, several at once, into the model and `markups` (by sheet id). Throws FileError.
void ReadSheets(const OpcPackage& package, const WorkbookParts& parts, WorkbookModel& model,
                const std::vector<SheetMarkup*>& markups);

}  // namespace vantora::embedded
