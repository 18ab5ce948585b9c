// Where things stand on the model's sheets, and the letters and names that mark them. Columns are
// 1-based numbers.
#pragma once

#include <string_view>

namespace vantora::model {

// Flags in cell A1.
inline constexpr std::string_view kReferenceSheetFlag = "X";
inline constexpr std::string_view kHistorySheetFlag = "S";
inline constexpr std::string_view kMenuSheetFlag = "M";
inline constexpr std::string_view kMenuIconFlag = "I";
inline constexpr std::string_view kDashboardSheetFlag = "D";
inline constexpr std::string_view kFreezeSheetFlag = "F";
inline constexpr std::string_view kClearSheetFlag = "Z";
inline constexpr std::string_view kKeyListSheetFlag = "L";
inline constexpr std::string_view kRatioSheetFlag = "G";
inline constexpr std::string_view kTitleSheetFlag = "T";
inline constexpr std::string_view kProtectedSheetFlag = "P";
inline constexpr std::string_view kPlanningNamesSheetFlag = "Y";

// The yearly columns.
inline constexpr int kFirstHistoryColumn = 10;   // J, the oldest year
inline constexpr int kLastYearColumn = 14;       // N, the last history year, "Last Year"
inline constexpr int kCurrentYearColumn = 15;    // O, "Current Year"
inline constexpr int kFirstPlanningColumn = 16;  // P
inline constexpr int kLastPlanningColumn = 25;   // Y
inline constexpr int kHistoryYears = kLastYearColumn - kFirstHistoryColumn + 1;

// Row 1 of a history sheet holds its column flags, row 2 the comments of saved columns.
inline constexpr int kFlagRow = 1;
inline constexpr int kSavedCommentRow = 2;
inline constexpr std::string_view kMarkerColumnFlag = "k";

// Defined names of the workbook.
inline constexpr std::string_view kMarkerName = "marker";
inline constexpr std::string_view kFiscalYearName = "planning_fiscal_year";

// Routines that the model's workbook offers in the code module of its Reference Sheet: they restore
// the look of the sort buttons.
inline constexpr std::string_view kResetKeySortButtons = "ResetKeySortButtons";
inline constexpr std::string_view kResetNamesSortButtons = "resetNamesSortButtons";

}  // namespace vantora::model
