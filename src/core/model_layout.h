// Where things stand on the model's sheets, and the letters and names that mark them. Columns are
// 1-based numbers.
#pragma once

#include <cstddef>
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

// Column AB of a freeze sheet marks base rows, and spinner base rows among them.
inline constexpr int kBaseFlagColumn = 28;
inline constexpr std::string_view kBaseFlag = "b";
inline constexpr std::string_view kSpinnerBaseFlag = "s";

// Columns of planning keys stand below this heading; on a key list sheet those of column I are the
// ones that the model defines.
inline constexpr std::string_view kKeyHeading = "Planning key";
inline constexpr int kKeyColumn = 9;

// Row 1 of a planning sheet flags these columns; the flag column marks these rows.
inline constexpr std::string_view kFlagColumnFlag = "f";
inline constexpr std::string_view kSaveColumnFlag = "s";
inline constexpr std::string_view kInflationRowFlag = "x";
inline constexpr std::string_view kEndRowFlag = "end";

// Codes in column E of a ratio sheet: where the ratios are, and where a block of comparison data
// starts and ends, the block's number times the unit plus a remainder.
inline constexpr int kRatioCodeColumn = 5;
inline constexpr int kRatioKeyColumn = 1;
inline constexpr int kRatiosStart = 1;
inline constexpr int kRatiosEnd = 99;
inline constexpr int kBlockUnit = 100;
inline constexpr int kLastBlockStartRemainder = 1;
inline constexpr int kLastBlockDataRemainder = 90;
inline constexpr int kMostBlocks = 10;
inline constexpr int kLargestRatioKey = 100;

// Where the Reference Sheet's lists begin when its flag has no number, and how far above a list its
// heading stands.
inline constexpr int kDefaultListsRow = 14;
inline constexpr int kListHeadingDistance = 2;

// The model's menu: its groups of sheets, and the sheets of one.
inline constexpr int kMenuGroups = 9;
inline constexpr int kSheetsOfAMenuGroup = 15;

// The dashboard: the configurations that its menu and dialog offer, numbered from 1; what begins
// the token in row 1 of a column that is hidden in some; the charts that its list and a column of
// it have room for.
inline constexpr int kDashboardConfigurations = 9;
inline constexpr std::string_view kHiddenTokenStart = "H(";
inline constexpr std::size_t kMostListedCharts = 80;
inline constexpr std::size_t kMostChartsOfAColumn = 5;

// The title sheet: the flag in row 1 over the message about macros, with the message's row behind
// it.
inline constexpr std::string_view kMessageFlag = "L";
inline constexpr int kDefaultMessageRow = 34;
inline constexpr int kLastMessageRow = 5000;

// Defined names of the workbook.
inline constexpr std::string_view kMarkerName = "marker";
inline constexpr std::string_view kFiscalYearName = "planning_fiscal_year";

// Routines that the model's workbook offers in the code module of its Reference Sheet: they restore
// the look of the sort buttons.
inline constexpr std::string_view kResetKeySortButtons = "ResetKeySortButtons";
inline constexpr std::string_view kResetNamesSortButtons = "resetNamesSortButtons";

}  // namespace vantora::model
