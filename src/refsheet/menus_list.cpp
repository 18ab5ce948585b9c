// The menu table.
#include "core/cell_place.h"
#include "refsheet/ref_sheet.h"

namespace vantora {
namespace {

// The columns between these are free for the model's own notes.
constexpr int kSubItemOffset = 1;
constexpr int kMacroNameOffset = 3;
constexpr int kFaceOffset = 5;

}  // namespace

bool clsRefSheet::MenusListIsDefined() { return IsDefined(kMenus); }

void clsRefSheet::MenusListIteratorInit() {
  if (BeginIteration(kMenus, menu_iteration_)) MenusListIteratorNext();
}

void clsRefSheet::MenusListIteratorNext() {
  if (!MenusListIsDefined()) return;
  const int row = ++menu_iteration_.row;
  const int column = column_of(kMenus);
  menu_.item = TrimmedTextAt(row, column);
  menu_.sub_item = TrimmedTextAt(row, column + kSubItemOffset);
  menu_.macro_name = TrimmedTextAt(row, column + kMacroNameOffset);
  menu_.face_id = IntegerIn({*sheet_, row, column + kFaceOffset},
                            sheet_->Cells(row, column + kFaceOffset)->Value());
  if (menu_.item.empty() && menu_.sub_item.empty()) menu_iteration_.is_more = false;
}

bool clsRefSheet::MenusListIteratorIsMore() { return initialized() && menu_iteration_.is_more; }

std::string clsRefSheet::MenusListItem() { return initialized() ? menu_.item : ""; }

std::string clsRefSheet::MenusListSubItem() { return initialized() ? menu_.sub_item : ""; }

std::string clsRefSheet::MenusListMacroName() { return initialized() ? menu_.macro_name : ""; }

int clsRefSheet::MenusListFaceID() { return initialized() ? menu_.face_id : 0; }

}  // namespace vantora
