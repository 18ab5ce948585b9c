#include "hosts/excel/members.h"

#include <iterator>

#include "hosts/excel/text.h"

namespace vantora::excel {

namespace {

struct MemberEntry {
  Member member;
  const wchar_t* kind;
  const wchar_t* name;
};

constexpr MemberEntry kMembers[] = {
    {Member::kApplicationActiveSheet, L"Application", L"ActiveSheet"},
    {Member::kApplicationActiveWorkbook, L"Application", L"ActiveWorkbook"},
    {Member::kApplicationCaller, L"Application", L"Caller"},
    {Member::kApplicationCutCopyMode, L"Application", L"CutCopyMode"},
    {Member::kApplicationGoto, L"Application", L"Goto"},
    {Member::kApplicationScreenUpdating, L"Application", L"ScreenUpdating"},
    {Member::kApplicationSelection, L"Application", L"Selection"},
    {Member::kWorkbookName, L"Workbook", L"Name"},
    {Member::kWorkbookNames, L"Workbook", L"Names"},
    {Member::kWorkbookWorksheets, L"Workbook", L"Worksheets"},
    {Member::kNamesItem, L"Names", L"Item"},
    {Member::kNameRefersToRange, L"Name", L"RefersToRange"},
    {Member::kWorksheetActivate, L"Worksheet", L"Activate"},
    {Member::kWorksheetCells, L"Worksheet", L"Cells"},
    {Member::kWorksheetColumns, L"Worksheet", L"Columns"},
    {Member::kWorksheetName, L"Worksheet", L"Name"},
    {Member::kWorksheetPaste, L"Worksheet", L"Paste"},
    {Member::kWorksheetRange, L"Worksheet", L"Range"},
    {Member::kWorksheetSelect, L"Worksheet", L"Select"},
    {Member::kWorksheetUsedRange, L"Worksheet", L"UsedRange"},
    {Member::kRangeAddComment, L"Range", L"AddComment"},
    {Member::kRangeCells, L"Range", L"Cells"},
    {Member::kRangeClearFormats, L"Range", L"ClearFormats"},
    {Member::kRangeColumn, L"Range", L"Column"},
    {Member::kRangeColumns, L"Range", L"Columns"},
    {Member::kRangeCopy, L"Range", L"Copy"},
    {Member::kRangeCount, L"Range", L"Count"},
    {Member::kRangeInsert, L"Range", L"Insert"},
    {Member::kRangeInterior, L"Range", L"Interior"},
    {Member::kRangePasteSpecial, L"Range", L"PasteSpecial"},
    {Member::kRangeRow, L"Range", L"Row"},
    {Member::kRangeRows, L"Range", L"Rows"},
    {Member::kRangeSelect, L"Range", L"Select"},
    {Member::kRangeValue, L"Range", L"Value"},
    {Member::kInteriorColorIndex, L"Interior", L"ColorIndex"},
    {Member::kCommentText, L"Comment", L"Text"},
    {Member::kCommentVisible, L"Comment", L"Visible"},
};

constexpr bool IsInOrder() {
  for (std::size_t i = 0; i < std::size(kMembers); ++i) {
    if (kMembers[i].member != static_cast<Member>(i)) return false;
  }
  return std::size(kMembers) == kMemberCount;
}
static_assert(IsInOrder(), "the table has one row for each Member, in the same order");

}  // namespace

const wchar_t* NameOf(Member member) { return kMembers[static_cast<std::size_t>(member)].name; }

std::string FullNameOf(Member member) {
  const MemberEntry& entry = kMembers[static_cast<std::size_t>(member)];
  return ToUtf8(std::wstring_view(entry.kind)) + "." + ToUtf8(std::wstring_view(entry.name));
}

}  // namespace vantora::excel
