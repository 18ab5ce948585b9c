// An open workbook and what can be done to it: the edits that the host's objects make, each as
// Excel makes it, with values kept true and everything around the cells following.
#pragma once

#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/host_error.h"
#include "core/value.h"
#include "formula/calculator.h"
#include "formula/rename_sheet.h"
#include "host/column_sizes.h"
#include "host/feature_areas.h"
#include "host/name_list.h"
#include "host/workbook_windows.h"
#include "package/comments.h"
#include "package/style_editor.h"
#include "package/workbook_file.h"

namespace vantora::embedded {

// Which parts of the copied cells a paste brings. A set of bits.
enum PasteParts : unsigned {
  kPasteFormulas = 1,  // formulas relatively, constants as they are
  kPasteValues = 2,    // results instead of formulas
  kPasteFormats = 4,   // cell formats, conditional formats, merges; the width of whole columns
  kPasteComments = 8,
  kPasteValidations = 16,
  kPasteHyperlinks = 32,
  kPasteAll =
      kPasteFormulas | kPasteFormats | kPasteComments | kPasteValidations | kPasteHyperlinks,
};

class OpenWorkbook {
 public:
  explicit OpenWorkbook(std::unique_ptr<WorkbookFile> file);

  WorkbookFile& file() { return *file_; }
  WorkbookModel& model() { return file_->model(); }
  SheetModel& sheet(int id) { return *model().sheets[id]; }
  Calculator& calculator() { return calculator_; }

  // While calculation is manual, formulas keep the values that they had when it became so; one that
  // is entered meanwhile is calculated once, from the values that the others have. Going automatic
  // makes due whatever changed. Recorded in the file.
  void SetManualCalculation(bool manual);

  // The value as a macro reads it. Throws HostError when it is out of date and can't be calculated.
  Value Read(int sheet, CellAddress cell);
  // A macro's put into every cell of the area.
  void Put(int sheet, const Area& area, const Value& value);
  // Puts one value a row into the cells from `first` down.
  void PutColumn(int sheet, CellAddress first, std::span<const Value> rows);
  // "=A1+1"; for a constant the text that would enter it; "" for an empty cell.
  std::string FormulaOf(int sheet, CellAddress cell);
  // Enters a formula ("=..."), which reads in the first cell as given and is adjusted for the
  // others, or a constant.
  void PutFormula(int sheet, const Area& area, std::string_view formula);
  bool HasFormula(int sheet, CellAddress cell);
  int FillColorIndex(int sheet, CellAddress cell);
  Area UsedRange(int sheet);

  void InsertColumns(int sheet, int column, int count);
  void ClearFormats(int sheet, const Area& area);
  // Empties the cells; formats, comments and validations stay.
  void ClearContents(int sheet, const Area& area);
  // Contents, formats, comments, validations, merges, hyperlinks.
  void Clear(int sheet, const Area& area);

  void Format(int sheet, const std::vector<Area>& areas, const FormatChange& change);
  // The lines between the columns of each area, and those around it.
  void FormatInsideVerticals(int sheet, const std::vector<Area>& areas, const LineChange& line);
  void FormatOutline(int sheet, const std::vector<Area>& areas, const LineChange& line);

  // Sorts the rows of the area by two of its columns, as Excel does with its header guess.
  void Sort(int sheet, const Area& area, int key1_column, int key2_column);
  // Writes the names that the sheet can use from the cell down, with what they refer to as texts.
  void ListNames(int sheet, CellAddress cell);

  // Routines of sheets' code modules that a workbook without macros is taken to have.
  void AddSheetRoutine(std::string_view routine) { sheet_routines_.emplace_back(routine); }
  // Those of them that were called; none of them did anything.
  const std::vector<std::string>& skipped_routines() const { return skipped_routines_; }
  // Throws HostError 438 when the workbook is not known to have the routine.
  void CallSheetRoutine(std::string_view routine);

  // Both areas lie on `sheet`; `to` is of the same size as `from`.
  void Paste(int sheet, const Area& from, const Area& to, unsigned parts);
  // The same from another sheet, of this workbook or of another one. Throws HostError for formulas
  // that would refer to another workbook.
  void PasteFrom(OpenWorkbook& source, int source_sheet, int sheet, const Area& from,
                 const Area& to, unsigned parts);

  // Valid until the sheet's columns change.
  const ColumnSizes& Columns(int sheet);
  // All of the columns first..last are hidden.
  bool ColumnsHidden(int sheet, int first, int last);
  void SetColumnsHidden(int sheet, int first, int last, bool hidden);
  // In characters of the default font; 0 for a hidden column.
  double ColumnWidth(int sheet, int column);
  void SetColumnsWidth(int sheet, int first, int last, double characters);

  void AddComment(int sheet, CellAddress cell);
  void SetCommentText(int sheet, CellAddress cell, std::string_view text);
  void SetCommentVisible(int sheet, CellAddress cell, bool visible);

  // Adds an empty worksheet behind the sheet `after`, with the next free default name; it becomes
  // the active one. Throws HostError while the workbook's structure is protected.
  int AddSheet(int after);
  // All that names the sheet follows. Throws HostError for a name that no sheet may have or another
  // one has, and where a part that may name it can't be read.
  void RenameSheet(int sheet, const std::string& name);

  // Cells with colours of the palette change their look.
  void SetPalette(const Palette& palette);

  WorkbookWindows& windows() { return windows_; }
  // What follows concerns the active window.
  int active_sheet() const { return windows_.active().active_sheet; }
  // Throws HostError for a hidden sheet.
  void Activate(int sheet);
  // What is selected on a sheet: what the file says until something else is selected. Never empty;
  // Selection gives the first area.
  std::vector<Area> SelectedAreas(int sheet);
  Area Selection(int sheet) { return SelectedAreas(sheet).front(); }
  void Select(int sheet, const Area& area) { SelectAreas(sheet, {area}); }
  void SelectAreas(int sheet, std::vector<Area> areas);
  // Makes the area's first cell the active one: within the selection, which stays, or else as part
  // of the area, which is selected.
  void ActivateCell(int sheet, const Area& area);

  // Shows or hides a sheet. Throws HostError where no sheet would stay visible. When the active
  // sheet is hidden, the next visible one is activated.
  void SetVisibility(int sheet, Visibility visibility);

  NameList& names() { return names_; }
  // NameList::Define, which refuses the names of tables too.
  bool DefineName(std::string_view name, std::string_view refers_to_r1c1);
  // The cells that the name refers to and their sheet; nullopt when it refers to something else.
  std::optional<Place> PlaceOf(const DefinedName& name) {
    return names_.PlaceOf(name, active_sheet());
  }

  // Insertions made and comments added since the workbook was opened, for the list of changes.
  const std::vector<ColumnInsertion>& insertions() const { return insertions_; }
  const std::vector<std::string>& notes() const { return notes_; }
  const std::vector<SheetRename>& renames() const { return renames_; }

  // Calculates everything and writes the file.
  std::vector<Uncalculated> Calculate();
  void Save(const std::filesystem::path& path) { WriteBeside(path)->Commit(); }
  // The same without giving the file its name, which its Commit does.
  std::unique_ptr<ReplacementFile> WriteBeside(const std::filesystem::path& path);

 private:
  std::string Describe(int sheet, const Area& area);
  [[noreturn]] void Refuse(const std::string& text);
  void RefuseOnProtectedSheet(int sheet, const Area& area);
  // Refuses an edit that would change some but not all cells of an array formula.
  void RefusePartOfArray(int sheet, const Area& area);
  void RefusePartOfMerge(int sheet, const Area& area);
  double DefaultWidth(int sheet);
  void RefuseFormattingColumns(int sheet, const char* property);
  // Before contents of the area are overwritten: refuses what can't be, and array formulas go.
  void PrepareContents(int sheet, const Area& area);
  void ForgetArrays(int sheet, const Area& area);
  // Contents of the area were overwritten: what depends on them is out of date.
  void ContentsChanged(int sheet, const Area& area);
  bool HasCommentsIn(int sheet, std::initializer_list<Area> areas);
  // The visible sheet that comes forward when a sheet is hidden: the next one to the right, else to
  // the left; nullopt when there is none.
  std::optional<int> VisibleNeighbour(int sheet);
  SheetComments Comments(int sheet);
  void PutValue(int sheet, CellAddress cell, const Value& value);
  void PutText(int sheet, CellAddress cell, const std::string& text);
  // A formula ("=...") as it is entered into a cell. Refuses what Excel would: a text that is no
  // formula, or that names a sheet which is not there.
  Formula EnteredFormula(int sheet, CellAddress cell, std::string_view text);
  // Whether a text put into the cell is a formula.
  bool IsEnteredAsFormula(int sheet, CellAddress cell, std::string_view text);
  void ClearCell(int sheet, CellAddress cell);
  // Takes away empty cells that look as their rows and columns do.
  void DropPlainCells(int sheet, const Area& area);
  void PutPlainText(int sheet, CellAddress cell, const std::string& text);
  bool HasHeader(int sheet, const Area& area);
  void RefuseSorting(int sheet, const Area& area);
  void MoveRows(int sheet, const RowMoves& moves);
  void MoveCells(int sheet, int column, const RowMoves& moves);
  void RefuseFormatting(int sheet, const std::vector<Area>& areas);
  void RenameInFormulas(SheetModel& sheet, int renamed, const SheetRename& rename);
  void PasteCells(SheetModel& sheet, const Area& from, const Area& to, unsigned parts);
  void PasteCell(SheetModel& sheet, const Cell& source, CellAddress from, CellAddress to,
                 unsigned parts);
  void PasteColumnFormats(SheetModel& sheet, const Area& from, const Area& to);
  class CellTransfer;
  void RefuseLinks(OpenWorkbook& source, int source_sheet, const Area& from);
  void PasteFeaturesFrom(OpenWorkbook& source, int source_sheet, int sheet, const Area& from,
                         const Area& to, unsigned parts);

  std::unique_ptr<WorkbookFile> file_;
  Calculator calculator_;
  WorkbookWindows windows_;
  NameList names_;
  FeatureAreas features_;
  // The cells of a sheet that have a comment or its box; of the sheets that were looked at.
  std::map<int, std::vector<CellAddress>> commented_cells_;
  std::map<int, ColumnSizes> column_sizes_;
  std::vector<ColumnInsertion> insertions_;
  std::vector<std::string> notes_;
  std::vector<SheetRename> renames_;
  std::vector<std::string> sheet_routines_;
  std::vector<std::string> skipped_routines_;
};

}  // namespace vantora::embedded
