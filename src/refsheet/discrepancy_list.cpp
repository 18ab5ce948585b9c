// The list of planning key discrepancies.
#include "refsheet/ref_sheet.h"

namespace vantora {

bool clsRefSheet::DiscrListIsDefined() { return IsDefined(kDiscrepancies); }

void clsRefSheet::DiscrListSelect() {
  if (!DiscrListIsDefined()) return;
  const int column = column_of(kDiscrepancies);
  SelectList(column, column, column);
}

void clsRefSheet::DiscrListDeselect() {
  if (DiscrListIsDefined()) SelectHeading(column_of(kDiscrepancies));
}

void clsRefSheet::DiscrListClear() {
  if (!DiscrListIsDefined()) return;
  DiscrListSelect();
  Selection()->Clear();
}

void clsRefSheet::DiscrListLoadCol(const std::vector<std::string>& values, int count) {
  if (!DiscrListIsDefined()) return;
  host::RangePtr loaded = LoadColumn(column_of(kDiscrepancies), values, count);
  if (loaded) loaded->SetWrapText(false);
}

}  // namespace vantora
