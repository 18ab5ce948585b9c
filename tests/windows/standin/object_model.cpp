#include "object_model.h"

#include "core/convert.h"

namespace vantora::standin {

const std::vector<DocumentedMember>& ObjectModel() {
  using enum Access;
  static const std::vector<DocumentedMember> members = {
      {"Application", "ActiveSheet", kRead},
      {"Application", "ActiveWorkbook", kRead},
      {"Application", "Caller", kRead, {"Index"}},
      {"Application", "CutCopyMode", kReadWrite},
      {"Application", "Goto", kMethod, {"Reference", "Scroll"}},
      {"Application", "ScreenUpdating", kReadWrite},
      {"Application", "Selection", kRead},
      {"Workbook", "Name", kRead},
      {"Workbook", "Names", kRead},
      {"Workbook", "Worksheets", kRead, {"Index"}},
      {"Sheets", "Count", kRead},
      {"Sheets", "Item", kRead, {"Index"}, 1},
      {"Names", "Item", kMethod, {"Index", "IndexLocal", "RefersTo"}},
      {"Name", "RefersToRange", kRead},
      {"Worksheet", "Activate", kMethod},
      {"Worksheet", "Cells", kIndexed, {"RowIndex", "ColumnIndex"}},
      {"Worksheet", "Columns", kIndexed, {"Index"}},
      {"Worksheet", "Name", kReadWrite},
      {"Worksheet", "Paste", kMethod, {"Destination", "Link"}},
      {"Worksheet", "Range", kRead, {"Cell1", "Cell2"}, 1},
      {"Worksheet", "Select", kMethod, {"Replace"}},
      {"Worksheet", "UsedRange", kRead},
      {"Range", "AddComment", kMethod, {"Text"}},
      {"Range", "Areas", kRead},
      {"Range", "Cells", kIndexed, {"RowIndex", "ColumnIndex"}},
      {"Range", "ClearFormats", kMethod},
      {"Range", "Column", kRead},
      {"Range", "Columns", kIndexed, {"Index"}},
      {"Range", "Copy", kMethod, {"Destination"}},
      {"Range", "Count", kRead},
      {"Range", "Insert", kMethod, {"Shift", "CopyOrigin"}},
      {"Range", "Interior", kRead},
      {"Range", "PasteSpecial", kMethod, {"Paste", "Operation", "SkipBlanks", "Transpose"}},
      {"Range", "Row", kRead},
      {"Range", "Rows", kIndexed, {"Index"}},
      {"Range", "Select", kMethod},
      {"Range", "Value", kReadWrite, {"RangeValueDataType"}},
      {"Interior", "ColorIndex", kReadWrite},
      {"Comment", "Text", kMethod, {"Text", "Start", "Overwrite"}},
      {"Comment", "Visible", kReadWrite},
  };
  return members;
}

int FindMember(std::string_view kind, std::string_view name) {
  const auto& members = ObjectModel();
  for (std::size_t i = 0; i < members.size(); ++i) {
    if (members[i].kind == kind && EqualsIgnoreCase(members[i].name, name)) {
      return static_cast<int>(i);
    }
  }
  return -1;
}

}  // namespace vantora::standin
