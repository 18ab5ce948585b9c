// A workbook in memory for the tests of operations, and what they ask of it afterwards.
#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/value.h"
#include "host/session.h"
#include "support/temporary_folder.h"

namespace vantora::testing {

// Lengths in points. A chart with an empty title has none.
struct TestChart {
  double left = 0;
  double top = 0;
  double width = 0;
  std::string title;
};

// The person at the host: gives its answers in order, cancels where none is left.
struct HostUser : embedded::Prompts {
  std::deque<std::string> answers;
  // "title|prompt" for cells, "title|initial name|filter" for a file; for another try the refusal.
  std::vector<std::string> asked;

  std::optional<std::string> InputRange(std::string_view prompt, std::string_view title,
                                        std::string_view refusal) override;
  std::optional<std::string> GetSaveAsFilename(std::string_view initial_filename,
                                               std::string_view file_filter,
                                               std::string_view title) override;

 private:
  std::optional<std::string> Answer();
};

// Cells are named "Data!O3", "'Copy of Data'!O3".
class TestModel {
 public:
  explicit TestModel(const std::vector<std::string>& sheet_names);
  TestModel(TestModel&&) = default;
  TestModel& operator=(TestModel&& other) noexcept;
  ~TestModel();
  // Opens another workbook, not the active one, and returns its number.
  int AddWorkbook(const std::string& name, const std::vector<std::string>& sheet_names) {
    return session_->CreateFurther(name, sheet_names);
  }
  // What is said of cells and sheets from here on concerns that workbook (0: the first).
  void Use(int workbook) { workbook_ = workbook; }

  // Puts the values side by side, beginning at the cell. A text "=..." is a formula.
  void Put(const std::string& cell, const std::vector<Value>& values);
  // Gives the cell a fill colour.
  void Fill(const std::string& cell);
  void Name(std::string name, std::string refers_to);
  void Hide(std::string_view sheet);
  void Protect(std::string_view sheet);
  bool IsProtected(std::string_view sheet) { return SheetOf(sheet).is_protected; }
  // Puts the charts on a sheet that has none.
  void AddCharts(std::string_view sheet, const std::vector<TestChart>& charts);
  // The workbook has the routines that the Reference Sheet's code module offers.
  void HaveSortButtons() {
    session_->AddSheetRoutine("ResetKeySortButtons");
    session_->AddSheetRoutine("resetNamesSortButtons");
  }
  // It counts as no worksheet from then on, and is active if it was.
  void TurnIntoChartSheet(std::string_view sheet) { SheetOf(sheet).is_worksheet = false; }
  // A spin button, linked to a cell as its text says ("$C$12"). One for each sheet.
  void AddSpinner(std::string_view sheet, std::string_view name, std::string_view linked_cell);
  // The shape of the active sheet that runs the next operation.
  void SetCaller(std::string_view shape) { session_->SetCaller(shape); }
  void Activate(std::string_view sheet) { session_->Worksheet(sheet, workbook_)->Activate(); }
  // An address of the active sheet.
  void Select(const std::string& cells) { session_->Range(cells)->Select(); }
  // The workbook counts as closed then.
  void CloseWindow() { application()->ActiveWindow()->Close(); }
  void ActivateWorkbook(int workbook) { session_->ActivateWorkbook(workbook); }
  // Changes() tells what changed since.
  void RecordChanges() { session_->RecordChanges(); }

  host::ApplicationPtr application() { return session_->application(); }
  host::WorksheetPtr Sheet(std::string_view name) { return session_->Worksheet(name, workbook_); }
  Value Get(const std::string& cell) { return session_->Range(cell, workbook_)->Value(); }
  // "Data 0,295 1428x305" for each open window, the active one first.
  std::vector<std::string> Windows();
  void SetUsableArea(double width, double height, bool full_screen) {
    session_->SetUsableArea(width, height, full_screen);
  }
  // The values of cells side by side.
  std::vector<Value> Get(const std::string& first_cell, int count);
  // Without "="; "" for a cell without a formula.
  std::string Formula(const std::string& cell);
  bool IsFilled(const std::string& cell);
  std::string RefersTo(std::string_view name);
  // The alignment of a cell's format as it is saved: " horizontal=\"left\""; "" when it has none.
  std::string Alignment(const std::string& cell);
  // "Reference!B5:D7" for what is selected on the active sheet.
  std::string Selection();
  // Of all sheets, in tab order.
  std::vector<std::string> SheetNames();
  std::string ActiveSheet() { return application()->ActiveAnySheet()->Name(); }
  // The text of a cell's comment; "none" when it has none.
  std::string Comment(const std::string& cell);
  // Whether comments of the sheet are hidden until pointed at.
  bool CommentsAreHidden(std::string_view sheet);
  // The captions of the menu bar's menus in order, hidden ones in brackets.
  std::vector<std::string> MenuBar();
  // What is in the menu bar's n-th menu of that tag (0 is the first): "-" where a group begins,
  // then "caption = macro #face [tag]" for each entry, as far as it has them. A popup ends with a
  // colon, its entries follow with two blanks before them; what is hidden stands in brackets.
  std::vector<std::string> Menu(std::string_view tag, std::size_t n = 0);
  HostUser& user() { return *user_; }
  bool HasName(std::string_view name) { return model().FindName(name, 0) != nullptr; }
  // The selected cells: "J5:N6 J10:N12".
  std::string Selected();
  // The elements of the styles part that a cell uses, as they stand there.
  std::string FontOf(const std::string& cell) { return StyleOf(cell, "fonts", "fontId"); }
  std::string BorderOf(const std::string& cell) { return StyleOf(cell, "borders", "borderId"); }
  std::string FormatOf(const std::string& cell) { return StyleOf(cell, "cellXfs", ""); }
  void SetVersion(const std::string& version) { session_->SetVersion(version); }
  // Saves that operations make fail, or succeed and can be opened.
  void RefuseSaves() { session_->DirectSaves(nullptr); }
  bool WasSaved() { return session_->saves().any(); }
  // The requests so far: "Save .xlsx", "SaveAs Plan.xls .xls".
  const std::vector<std::string>& save_requests() const { return *save_requests_; }
  // The file that the last save wrote.
  std::unique_ptr<embedded::Session> Saved();
  // "Data!R inserted" for each inserted column, then "Data!J3: 1 -> 2" for each changed cell.
  std::vector<std::string> Changes();

 private:
  embedded::WorkbookModel& model() { return session_->file(workbook_).model(); }
  embedded::SheetModel& SheetOf(std::string_view name) {
    return *model().sheets[*model().IdOf(name)];
  }
  // The part of that kind which belongs to a sheet; "" when there is none.
  std::string PartOf(std::string_view sheet, std::string_view kind);

  std::string StyleOf(const std::string& cell, std::string_view table, std::string_view id);

  std::unique_ptr<embedded::Session> session_;
  int workbook_ = 0;
  std::unique_ptr<HostUser> user_ = std::make_unique<HostUser>();
  std::unique_ptr<std::vector<std::string>> save_requests_ =
      std::make_unique<std::vector<std::string>>();
  TemporaryFolder folder_;
};

}  // namespace vantora::testing
