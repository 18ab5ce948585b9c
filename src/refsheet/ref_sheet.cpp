#include "refsheet/ref_sheet.h"

#include <string>

#include "core/common.h"
#include "core/convert.h"
#include "core/model_layout.h"

namespace vantora {
namespace {

constexpr int kListFlagRow = 1;
constexpr int kFirstListFlagColumn = 2;
constexpr int kVersionRow = 6;
constexpr int kVersionColumn = 3;

// In the order of clsRefSheet::List.
constexpr std::array<std::string_view, 8> kListFlags = {"n", "k", "c", "s", "e", "m", "g", "h"};

}  // namespace

bool clsRefSheet::Bind() {
  sheet_ = nullptr;
  lists_row_ = 0;
  list_columns_.fill(0);
  sheet_ = FindFlaggedSheet(*application(), model::kReferenceSheetFlag);
  if (!sheet_) {
    ReportProgrammingError(services().user_interface,
                           {.module = class_name(),
                            .detail = "No sheet flagged as reference sheet, with X in cell A1"});
    return false;
  }
  ReadListFlags();
  lists_row_ = FlagNumber(sheet_, model::kReferenceSheetFlag, model::kDefaultListsRow);
  ReportMissingFlags();
  return true;
}

void clsRefSheet::ReadListFlags() {
  // The number of used columns, not the last used one: a flag beyond it is not seen.
  int column_count = sheet_->UsedRange()->ColumnsCount();
  for (int column = kFirstListFlagColumn; column <= column_count; ++column) {
    std::string text = ValueToText(sheet_->Cells(kListFlagRow, column)->Value());
    for (std::size_t list = 0; list < kListFlags.size(); ++list) {
      // The rightmost flag wins.
      if (EqualsIgnoreCase(text, kListFlags[list])) list_columns_[list] = column;
    }
  }
}

void clsRefSheet::ReportMissingFlags() {
  struct Requirement {
    int position;
    std::string_view missing;
  };
  // The last four lists are optional by themselves: their lines stand for a sheet without the names
  // list, so they go by its column.
  const Requirement requirements[] = {
      {lists_row_, "ListsRow (Cell A1 flag R)"},
      {list_columns_[kNames], "Names list flag ('n')"},
      {list_columns_[kKeys], "Keys list flag ('k')"},
      {list_columns_[kKeyColumns], "Keys list sheet column flag ('c')"},
      {list_columns_[kKeySheets], "Keys list sheet name flag ('s')"},
      {list_columns_[kNames], "Key discrepancy list flag ('s')"},
      {list_columns_[kNames], "Dynamic menu list flag ('m')"},
      {list_columns_[kNames], "Charts/graphs list flag ('g')"},
      {list_columns_[kNames], "Dashboard configurations list flag ('h')"},
  };
  std::string missing;
  for (const Requirement& requirement : requirements) {
    if (requirement.position != 0) continue;
    missing += requirement.missing;
    missing += kLineBreak;
  }
  if (missing.empty()) return;
  std::string text = "One or more flag values are missing from row 1 of the Reference Sheet." +
                     std::string(kLineBreak) + "This should be corrected before using this model" +
                     std::string(kLineBreak) + missing;
  services().user_interface.MessageBox(text, kOkOnly | kCritical, "Vantora Error Condition");
}

void clsRefSheet::PutDLLVersion(std::string_view version_text) {
  if (!initialized()) return;
  sheet_->Cells(kVersionRow, kVersionColumn)->SetValue(version_text);
}

}  // namespace vantora
