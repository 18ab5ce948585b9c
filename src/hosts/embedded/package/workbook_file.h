// A workbook as a file: its calculating model beside the package it came from.
#pragma once

#include <exception>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "formula/workbook_model.h"
#include "package/book_view.h"
#include "package/opc_package.h"
#include "package/sheet_markup.h"
#include "package/sheet_view.h"
#include "package/style_editor.h"
#include "package/table_headers.h"

namespace vantora::embedded {

// One of the workbook's windows as the file is to hold it.
struct WindowToWrite {
  // The window's number in the file as it was last written; nullopt for a window that is new.
  std::optional<int> origin;
  // Its active tab is that of `active_sheet`.
  BookView view;
  int active_sheet = 0;
  // By id, of the sheets whose view may differ.
  std::map<int, SheetView> sheets;
};

struct WorkbookParts;
class NewSharedStrings;

class WorkbookFile {
 public:
  // Opens an .xlsx, .xlsm, .xltx or .xltm package. Throws FileError; nothing is ever written by it.
  static std::unique_ptr<WorkbookFile> Open(const std::filesystem::path& path);
  // A new workbook with empty worksheets of these names (different, none of them empty), which can
  // be saved as well.
  static std::unique_ptr<WorkbookFile> Create(const std::vector<std::string>& sheet_names,
                                              const std::string& name = "Book1");
  ~WorkbookFile();

  WorkbookModel& model() { return model_; }
  OpcPackage& package() { return *package_; }
  SheetMarkup& markup(int sheet) { return sheets_[sheet].markup; }
  const std::string& part_of(int sheet) const { return sheets_[sheet].part; }
  // File name without its folder ("Model.xlsm").
  const std::string& name() const { return name_; }
  void SetName(std::string name) { name_ = std::move(name); }
  bool has_macros() const;
  // Of the main part, which tells a macro-enabled workbook (.xlsm) from one without macros.
  std::string main_content_type() const;
  void SetMainContentType(const std::string& content_type);
  bool is_macro_enabled() const;
  void MakeMacroEnabled();

  // Changes to the workbook's cell formats.
  StyleEditor& style_editor();

  // Id of the active sheet when the workbook was opened.
  int active_sheet() const { return active_sheet_; }

  // Adds an empty worksheet at that 0-based place among the tabs and returns its id. The name is one
  // that a sheet may have, and free.
  int AddSheet(const std::string& name, int position);
  // Gives the sheet a name that a sheet may have, and that is free: in the model and in every part
  // that names it. What the cells' formulas and the names say follows by the model's own. Throws
  // FileError, and nothing is renamed then.
  void RenameSheet(int sheet, const std::string& name);

  // Makes everything around the cells follow an insertion: applied at the next call of
  // FollowInsertions or Save, in one pass over each part however many insertions came.
  void AddInsertion(const ColumnInsertion& insertion) { insertions_.push_back(insertion); }
  // Applies the insertions added since the last call to one sheet's markup and parts (comments,
  // drawings), as an edit of these must see them.
  void FollowInsertions(int sheet);
  // The same for the parts that belong to no sheet: charts, pivot caches.
  void FollowInSharedParts();

  // Formulas are left that could not be calculated: Excel is asked to calculate all on opening.
  void RequestCalculationOnOpening() { calculate_on_opening_ = true; }
  // The calculation mode was set: the file is to say what the model does.
  void RecordCalculationMode() { records_calculation_mode_ = true; }

  // The workbook's windows when it was opened, at least one, and the id of each one's active sheet.
  const std::vector<BookView>& windows() const { return windows_; }
  int active_sheet_of(int window) const { return active_sheets_[window]; }
  // Makes the parts hold these windows, at least one, in their order: places, active sheets, views
  // of the sheets. What does not differ stays as it is written. Throws FileError.
  void WriteWindows(const std::vector<WindowToWrite>& windows);

  // Writes what changed and copies the rest. Throws FileError and leaves `path` as it was on
  // failure. May be called again after further edits.
  void Save(const std::filesystem::path& path) { WriteBeside(path)->Commit(); }
  // The first half of Save: the workbook as it is now in a file beside `path`, whose Commit gives it
  // its name.
  std::unique_ptr<ReplacementFile> WriteBeside(const std::filesystem::path& path);

  // Makes tables and their header cells agree (see MatchTableHeaders), as Save does too; formulas
  // that refer to renamed columns follow. Throws FileError.
  TableMatches MatchTables();

 private:
  struct SheetPart {
    std::string part;
    SheetMarkup markup;
    std::size_t insertions_followed = 0;
    // As read: to tell whether cells were erased, and whether the used area changed.
    std::size_t loaded_cells = 0;
    std::optional<Area> loaded_area;
    Visibility loaded_visibility = Visibility::kVisible;
  };

  WorkbookFile();
  void ReadParts();
  void ReadTables();
  // Insertions that `followed` of them lie behind, and marks them as followed.
  std::span<const ColumnInsertion> Pending(std::size_t& followed);
  ColumnRenames CheckedRenames(const Table& now, const std::string& part) const;
  void RenameTableColumns(const ColumnRenames& renames, Table now, const std::string& part,
                          TableMatches& matches);
  void FollowInParts(int sheet, std::span<const ColumnInsertion> pending);
  bool CellsDiffer(int sheet) const;
  // The sheets whose parts are to be written.
  std::vector<int> ChangedSheets();
  NewSharedStrings CollectSharedStrings(const std::vector<int>& sheets);
  void WriteSharedStrings(const NewSharedStrings& added);
  void WriteSheets(const std::vector<int>& sheets, const NewSharedStrings& added);
  void WriteWorkbookPart();
  void WriteStyles();
  // Brings the package's parts up to date.
  void WriteParts();
  void RemoveCalculationChain();
  std::set<std::string> ChartParts() const;
  void UpdateCharts(const std::vector<int>& sheets);

  WorkbookModel model_;
  std::unique_ptr<OpcPackage> package_;
  std::unique_ptr<WorkbookParts> parts_;
  std::vector<SheetPart> sheets_;
  // Made when it is first needed.
  std::unique_ptr<StyleEditor> style_editor_;
  std::vector<ColumnInsertion> insertions_;
  // Of the parts that belong to no sheet: charts, pivot caches.
  std::size_t insertions_followed_ = 0;
  std::string name_;
  int active_sheet_ = 0;
  // As opened, and the active sheets as the parts say now.
  std::vector<BookView> windows_;
  std::vector<int> active_sheets_;
  bool calculate_on_opening_ = false;
  bool records_calculation_mode_ = false;
  // What kept a save from bringing the parts up to date. Some of them may have followed insertions
  // and others not, so that no later save can be right.
  std::exception_ptr failed_;
};

}  // namespace vantora::embedded
