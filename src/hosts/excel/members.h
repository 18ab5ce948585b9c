// The members of Excel's object model that the host interfaces call.
#pragma once

#include <cstddef>
#include <string>

namespace vantora::excel {

// Each kind of object has its own entries: an identifier holds for one kind only.
enum class Member : std::size_t {
  kApplicationActiveSheet,
  kApplicationActiveWorkbook,
  kApplicationCaller,
  kApplicationCutCopyMode,
  kApplicationGoto,
  kApplicationScreenUpdating,
  kApplicationSelection,
  kWorkbookName,
  kWorkbookNames,
  kWorkbookWorksheets,
  kNamesItem,
  kNameRefersToRange,
  kWorksheetActivate,
  kWorksheetCells,
  kWorksheetColumns,
  kWorksheetName,
  kWorksheetPaste,
  kWorksheetRange,
  kWorksheetSelect,
  kWorksheetUsedRange,
  kRangeAddComment,
  kRangeCells,
  kRangeClearFormats,
  kRangeColumn,
  kRangeColumns,
  kRangeCopy,
  kRangeCount,
  kRangeInsert,
  kRangeInterior,
  kRangePasteSpecial,
  kRangeRow,
  kRangeRows,
  kRangeSelect,
  kRangeValue,
  kInteriorColorIndex,
  kCommentText,
  kCommentVisible,
  kCount,  // not a member
};

inline constexpr std::size_t kMemberCount = static_cast<std::size_t>(Member::kCount);

// The member's name for Excel.
const wchar_t* NameOf(Member member);
// Kind and name for a reader: "Range.Value".
std::string FullNameOf(Member member);

}  // namespace vantora::excel
