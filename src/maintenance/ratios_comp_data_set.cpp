#include "maintenance/ratios_comp_data_set.h"

#include <algorithm>
#include <string>

#include "core/coercion.h"
#include "core/convert.h"
#include "core/model_layout.h"
#include "maintenance/flagged_sheets.h"

namespace vantora {
namespace {

constexpr int kDataKeyColumn = 9;  // I

HostError OutOfRange(const std::string& what, int row) {
  return MacroError(HostError::kSubscriptOutOfRange,
                    "Subscript out of range: " + what + " in row " + std::to_string(row) + ".");
}

// A text that is no number, such as a heading, counts as 0.
int IntegerOrZero(const Value& value) {
  return value.IsText() && !IsAmount(value) ? 0 : ToInteger(value);
}

// An error value is no key either.
int KeyOf(const Value& value) { return IsAmount(value) ? ToInteger(value) : 0; }

// Copies columns J to O of one row; an empty cell repeats the one to its left.
void CopyRow(host::Worksheet& sheet, int from_row, int to_row) {
  Value remembered = "";
  for (int column = model::kFirstHistoryColumn; column <= model::kCurrentYearColumn; ++column) {
    const Value value = sheet.Cells(from_row, column)->Value();
    const std::string text = ValueToText(value);
    // An error value is copied as such: its text would read "Error 2042".
    if (!text.empty()) remembered = value.IsError() ? value : Value(text);
    sheet.Cells(to_row, column)->SetValue(remembered);
  }
}

}  // namespace

void clsRatiosCompDataSet::RatiosCompDataSet() {
  if (!initialized()) return;
  application()->SetScreenUpdating(false);
  const host::SheetPtr remembered_sheet = application()->ActiveAnySheet();
  const host::RangePtr remembered_selection = application()->Selection();
  // The model's rule: what one sheet defines holds for the sheets after it as well, wherever they
  // define nothing of their own.
  Layout layout;
  ForEachFlaggedSheet(*application(), model::kRatioSheetFlag, [&](const host::WorksheetPtr& sheet) {
    const int block_count = ReadLayout(*sheet, layout);
    for (int block = 1; block <= block_count; ++block) CopyBlock(*sheet, layout, block);
    services().user_interface.MessageBox(sheet->Name() + " Sheet has been updated with " +
                                             std::to_string(block_count) +
                                             " comparison data ranges.",
                                         kOkOnly, kDefaultTitle);
  });
  if (remembered_sheet) remembered_sheet->Activate();
  // Null when something other than cells was selected.
  if (remembered_selection) remembered_selection->Select();
  application()->SetScreenUpdating(true);
}

int clsRatiosCompDataSet::ReadLayout(host::Worksheet& sheet, Layout& layout) {
  int block_count = 0;
  bool maps = false;
  const int row_count = sheet.UsedRange()->RowsCount();
  for (int row = 1; row <= row_count; ++row) {
    const int code = IntegerOrZero(sheet.Cells(row, model::kRatioCodeColumn)->Value());
    if (code == model::kRatiosStart) maps = true;
    if (code == model::kRatiosEnd) maps = false;
    if (code > model::kRatiosEnd) {
      const int block = code / model::kBlockUnit;
      if (block > model::kMostBlocks) throw OutOfRange("block " + std::to_string(block), row);
      block_count = std::max(block_count, block);
      const int remainder = code % model::kBlockUnit;
      if (remainder <= model::kLastBlockStartRemainder) layout.first_rows[block] = row + 1;
      if (remainder > model::kLastBlockDataRemainder) layout.last_rows[block] = row - 1;
    }
    if (!maps) continue;
    const int key = KeyOf(sheet.Cells(row, model::kRatioKeyColumn)->Value());
    if (key < 0 || key > model::kLargestRatioKey)
      throw OutOfRange("key " + std::to_string(key), row);
    layout.ratio_rows[key] = row;
  }
  return block_count;
}

void clsRatiosCompDataSet::CopyBlock(host::Worksheet& sheet, const Layout& layout, int block) {
  // A block that was never marked has row 0 alone, which the host refuses.
  for (int row = layout.first_rows[block]; row <= layout.last_rows[block]; ++row) {
    const int key = KeyOf(sheet.Cells(row, kDataKeyColumn)->Value());
    if (key > model::kLargestRatioKey) throw OutOfRange("key " + std::to_string(key), row);
    if (key < 1 || layout.ratio_rows[key] == 0) continue;
    CopyRow(sheet, row, layout.ratio_rows[key] + block);
  }
}

}  // namespace vantora
