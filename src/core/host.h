// The workbook host: the members of Excel's object model that the operations use, as abstract
// classes under Excel's own member names. A host (Excel over COM, the embedded host) implements
// them; the operations know nothing else of it.
//
// Shape: `Value()` reads a property, `SetValue(v)` writes it; rows, columns and indices are
// 1-based; lengths are points; enumerations carry the host's own numbers. Every member may throw
// HostError with what the host says. Handles are cheap: an operation asks for one per cell. Two
// handles are the same object when `IsSame` says so, whatever their addresses.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/host_error.h"
#include "core/value.h"

namespace vantora::host {

class Application;
class Workbook;
class Sheets;
class Sheet;
class Worksheet;
class Range;
class Names;
class Name;
class Interior;
class Font;
class Borders;
class Comment;
class Shape;
class ChartObject;
class Window;
class Pane;
class CommandBar;
class CommandBarControls;
class CommandBarControl;

using ApplicationPtr = std::shared_ptr<Application>;
using WorkbookPtr = std::shared_ptr<Workbook>;
using SheetsPtr = std::shared_ptr<Sheets>;
using SheetPtr = std::shared_ptr<Sheet>;
using WorksheetPtr = std::shared_ptr<Worksheet>;
using RangePtr = std::shared_ptr<Range>;
using NamesPtr = std::shared_ptr<Names>;
using NamePtr = std::shared_ptr<Name>;
using InteriorPtr = std::shared_ptr<Interior>;
using FontPtr = std::shared_ptr<Font>;
using BordersPtr = std::shared_ptr<Borders>;
using CommentPtr = std::shared_ptr<Comment>;
using ShapePtr = std::shared_ptr<Shape>;
using ChartObjectPtr = std::shared_ptr<ChartObject>;
using WindowPtr = std::shared_ptr<Window>;
using PanePtr = std::shared_ptr<Pane>;
using CommandBarPtr = std::shared_ptr<CommandBar>;
using CommandBarControlsPtr = std::shared_ptr<CommandBarControls>;
using CommandBarControlPtr = std::shared_ptr<CommandBarControl>;

// `Interior.ColorIndex` of a cell without a fill.
inline constexpr int kColorIndexNone = -4142;

enum class XlCutCopyMode : int { kNone = 0, kCopy = 1, kCut = 2 };
enum class XlInsertShiftDirection : int { kToRight = -4161, kDown = -4121 };
enum class XlPasteType : int {
  kAll = -4104,
  kValues = -4163,
  kFormats = -4122,
  kFormulas = -4123,
  kComments = -4144,
  kValidation = 6,
};
enum class XlPasteSpecialOperation : int { kNone = -4142 };
enum class XlCalculation : int { kManual = -4135, kAutomatic = -4105 };
enum class XlSheetVisibility : int { kVisible = -1, kHidden = 0, kVeryHidden = 2 };
enum class XlWindowState : int { kNormal = -4143, kMinimized = -4140, kMaximized = -4137 };
enum class XlFileFormat : int {
  kWorkbookNormal = -4143,
  kOpenXmlWorkbookMacroEnabled = 52,
  kExcel8 = 56,
};
enum class XlPattern : int { kSolid = 1, kNone = -4142 };
enum class XlHAlign : int { kLeft = -4131, kRight = -4152 };
enum class XlBorderWeight : int { kHairline = 1, kThin = 2 };
enum class XlBordersIndex : int { kInsideVertical = 11 };
enum class MsoControlType : int { kButton = 1, kPopup = 10 };

// The colours of a workbook's palette, in its order: red in the lowest byte, blue in the third.
inline constexpr int kPaletteSize = 56;
using Palette = std::vector<int>;

class Application {
 public:
  virtual ~Application() = default;

  // Null when no workbook is open.
  virtual WorkbookPtr ActiveWorkbook() = 0;
  // Null when the active sheet is not a worksheet (a chart sheet) or no workbook is open.
  virtual WorksheetPtr ActiveSheet() = 0;
  // The same of whatever kind the sheet is; null when no workbook is open.
  virtual SheetPtr ActiveAnySheet() = 0;
  // The selected cells of the active sheet; null when something else is selected.
  virtual RangePtr Selection() = 0;
  // Activates the sheet of the named range and selects the range. Throws 1004 for an unknown name.
  virtual void Goto(std::string_view reference) = 0;
  virtual bool ScreenUpdating() = 0;
  virtual void SetScreenUpdating(bool on) = 0;
  // Name of the shape that ran the macro ("Spinner 3"); empty when none did.
  virtual std::string Caller() = 0;
  // Ends a copy in progress, whatever the mode put.
  virtual void SetCutCopyMode(XlCutCopyMode mode) = 0;
  // The open workbooks, in the collection's order.
  virtual std::vector<WorkbookPtr> Workbooks() = 0;
  // Null when no window is open.
  virtual WindowPtr ActiveWindow() = 0;
  // While manual, nothing is recalculated; going automatic recalculates what is due.
  virtual void SetCalculation(XlCalculation calculation) = 0;
  // Space for workbook windows, in points.
  virtual double UsableHeight() = 0;
  virtual double UsableWidth() = 0;
  virtual bool DisplayFullScreen() = 0;
  // The host's version as a text that starts with its number ("16.0").
  virtual std::string Version() = 0;
  // The areas of both ranges, which lie on one worksheet.
  virtual RangePtr Union(const RangePtr& first, const RangePtr& second) = 0;
  // Asks the user for cells, several areas allowed (Excel's input box of type 8); null when the
  // user cancels.
  virtual RangePtr InputRange(std::string_view prompt, std::string_view title) = 0;
  // Asks the user for the file to save to; nullopt when the user cancels. `file_filter` holds pairs
  // of description and pattern, separated by commas.
  virtual std::optional<std::string> GetSaveAsFilename(std::string_view initial_filename,
                                                       std::string_view file_filter,
                                                       std::string_view title) = 0;
  // The menu bar that is shown (`CommandBars.ActiveMenuBar`).
  virtual CommandBarPtr ActiveMenuBar() = 0;
};

class Workbook {
 public:
  virtual ~Workbook() = default;

  virtual std::string Name() = 0;
  virtual NamesPtr Names() = 0;
  // The worksheets (not the chart sheets) in tab order, hidden ones included.
  virtual std::vector<WorksheetPtr> Worksheets() = 0;
  // All sheets, chart sheets among them.
  virtual SheetsPtr Sheets() = 0;
  virtual void Save() = 0;
  virtual void SaveAs(std::string_view filename, XlFileFormat format) = 0;
  // The palette: kPaletteSize colours.
  virtual Palette Colors() = 0;
  virtual void SetColors(const Palette& colors) = 0;
  // The workbook's windows, in the collection's order.
  virtual std::vector<WindowPtr> Windows() = 0;
  // A further window on the workbook; it becomes the active one.
  virtual WindowPtr NewWindow() = 0;
};

class Sheets {
 public:
  virtual ~Sheets() = default;

  virtual int Count() = 0;
  // By 1-based position in tab order, or by name (case-insensitive). Throws 9 when there is none.
  virtual SheetPtr Item(int index) = 0;
  virtual SheetPtr Item(std::string_view name) = 0;
  // A new empty worksheet behind `after`; it becomes the active sheet.
  virtual WorksheetPtr Add(const SheetPtr& after) = 0;
};

// Any sheet of a workbook: a worksheet, a chart sheet, ...
class Sheet {
 public:
  virtual ~Sheet() = default;

  virtual std::string Name() = 0;
  // Both throw 1004 for a hidden sheet.
  virtual void Activate() = 0;
  virtual void Select() = 0;
};

class Names {
 public:
  virtual ~Names() = default;

  // The defined name `name` (case-insensitive; a sheet's own name as "Sheet!name"). Throws 1004
  // when there is none.
  virtual NamePtr Item(std::string_view name) = 0;
  // Defines a name of the workbook, or defines it anew. False when the host refuses the name or the
  // reference. `refers_to_r1c1` is a formula in R1C1 notation ("=Plan!R12C1:R12C28").
  virtual bool Add(std::string_view name, std::string_view refers_to_r1c1) = 0;
};

class Name {
 public:
  virtual ~Name() = default;

  // `Name.Name`; a C++ class can't have a member of its own name.
  virtual std::string OwnName() = 0;
  // Throws 1004 when the name does not refer to a range.
  virtual RangePtr RefersToRange() = 0;
  virtual void Delete() = 0;
};

class Worksheet : public Sheet {
 public:
  virtual bool IsSame(const Worksheet& other) const = 0;
  // Throws 1004 for a name that no sheet may have, or that another sheet of the workbook has.
  virtual void SetName(std::string_view name) = 0;
  virtual RangePtr Cells(int row, int column) = 0;
  // The rectangle between two corner cells, both included.
  virtual RangePtr Range(int first_row, int first_column, int last_row, int last_column) = 0;
  // One whole column.
  virtual RangePtr Columns(int column) = 0;
  // The smallest rectangle with every cell that has content or a format of its own; A1 when the
  // sheet is empty. It need not start in A1.
  virtual RangePtr UsedRange() = 0;
  // Pastes what was copied at the selection of this sheet, which must be active: formulas, values,
  // formats, comments and validations.
  virtual void Paste() = 0;
  virtual XlSheetVisibility Visible() = 0;
  // Throws 1004 when no sheet would stay visible.
  virtual void SetVisible(XlSheetVisibility visible) = 0;
  virtual bool ProtectContents() = 0;
  // Without a password. Throws 1004 when the sheet is protected with one.
  virtual void Unprotect() = 0;
  // Drawing objects, contents and scenarios, without a password.
  virtual void Protect() = 0;
  // Expands or collapses the row outline to `row_levels` levels (`Outline.ShowLevels`).
  virtual void OutlineShowLevels(int row_levels) = 0;
  // Throws 1004 when the sheet has no shape of that name.
  virtual ShapePtr Shapes(std::string_view name) = 0;
  // The charts on the sheet, in its order.
  virtual std::vector<ChartObjectPtr> ChartObjects() = 0;
  // Calls a public routine of the sheet's own code module.
  virtual void CallRoutine(std::string_view routine) = 0;
};

class Range {
 public:
  virtual ~Range() = default;

  // Of the top left cell. An error when the cell's value is known to be out of date.
  virtual vantora::Value Value() = 0;
  // Writes every cell of the range as a macro's put does: a text that reads as a number becomes
  // one (unless the cell's format is text), a text that starts with "=" a formula, "" empties.
  virtual void SetValue(const vantora::Value& value) = 0;
  // Writes one value a row into a range of one column, as a macro puts an array: in one assignment.
  // The range has as many rows as there are values.
  virtual void SetValues(std::span<const vantora::Value> rows) = 0;
  // The formula of the top left cell ("=A1+1"); for a constant the text that would enter it; "" for
  // an empty cell.
  virtual std::string Formula() = 0;
  // Enters a formula or a constant into every cell; formulas are adjusted to each cell.
  virtual void SetFormula(std::string_view formula) = 0;
  // Of the top left cell.
  virtual bool HasFormula() = 0;

  virtual WorksheetPtr Worksheet() = 0;
  // The rectangles that the range consists of. Everything but `Areas`, `Select`, `Clear` and the
  // formats concerns the first.
  virtual std::vector<RangePtr> Areas() = 0;
  virtual int Row() = 0;
  virtual int Column() = 0;
  virtual int RowsCount() = 0;
  virtual int ColumnsCount() = 0;
  // The cell at a 1-based position relative to the range's top left cell, also outside the range.
  virtual RangePtr Cells(int row, int column) = 0;

  virtual InteriorPtr Interior() = 0;
  virtual FontPtr Font() = 0;
  // The lines between the cells of the range (kInsideVertical).
  virtual BordersPtr Borders(XlBordersIndex index) = 0;
  // A continuous line around the range. `color_index` is a palette index.
  virtual void BorderAround(XlBorderWeight weight, int color_index) = 0;
  virtual void SetHorizontalAlignment(XlHAlign alignment) = 0;
  virtual void SetWrapText(bool wrap) = 0;

  // Of the whole rows that the range touches (`Rows.Hidden`).
  virtual bool RowsHidden() = 0;
  virtual void SetRowsHidden(bool hidden) = 0;
  // Of the whole columns that the range touches (`Columns.Hidden`).
  virtual bool ColumnsHidden() = 0;
  virtual void SetColumnsHidden(bool hidden) = 0;
  // Distance from column A, and width of all columns, in points; hidden columns count 0.
  virtual double Left() = 0;
  virtual double Width() = 0;
  // Of the first row, in points.
  virtual double RowHeight() = 0;
  virtual void SetRowHeight(double points) = 0;
  // Of the first column, in characters of the default font.
  virtual double ColumnWidth() = 0;
  virtual void SetColumnWidth(double characters) = 0;
  // Of the first row; 1 for a row that belongs to no group.
  virtual int OutlineLevel() = 0;
  virtual void SetOutlineLevel(int level) = 0;

  // The defined name that refers to exactly this range; null when there is none.
  virtual NamePtr Name() = 0;

  virtual void Select() = 0;
  virtual void Activate() = 0;
  // Contents, formats, comments, validations.
  virtual void Clear() = 0;
  virtual void ClearContents() = 0;
  virtual void ClearFormats() = 0;
  // Starts a copy of this range; Paste and PasteSpecial take from it until the copy is ended.
  virtual void Copy() = 0;
  virtual void Insert(XlInsertShiftDirection shift) = 0;
  virtual void PasteSpecial(XlPasteType paste, XlPasteSpecialOperation operation, bool skip_blanks,
                            bool transpose) = 0;
  // Adds a comment to the cell. Throws 1004 when it has one.
  virtual CommentPtr AddComment() = 0;
  // Writes the workbook's names in alphabetical order, one a row, and what each refers to beside
  // it.
  virtual void ListNames() = 0;
  // Sorts the rows of the range by the columns of two cells, both ascending: whether there is a
  // heading row is guessed, upper and lower case are the same.
  virtual void Sort(const RangePtr& key1, const RangePtr& key2) = 0;
};

class Interior {
 public:
  virtual ~Interior() = default;

  // The palette index of the fill colour (1 to 56, the nearest for a colour outside the palette);
  // kColorIndexNone only when there is no fill.
  virtual int ColorIndex() = 0;
  virtual void SetColorIndex(int color_index) = 0;
  virtual void SetPattern(XlPattern pattern) = 0;
};

class Font {
 public:
  virtual ~Font() = default;

  virtual void SetSize(double points) = 0;
  virtual void SetBold(bool bold) = 0;
  virtual void SetItalic(bool italic) = 0;
  // A palette index; 0 for the automatic colour.
  virtual void SetColorIndex(int color_index) = 0;
};

class Borders {
 public:
  virtual ~Borders() = default;

  // Makes the lines continuous.
  virtual void SetWeight(XlBorderWeight weight) = 0;
  virtual void SetColorIndex(int color_index) = 0;
};

class Comment {
 public:
  virtual ~Comment() = default;

  virtual void SetVisible(bool visible) = 0;
  // Replaces the whole text.
  virtual void Text(std::string_view text) = 0;
};

class Shape {
 public:
  virtual ~Shape() = default;

  // The cell that a control is linked to, as the control has it ("$C$12", "Planning!$C$12"); ""
  // when it has none (`ControlFormat.LinkedCell`).
  virtual std::string LinkedCell() = 0;
};

class ChartObject {
 public:
  virtual ~ChartObject() = default;

  // In points from the sheet's top left corner.
  virtual double Left() = 0;
  virtual double Top() = 0;
  virtual double Width() = 0;
  // `Chart.ChartTitle.Caption`. Throws 1004 when the chart has no title.
  virtual std::string TitleCaption() = 0;
};

// Positions and sizes in points.
class Window {
 public:
  virtual ~Window() = default;

  virtual double Top() = 0;
  virtual void SetTop(double points) = 0;
  virtual double Left() = 0;
  virtual void SetLeft(double points) = 0;
  virtual double Height() = 0;
  virtual void SetHeight(double points) = 0;
  virtual double Width() = 0;
  virtual void SetWidth(double points) = 0;
  virtual void SetWindowState(XlWindowState state) = 0;
  virtual void Activate() = 0;
  virtual void Close() = 0;
  // Freezes at the active cell, or frees the panes.
  virtual void SetFreezePanes(bool freeze) = 0;
  // The first row and column that the window shows; with frozen panes, that the scrolling pane
  // shows.
  virtual int ScrollRow() = 0;
  virtual void SetScrollRow(int row) = 0;
  virtual int ScrollColumn() = 0;
  virtual void SetScrollColumn(int column) = 0;
  // 1, 2 or 4.
  virtual std::vector<PanePtr> Panes() = 0;
};

class Pane {
 public:
  virtual ~Pane() = default;

  virtual int ScrollColumn() = 0;
  virtual void SetScrollColumn(int column) = 0;
};

class CommandBar {
 public:
  virtual ~CommandBar() = default;

  virtual CommandBarControlsPtr Controls() = 0;
  // The first control of the bar's top level with that tag; null when there is none.
  virtual CommandBarControlPtr FindControl(std::string_view tag) = 0;
};

class CommandBarControls {
 public:
  virtual ~CommandBarControls() = default;

  virtual std::vector<CommandBarControlPtr> Items() = 0;
  // Adds a temporary control before the 1-based index, or at the end.
  virtual CommandBarControlPtr Add(MsoControlType type, std::optional<int> before) = 0;
};

class CommandBarControl {
 public:
  virtual ~CommandBarControl() = default;

  virtual std::string Caption() = 0;
  virtual void SetCaption(std::string_view caption) = 0;
  virtual std::string Tag() = 0;
  virtual void SetTag(std::string_view tag) = 0;
  virtual void SetOnAction(std::string_view macro) = 0;
  virtual void SetVisible(bool visible) = 0;
  virtual void SetBeginGroup(bool begins_group) = 0;
  // Buttons only: throws 438 for a popup.
  virtual void SetFaceId(int face_id) = 0;
  // 1-based position on its bar or popup.
  virtual int Index() = 0;
  virtual void Delete() = 0;
  // Popups only: throws 438 for a button.
  virtual CommandBarControlsPtr Controls() = 0;
};

}  // namespace vantora::host
