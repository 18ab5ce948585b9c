// A workbook in memory for the tests of operations, and what they ask of it afterwards.
#pragma once

#include <deque>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/value.h"
#include "host/session.h"

namespace vantora::testing {

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

// Cells are named "Data!O3"; sheet names here need no quotes.
class TestModel {
 public:
  explicit TestModel(const std::vector<std::string>& sheet_names);
  TestModel(TestModel&&) = default;
  ~TestModel();

  // Puts the values side by side, beginning at the cell. A text "=..." is a formula.
  void Put(const std::string& cell, const std::vector<Value>& values);
  // Gives the cell a fill colour.
  void Fill(const std::string& cell);
  void Name(std::string name, std::string refers_to);
  void Hide(std::string_view sheet);
  void Protect(std::string_view sheet);
  // A spin button, linked to a cell as its text says ("$C$12"). One for each sheet.
  void AddSpinner(std::string_view sheet, std::string_view name, std::string_view linked_cell);
  // The shape of the active sheet that runs the next operation.
  void SetCaller(std::string_view shape) { session_->SetCaller(shape); }
  // The workbook has the routines that the Reference Sheet's code module offers.
  void HaveSortButtons() {
    session_->AddSheetRoutine("ResetKeySortButtons");
    session_->AddSheetRoutine("resetNamesSortButtons");
  }
  void Activate(std::string_view sheet) { session_->Worksheet(sheet)->Activate(); }
  // Changes() tells what changed since.
  void RecordChanges() { session_->RecordChanges(); }

  host::ApplicationPtr application() { return session_->application(); }
  host::WorksheetPtr Sheet(std::string_view name) { return session_->Worksheet(name); }
  Value Get(const std::string& cell) { return session_->Range(cell)->Value(); }
  // The values of cells side by side.
  std::vector<Value> Get(const std::string& first_cell, int count);
  // Without "="; "" for a cell without a formula.
  std::string Formula(const std::string& cell);
  bool IsFilled(const std::string& cell);
  std::string RefersTo(std::string_view name);
  std::string ActiveSheet() { return application()->ActiveSheet()->Name(); }
  // The text of a cell's comment; "none" when it has none.
  std::string Comment(const std::string& cell);
  // Whether comments of the sheet are hidden until pointed at.
  bool CommentsAreHidden(std::string_view sheet);
  HostUser& user() { return *user_; }
  bool HasName(std::string_view name) { return model().FindName(name, 0) != nullptr; }
  // The selected cells: "J5:N6 J10:N12".
  std::string Selected();
  void Select(const std::string& reference) { session_->Range(reference)->Select(); }
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
  embedded::WorkbookModel& model() { return session_->file().model(); }
  embedded::SheetModel& SheetOf(std::string_view name) {
    return *model().sheets[*model().IdOf(name)];
  }
  // The part of that kind which belongs to a sheet; "" when there is none.
  std::string PartOf(std::string_view sheet, std::string_view kind);

  std::string StyleOf(const std::string& cell, std::string_view table, std::string_view id);

  std::unique_ptr<embedded::Session> session_;
  std::unique_ptr<HostUser> user_ = std::make_unique<HostUser>();
  std::unique_ptr<std::vector<std::string>> save_requests_ =
      std::make_unique<std::vector<std::string>>();
  std::filesystem::path folder_;
};

}  // namespace vantora::testing
