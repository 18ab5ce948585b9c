// Copying a worksheet, or the part of it that is selected, into a new worksheet of an open
// workbook.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/public_object.h"
#include "dialogs/frm_copy_worksheet.h"
#include "workbook_tools/reference_scan.h"

namespace vantora {

class clsCopyWorksheet final : public BoundObject {
 public:
  explicit clsCopyWorksheet(Services& services) : BoundObject("clsCopyWorksheet", services) {}

  // Asks for source and target, then copies: formats, comments and validations, row heights and
  // outline, column widths, and each cell's formula as a text, so that the formulas refer to sheets
  // of the target. Sheets that the formulas name and the target lacks are added as placeholders.
  // Whatever the host refuses is reported with the programming-error report, not thrown; what was
  // added by then stays.
  void CopyWorksheet();

 private:
  // An open workbook or a worksheet, by the name under which the dialog offers it.
  template <typename Object>
  struct Named {
    std::string name;
    Object object;
  };
  // Bounds of the cells to copy, as wide as the model holds them.
  struct Bounds {
    std::int16_t first_row;
    std::int16_t first_column;
    std::int16_t last_row;
    std::int16_t last_column;
  };

  void Run(frmCopyWorksheet& dialog);
  // False when the user cancels.
  bool Ask(frmCopyWorksheet& dialog);
  host::RangePtr SourceRange(const frmCopyWorksheet& dialog, host::Worksheet& sheet);
  void TakeSelection(Bounds& bounds);
  // Copies and gives what to tell the user.
  std::string Copy(const frmCopyWorksheet& dialog);
  void CopyLayout(host::Range& source, host::Worksheet& target, int rows, int columns);
  void CopyFormats(host::Range& source, host::Worksheet& target, int rows, int columns);
  std::string AddPlaceholders(host::Workbook& target, const ReferencedSheets& referenced);
  std::string CopyCells(host::Range& source, host::Worksheet& target, int rows, int columns,
                        const std::string& report);
  void Report(const HostError& error);

  // Filled when the dialog is prepared.
  std::vector<Named<host::WorkbookPtr>> workbooks_;
  std::vector<Named<host::WorksheetPtr>> worksheets_;
  host::WorkbookPtr active_workbook_;
};

}  // namespace vantora
