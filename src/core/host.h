// The workbook host: the members of Excel's object model that the operations use, as abstract
// classes under Excel's own member names. A host (Excel over COM, the embedded host) implements
// them; the operations know nothing else of it.
//
// Shape: `Value()` reads a property, `SetValue(v)` writes it; rows, columns and indices are 1-based;
// lengths are points; enumerations carry the host's own numbers. Every member may throw HostError
// with what the host says. Handles are cheap: an operation asks for one per cell. Two handles are
// the same object when `IsSame` says so, whatever their addresses.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/host_error.h"
#include "core/value.h"

namespace vantora::host {

class Application;
class Workbook;
class Worksheet;
class Range;
class Names;
class Name;
class Interior;
class Comment;

using ApplicationPtr = std::shared_ptr<Application>;
using WorkbookPtr = std::shared_ptr<Workbook>;
using WorksheetPtr = std::shared_ptr<Worksheet>;
using RangePtr = std::shared_ptr<Range>;
using NamesPtr = std::shared_ptr<Names>;
using NamePtr = std::shared_ptr<Name>;
using InteriorPtr = std::shared_ptr<Interior>;
using CommentPtr = std::shared_ptr<Comment>;

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

class Application {
 public:
  virtual ~Application() = default;

  // Null when no workbook is open.
  virtual WorkbookPtr ActiveWorkbook() = 0;
  // Null when the active sheet is not a worksheet (a chart sheet) or no workbook is open.
  virtual WorksheetPtr ActiveSheet() = 0;
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
};

class Workbook {
 public:
  virtual ~Workbook() = default;

  virtual std::string Name() = 0;
  virtual NamesPtr Names() = 0;
  // The worksheets (not the chart sheets) in tab order, hidden ones included.
  virtual std::vector<WorksheetPtr> Worksheets() = 0;
};

class Names {
 public:
  virtual ~Names() = default;

  // The defined name `name` (case-insensitive; a sheet's own name as "Sheet!name"). Throws 1004
  // when there is none.
  virtual NamePtr Item(std::string_view name) = 0;
};

class Name {
 public:
  virtual ~Name() = default;

  // Throws 1004 when the name does not refer to a range.
  virtual RangePtr RefersToRange() = 0;
};

class Worksheet {
 public:
  virtual ~Worksheet() = default;

  virtual bool IsSame(const Worksheet& other) const = 0;
  virtual std::string Name() = 0;
  // Both throw 1004 for a hidden sheet.
  virtual void Activate() = 0;
  virtual void Select() = 0;
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
};

class Range {
 public:
  virtual ~Range() = default;

  // Of the top left cell. An error when the cell's value is known to be out of date.
  virtual vantora::Value Value() = 0;
  // Writes every cell of the range as a macro's put does: a text that reads as a number becomes
  // one (unless the cell's format is text), a text that starts with "=" a formula, "" empties.
  virtual void SetValue(const vantora::Value& value) = 0;

  virtual int Row() = 0;
  virtual int Column() = 0;
  virtual int RowsCount() = 0;
  virtual int ColumnsCount() = 0;
  // The cell at a 1-based position relative to the range's top left cell, also outside the range.
  virtual RangePtr Cells(int row, int column) = 0;

  virtual InteriorPtr Interior() = 0;

  virtual void Select() = 0;
  virtual void ClearFormats() = 0;
  // Starts a copy of this range; Paste and PasteSpecial take from it until the copy is ended.
  virtual void Copy() = 0;
  virtual void Insert(XlInsertShiftDirection shift) = 0;
  virtual void PasteSpecial(XlPasteType paste, XlPasteSpecialOperation operation, bool skip_blanks,
                            bool transpose) = 0;
  // Adds a comment to the cell. Throws 1004 when it has one.
  virtual CommentPtr AddComment() = 0;
};

class Interior {
 public:
  virtual ~Interior() = default;

  // The palette index of the fill colour (1 to 56, the nearest for a colour outside the palette);
  // kColorIndexNone only when there is no fill.
  virtual int ColorIndex() = 0;
};

class Comment {
 public:
  virtual ~Comment() = default;

  virtual void SetVisible(bool visible) = 0;
  // Replaces the whole text.
  virtual void Text(std::string_view text) = 0;
};

}  // namespace vantora::host
