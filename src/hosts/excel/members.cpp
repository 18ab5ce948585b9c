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
    {Member::kApplicationActiveWindow, L"Application", L"ActiveWindow"},
    {Member::kApplicationActiveWorkbook, L"Application", L"ActiveWorkbook"},
    {Member::kApplicationCalculation, L"Application", L"Calculation"},
    {Member::kApplicationCaller, L"Application", L"Caller"},
    {Member::kApplicationCommandBars, L"Application", L"CommandBars"},
    {Member::kApplicationCutCopyMode, L"Application", L"CutCopyMode"},
    {Member::kApplicationDisplayFullScreen, L"Application", L"DisplayFullScreen"},
    {Member::kApplicationGetSaveAsFilename, L"Application", L"GetSaveAsFilename"},
    {Member::kApplicationGoto, L"Application", L"Goto"},
    {Member::kApplicationInputBox, L"Application", L"InputBox"},
    {Member::kApplicationScreenUpdating, L"Application", L"ScreenUpdating"},
    {Member::kApplicationSelection, L"Application", L"Selection"},
    {Member::kApplicationSheets, L"Application", L"Sheets"},
    {Member::kApplicationUnion, L"Application", L"Union"},
    {Member::kApplicationUsableHeight, L"Application", L"UsableHeight"},
    {Member::kApplicationUsableWidth, L"Application", L"UsableWidth"},
    {Member::kApplicationVersion, L"Application", L"Version"},
    {Member::kApplicationWorkbooks, L"Application", L"Workbooks"},
    {Member::kWorkbookColors, L"Workbook", L"Colors"},
    {Member::kWorkbookName, L"Workbook", L"Name"},
    {Member::kWorkbookNames, L"Workbook", L"Names"},
    {Member::kWorkbookNewWindow, L"Workbook", L"NewWindow"},
    {Member::kWorkbookSave, L"Workbook", L"Save"},
    {Member::kWorkbookSaveAs, L"Workbook", L"SaveAs"},
    {Member::kWorkbookSheets, L"Workbook", L"Sheets"},
    {Member::kWorkbookWindows, L"Workbook", L"Windows"},
    {Member::kWorkbookWorksheets, L"Workbook", L"Worksheets"},
    {Member::kSheetsAdd, L"Sheets", L"Add"},
    {Member::kSheetsCount, L"Sheets", L"Count"},
    {Member::kSheetsItem, L"Sheets", L"Item"},
    {Member::kChartActivate, L"Chart", L"Activate"},
    {Member::kChartChartTitle, L"Chart", L"ChartTitle"},
    {Member::kChartName, L"Chart", L"Name"},
    {Member::kChartSelect, L"Chart", L"Select"},
    {Member::kNamesAdd, L"Names", L"Add"},
    {Member::kNamesItem, L"Names", L"Item"},
    {Member::kNameDelete, L"Name", L"Delete"},
    {Member::kNameName, L"Name", L"Name"},
    {Member::kNameRefersToRange, L"Name", L"RefersToRange"},
    {Member::kWorksheetActivate, L"Worksheet", L"Activate"},
    {Member::kWorksheetCells, L"Worksheet", L"Cells"},
    {Member::kWorksheetChartObjects, L"Worksheet", L"ChartObjects"},
    {Member::kWorksheetColumns, L"Worksheet", L"Columns"},
    {Member::kWorksheetName, L"Worksheet", L"Name"},
    {Member::kWorksheetOutline, L"Worksheet", L"Outline"},
    {Member::kWorksheetPaste, L"Worksheet", L"Paste"},
    {Member::kWorksheetProtect, L"Worksheet", L"Protect"},
    {Member::kWorksheetProtectContents, L"Worksheet", L"ProtectContents"},
    {Member::kWorksheetRange, L"Worksheet", L"Range"},
    {Member::kWorksheetSelect, L"Worksheet", L"Select"},
    {Member::kWorksheetShapes, L"Worksheet", L"Shapes"},
    {Member::kWorksheetUnprotect, L"Worksheet", L"Unprotect"},
    {Member::kWorksheetUsedRange, L"Worksheet", L"UsedRange"},
    {Member::kWorksheetVisible, L"Worksheet", L"Visible"},
    {Member::kOutlineShowLevels, L"Outline", L"ShowLevels"},
    {Member::kRangeActivate, L"Range", L"Activate"},
    {Member::kRangeAddComment, L"Range", L"AddComment"},
    {Member::kRangeAreas, L"Range", L"Areas"},
    {Member::kRangeBorderAround, L"Range", L"BorderAround"},
    {Member::kRangeBorders, L"Range", L"Borders"},
    {Member::kRangeCells, L"Range", L"Cells"},
    {Member::kRangeClear, L"Range", L"Clear"},
    {Member::kRangeClearContents, L"Range", L"ClearContents"},
    {Member::kRangeClearFormats, L"Range", L"ClearFormats"},
    {Member::kRangeColumn, L"Range", L"Column"},
    {Member::kRangeColumnWidth, L"Range", L"ColumnWidth"},
    {Member::kRangeColumns, L"Range", L"Columns"},
    {Member::kRangeCopy, L"Range", L"Copy"},
    {Member::kRangeCount, L"Range", L"Count"},
    {Member::kRangeFont, L"Range", L"Font"},
    {Member::kRangeFormula, L"Range", L"Formula"},
    {Member::kRangeHasFormula, L"Range", L"HasFormula"},
    {Member::kRangeHidden, L"Range", L"Hidden"},
    {Member::kRangeHorizontalAlignment, L"Range", L"HorizontalAlignment"},
    {Member::kRangeInsert, L"Range", L"Insert"},
    {Member::kRangeInterior, L"Range", L"Interior"},
    {Member::kRangeLeft, L"Range", L"Left"},
    {Member::kRangeListNames, L"Range", L"ListNames"},
    {Member::kRangeName, L"Range", L"Name"},
    {Member::kRangeOutlineLevel, L"Range", L"OutlineLevel"},
    {Member::kRangePasteSpecial, L"Range", L"PasteSpecial"},
    {Member::kRangeRow, L"Range", L"Row"},
    {Member::kRangeRowHeight, L"Range", L"RowHeight"},
    {Member::kRangeRows, L"Range", L"Rows"},
    {Member::kRangeSelect, L"Range", L"Select"},
    {Member::kRangeSort, L"Range", L"Sort"},
    {Member::kRangeValue, L"Range", L"Value"},
    {Member::kRangeWidth, L"Range", L"Width"},
    {Member::kRangeWorksheet, L"Range", L"Worksheet"},
    {Member::kRangeWrapText, L"Range", L"WrapText"},
    {Member::kAreasCount, L"Areas", L"Count"},
    {Member::kAreasItem, L"Areas", L"Item"},
    {Member::kInteriorColorIndex, L"Interior", L"ColorIndex"},
    {Member::kInteriorPattern, L"Interior", L"Pattern"},
    {Member::kFontBold, L"Font", L"Bold"},
    {Member::kFontColorIndex, L"Font", L"ColorIndex"},
    {Member::kFontItalic, L"Font", L"Italic"},
    {Member::kFontSize, L"Font", L"Size"},
    {Member::kBordersItem, L"Borders", L"Item"},
    {Member::kBorderColorIndex, L"Border", L"ColorIndex"},
    {Member::kBorderWeight, L"Border", L"Weight"},
    {Member::kCommentText, L"Comment", L"Text"},
    {Member::kCommentVisible, L"Comment", L"Visible"},
    {Member::kShapesItem, L"Shapes", L"Item"},
    {Member::kShapeControlFormat, L"Shape", L"ControlFormat"},
    {Member::kControlFormatLinkedCell, L"ControlFormat", L"LinkedCell"},
    {Member::kChartObjectsCount, L"ChartObjects", L"Count"},
    {Member::kChartObjectsItem, L"ChartObjects", L"Item"},
    {Member::kChartObjectChart, L"ChartObject", L"Chart"},
    {Member::kChartObjectLeft, L"ChartObject", L"Left"},
    {Member::kChartObjectTop, L"ChartObject", L"Top"},
    {Member::kChartObjectWidth, L"ChartObject", L"Width"},
    {Member::kChartTitleCaption, L"ChartTitle", L"Caption"},
    {Member::kWindowActivate, L"Window", L"Activate"},
    {Member::kWindowClose, L"Window", L"Close"},
    {Member::kWindowFreezePanes, L"Window", L"FreezePanes"},
    {Member::kWindowHeight, L"Window", L"Height"},
    {Member::kWindowLeft, L"Window", L"Left"},
    {Member::kWindowPanes, L"Window", L"Panes"},
    {Member::kWindowScrollColumn, L"Window", L"ScrollColumn"},
    {Member::kWindowScrollRow, L"Window", L"ScrollRow"},
    {Member::kWindowTop, L"Window", L"Top"},
    {Member::kWindowWidth, L"Window", L"Width"},
    {Member::kWindowWindowState, L"Window", L"WindowState"},
    {Member::kPanesCount, L"Panes", L"Count"},
    {Member::kPanesItem, L"Panes", L"Item"},
    {Member::kPaneScrollColumn, L"Pane", L"ScrollColumn"},
    {Member::kCommandBarsActiveMenuBar, L"CommandBars", L"ActiveMenuBar"},
    {Member::kCommandBarControls, L"CommandBar", L"Controls"},
    {Member::kCommandBarFindControl, L"CommandBar", L"FindControl"},
    {Member::kCommandBarControlsAdd, L"CommandBarControls", L"Add"},
    {Member::kCommandBarControlBeginGroup, L"CommandBarControl", L"BeginGroup"},
    {Member::kCommandBarControlCaption, L"CommandBarControl", L"Caption"},
    {Member::kCommandBarControlDelete, L"CommandBarControl", L"Delete"},
    {Member::kCommandBarControlIndex, L"CommandBarControl", L"Index"},
    {Member::kCommandBarControlOnAction, L"CommandBarControl", L"OnAction"},
    {Member::kCommandBarControlTag, L"CommandBarControl", L"Tag"},
    {Member::kCommandBarControlVisible, L"CommandBarControl", L"Visible"},
    {Member::kCommandBarButtonFaceId, L"CommandBarButton", L"FaceId"},
    {Member::kCommandBarPopupControls, L"CommandBarPopup", L"Controls"},
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
