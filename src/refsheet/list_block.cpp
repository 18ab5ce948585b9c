// What the lists of the Reference Sheet share: where a list ends, selecting, sorting and loading
// it.
#include <algorithm>

#include "core/convert.h"
#include "core/model_layout.h"
#include "refsheet/ref_sheet.h"

namespace vantora {
bool clsRefSheet::IsDefined(List list) const {
  return initialized() && lists_row_ > model::kListHeadingDistance && list_columns_[list] > 0;
}

std::string clsRefSheet::TextAt(int row, int column) {
  return ValueToText(sheet_->Cells(row, column)->Value());
}

std::string clsRefSheet::TrimmedTextAt(int row, int column) {
  return std::string(TrimBlanks(TextAt(row, column)));
}

int clsRefSheet::LastRowOf(int length_column) {
  // The number of used rows, not the last used one.
  const int row_count = sheet_->UsedRange()->RowsCount();
  for (int row = lists_row_; row <= row_count; ++row) {
    if (TextAt(row, length_column).empty()) return std::max(row - 1, lists_row_);
  }
  // The model's rule: a list that nothing ends within the used range counts as its first row alone.
  return lists_row_;
}

void clsRefSheet::SelectList(int first_column, int last_column, int length_column) {
  const int last_row = LastRowOf(length_column);
  sheet_->Activate();
  sheet_->Range(lists_row_, first_column, last_row, last_column)->Select();
}

void clsRefSheet::SelectHeading(int column) {
  sheet_->Activate();
  sheet_->Cells(lists_row_ - model::kListHeadingDistance, column)->Select();
}

host::RangePtr clsRefSheet::Selection() {
  host::RangePtr selection = application()->Selection();
  if (!selection) throw MacroError(HostError::kObjectNotSet, "No cells are selected.");
  return selection;
}

void clsRefSheet::SortSelection(int first_key_column, int second_key_column) {
  Selection()->Sort(sheet_->Cells(lists_row_, first_key_column),
                    sheet_->Cells(lists_row_, second_key_column));
}

host::RangePtr clsRefSheet::LoadColumn(int column, const std::vector<std::string>& values,
                                       int count) {
  if (count < 1) return nullptr;
  host::RangePtr target = sheet_->Range(lists_row_, column, lists_row_ + count - 1, column);
  std::vector<Value> rows(values.begin(),
                          values.begin() + std::min<std::ptrdiff_t>(count, std::ssize(values)));
  rows.resize(static_cast<std::size_t>(count), Value(CellError::kNotAvailable));
  target->SetValues(rows);
  return target;
}

bool clsRefSheet::BeginIteration(List list, Iteration& iteration) {
  if (!IsDefined(list)) return false;
  iteration = {.row = lists_row_ - 1, .is_more = true};
  return true;
}

}  // namespace vantora
