// The names list.
#include "core/common.h"
#include "core/convert.h"
#include "core/model_layout.h"
#include "core/user_interface.h"
#include "refsheet/ref_sheet.h"

namespace vantora {
namespace {

constexpr int kReferenceOffset = 1;
constexpr int kBrokenReferenceColor = 45;  // orange

}  // namespace

bool clsRefSheet::NamesListIsDefined() { return IsDefined(kNames); }

bool clsRefSheet::NamesListSelect() {
  if (!NamesListIsDefined()) return false;
  const int column = column_of(kNames);
  SelectList(column, column + kReferenceOffset, column);
  return true;
}

void clsRefSheet::NamesListDeselect() {
  if (NamesListIsDefined()) SelectHeading(column_of(kNames));
}

void clsRefSheet::NamesListPopulate() {
  if (!NamesListSelect()) return;
  Selection()->Clear();
  sheet_->Cells(lists_row_, column_of(kNames))->ListNames();

  NamesListSelect();
  host::RangePtr listed = Selection();
  const int first_row = listed->Row();
  const int last_row = first_row + listed->RowsCount() - 1;
  const int reference_column = listed->Column() + kReferenceOffset;
  bool any_broken = false;
  for (int row = first_row; row <= last_row; ++row) {
    host::RangePtr reference = sheet_->Cells(row, reference_column);
    host::InteriorPtr fill = reference->Interior();
    // Any "#" counts, also one in a constant: the model's rule.
    if (ValueToText(reference->Value()).find('#') == std::string::npos) {
      fill->SetColorIndex(host::kColorIndexNone);
      continue;
    }
    fill->SetColorIndex(kBrokenReferenceColor);
    fill->SetPattern(host::XlPattern::kSolid);
    any_broken = true;
  }
  NamesListDeselect();
  sheet_->CallRoutine(model::kResetNamesSortButtons);
  if (any_broken) {
    services().user_interface.MessageBox(
        "One or more Excel names have errors.  " + std::string(kLineBreak) +
            "Look for the flagged entries in the list on the References Sheet.",
        kOkOnly, kDefaultTitle);
  }
}

void clsRefSheet::NamesListSortbyName() {
  SortNamesList(column_of(kNames), column_of(kNames) + kReferenceOffset);
}

void clsRefSheet::NamesListSortbySheet() {
  SortNamesList(column_of(kNames) + kReferenceOffset, column_of(kNames));
}

void clsRefSheet::SortNamesList(int first_key_column, int second_key_column) {
  if (!NamesListSelect()) return;
  SortSelection(first_key_column, second_key_column);
  NamesListDeselect();
}

}  // namespace vantora
