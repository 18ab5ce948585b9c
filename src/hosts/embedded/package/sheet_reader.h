// Reads a sheet's part as a stream into the model, without a document tree.
#pragma once

#include <atomic>
#include <cstddef>
#include <string_view>

#include "formula/workbook_model.h"
#include "package/file_limits.h"
#include "package/sheet_markup.h"

namespace vantora::embedded {

// Bytes that the sheets of a workbook take in memory, and may take.
struct SheetRoom {
  std::size_t limit = kLargestModel;
  std::atomic<std::size_t> used = 0;
};

// Fills the sheet's cells, formulas and formats of rows and columns, and `markup` with what stands
// around the cells. `text` is the part; the workbook's sheets, names and shared strings are read
// already. Different sheets may be read at once, as long as together they keep within what `room`
// allows. Throws XmlError.
void ReadSheet(std::string_view text, WorkbookModel& model, SheetModel& sheet, SheetMarkup& markup,
               SheetRoom& room);

// "AD7" as sheets write their cells' places; throws XmlError naming `offset`.
CellAddress ParseCellPlace(std::string_view text, std::size_t offset);

// True for "1" and "true", as attributes write it.
bool IsTrue(std::string_view value);

// A formula's text that stands for a data table ("TABLE(" and its input cells), which a formula
// can't hold otherwise.
inline constexpr std::string_view kDataTableFormula = "TABLE(";

}  // namespace vantora::embedded
