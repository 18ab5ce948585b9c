// A workbook in memory for the tests of operations, and what they ask of it afterwards.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/value.h"
#include "host/session.h"

namespace vantora::testing {

// Cells are named "Data!O3"; sheet names here need no quotes.
class TestModel {
 public:
  explicit TestModel(const std::vector<std::string>& sheet_names);

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
  // "Data!R inserted" for each inserted column, then "Data!J3: 1 -> 2" for each changed cell.
  std::vector<std::string> Changes();

 private:
  embedded::WorkbookModel& model() { return session_->file().model(); }
  embedded::SheetModel& SheetOf(std::string_view name) {
    return *model().sheets[*model().IdOf(name)];
  }
  // The part of that kind which belongs to a sheet; "" when there is none.
  std::string PartOf(std::string_view sheet, std::string_view kind);

  std::unique_ptr<embedded::Session> session_;
};

}  // namespace vantora::testing
