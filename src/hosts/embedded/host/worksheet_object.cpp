// Worksheet over an open workbook.
#include <algorithm>

#include "host/objects.h"
#include "host/row_edits.h"
#include "host/sheet_protection.h"

namespace vantora::embedded {
namespace {

class EmbeddedWorksheet : public host::Worksheet {
 public:
  EmbeddedWorksheet(BookHandle book, int sheet) : book_(std::move(book)), sheet_(sheet) {}

  bool IsSame(const host::Worksheet& other) const override {
    auto* worksheet = dynamic_cast<const EmbeddedWorksheet*>(&other);
    return worksheet && worksheet->book_ == book_ && worksheet->sheet_ == sheet_;
  }
  std::string Name() override { return book_->sheet(sheet_).name; }

  void SetName(std::string_view name) override;

  void Activate() override { book_->Activate(sheet_); }
  void Select() override { book_->Activate(sheet_); }
  host::RangePtr Cells(int row, int column) override {
    return MakeRange(book_, sheet_, OneCell(row, column));
  }
  host::RangePtr Range(int first_row, int first_column, int last_row, int last_column) override;
  host::RangePtr Columns(int column) override {
    OneCell(1, column);
    return MakeRange(book_, sheet_, WholeColumns(column, column));
  }
  host::RangePtr UsedRange() override { return MakeRange(book_, sheet_, book_->UsedRange(sheet_)); }
  void Paste() override;

  host::XlSheetVisibility Visible() override;

  void SetVisible(host::XlSheetVisibility visible) override;

  bool ProtectContents() override;

  void Unprotect() override;

  void Protect() override;

  void OutlineShowLevels(int row_levels) override;

  host::ShapePtr Shapes(std::string_view name) override { return MakeShape(book_, sheet_, name); }
  std::vector<host::ChartObjectPtr> ChartObjects() override {
    return MakeChartObjects(book_, sheet_);
  }

  void CallRoutine(std::string_view routine) override;

 private:
  BookHandle book_;
  int sheet_;
};

host::RangePtr EmbeddedWorksheet::Range(int first_row, int first_column, int last_row,
                                        int last_column) {
  Area first = OneCell(first_row, first_column);
  Area last = OneCell(last_row, last_column);
  return MakeRange(
      book_, sheet_,
      {std::min(first.first_row, last.first_row), std::min(first.first_column, last.first_column),
       std::max(first.first_row, last.first_row), std::max(first.first_column, last.first_column)});
}

void EmbeddedWorksheet::Paste() {
  static constexpr const char* kMethod = "Paste method of Worksheet class";
  if (book_->active_sheet() != sheet_) {
    Refuse(std::string(kMethod) + " failed: the sheet is not the active sheet.");
  }
  PasteCopied(book_, sheet_, book_->Selection(sheet_), kPasteAll, kMethod);
}

void EmbeddedWorksheet::SetName(std::string_view) { RefuseMember("Worksheet.Name (put)"); }

host::XlSheetVisibility EmbeddedWorksheet::Visible() {
  switch (book_->sheet(sheet_).visibility) {
    case Visibility::kVisible: return host::XlSheetVisibility::kVisible;
    case Visibility::kHidden: return host::XlSheetVisibility::kHidden;
    case Visibility::kVeryHidden: return host::XlSheetVisibility::kVeryHidden;
  }
  return host::XlSheetVisibility::kVisible;
}

void EmbeddedWorksheet::SetVisible(host::XlSheetVisibility visible) {
  book_->SetVisibility(sheet_, visible == host::XlSheetVisibility::kVisible  ? Visibility::kVisible
                               : visible == host::XlSheetVisibility::kHidden ? Visibility::kHidden
                                                                             : Visibility::kVeryHidden);
}

bool EmbeddedWorksheet::ProtectContents() { return book_->sheet(sheet_).is_protected; }

void EmbeddedWorksheet::Unprotect() { UnprotectSheet(*book_, sheet_); }

void EmbeddedWorksheet::Protect() { ProtectSheet(*book_, sheet_); }

void EmbeddedWorksheet::OutlineShowLevels(int row_levels) {
  ShowRowLevels(*book_, sheet_, row_levels);
}

void EmbeddedWorksheet::CallRoutine(std::string_view routine) { book_->CallSheetRoutine(routine); }

}  // namespace

host::WorksheetPtr MakeWorksheet(BookHandle book, int sheet) {
  return std::make_shared<EmbeddedWorksheet>(std::move(book), sheet);
}

}  // namespace vantora::embedded
