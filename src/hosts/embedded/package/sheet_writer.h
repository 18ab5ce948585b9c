// Writes a sheet's part: what no edit touched as it stands in the original, the rest from the
// model.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "formula/workbook_model.h"
#include "package/sheet_markup.h"

namespace vantora::embedded {

// Index in the shared strings table of a text that a cell holds.
using SharedStringIndex = std::function<TextId(TextId)>;

struct WrittenSheet {
  std::string text;
  // A formula came, went or moved: the calculation chain no longer tells the truth.
  bool breaks_calculation_chain = false;
};

// `original` is the part that the sheet was read from, "" for a sheet that is new. Different sheets
// may be written at once.
WrittenSheet WriteSheet(std::string_view original, const SheetMarkup& markup,
                        const WorkbookModel& model, const SheetModel& sheet,
                        const SharedStringIndex& shared_string);

// True for a cell whose text is written as a shared string though the part does not hold it.
bool NeedsSharedString(const Cell& cell);

// Shortest text that reads back as the same number.
std::string NumberText(double number);

}  // namespace vantora::embedded
