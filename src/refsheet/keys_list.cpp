// The planning keys list.
#include <algorithm>

#include "core/model_layout.h"
#include "refsheet/ref_sheet.h"

namespace vantora {

bool clsRefSheet::KeysListIsDefined() {
  return IsDefined(kKeys) && IsDefined(kKeyColumns) && IsDefined(kKeySheets);
}

void clsRefSheet::KeysListSelect() {
  if (!KeysListIsDefined()) return;
  const auto [first, last] =
      std::minmax({column_of(kKeys), column_of(kKeyColumns), column_of(kKeySheets)});
  SelectList(first, last, column_of(kKeys));
}

void clsRefSheet::KeysListDeselect() {
  if (KeysListIsDefined()) SelectHeading(column_of(kKeys));
}

void clsRefSheet::KeysListClear() {
  if (!KeysListIsDefined()) return;
  KeysListSelect();
  Selection()->Clear();
}

void clsRefSheet::KeysListLoadKeysCol(const std::vector<std::string>& values, int count) {
  if (KeysListIsDefined()) LoadColumn(column_of(kKeys), values, count);
}

void clsRefSheet::KeysListLoadSheetsCol(const std::vector<std::string>& values, int count) {
  if (KeysListIsDefined()) LoadColumn(column_of(kKeySheets), values, count);
}

void clsRefSheet::KeysListLoadColsCol(const std::vector<std::string>& values, int count) {
  if (!KeysListIsDefined()) return;
  host::RangePtr loaded = LoadColumn(column_of(kKeyColumns), values, count);
  if (loaded) loaded->SetHorizontalAlignment(host::XlHAlign::kLeft);
}

void clsRefSheet::KeysListSortbyKey() { SortKeysList(kKeys, kKeySheets); }

void clsRefSheet::KeysListSortbySheet() { SortKeysList(kKeySheets, kKeyColumns); }

void clsRefSheet::SortKeysList(List first_key, List second_key) {
  if (!KeysListIsDefined()) return;
  KeysListSelect();
  SortSelection(column_of(first_key), column_of(second_key));
  KeysListDeselect();
}

void clsRefSheet::KeysListResetSortButtons() {
  if (initialized()) sheet_->CallRoutine(model::kResetKeySortButtons);
}

}  // namespace vantora
