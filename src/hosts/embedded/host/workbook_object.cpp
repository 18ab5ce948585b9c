// Workbook and Sheets over an open workbook.
#include "host/objects.h"

namespace vantora::embedded {
namespace {

class EmbeddedSheets : public host::Sheets {
 public:
  explicit EmbeddedSheets(BookHandle book) : book_(std::move(book)) {}

  int Count() override { return static_cast<int>(book_->model().tab_order.size()); }

  host::SheetPtr Item(int index) override;

  host::SheetPtr Item(std::string_view name) override;

  host::WorksheetPtr Add(const host::SheetPtr& after) override;

 private:
  BookHandle book_;
};

host::SheetPtr EmbeddedSheets::Item(int) { RefuseMember("Sheets.Item"); }

host::SheetPtr EmbeddedSheets::Item(std::string_view) { RefuseMember("Sheets.Item"); }

host::WorksheetPtr EmbeddedSheets::Add(const host::SheetPtr&) { RefuseMember("Sheets.Add"); }

class EmbeddedWorkbook : public host::Workbook {
 public:
  explicit EmbeddedWorkbook(BookHandle book) : book_(std::move(book)) {}

  std::string Name() override { return book_->file().name(); }
  host::NamesPtr Names() override { return MakeNames(book_); }
  std::vector<host::WorksheetPtr> Worksheets() override;

  host::SheetsPtr Sheets() override { return MakeSheets(book_); }

  void Save() override;

  void SaveAs(std::string_view filename, host::XlFileFormat format) override;

  host::Palette Colors() override;

  void SetColors(const host::Palette& colors) override;

  std::vector<host::WindowPtr> Windows() override { return MakeWindows(book_); }

  host::WindowPtr NewWindow() override;

 private:
  BookHandle book_;
};

std::vector<host::WorksheetPtr> EmbeddedWorkbook::Worksheets() {
  WorkbookModel& model = book_->model();
  std::vector<host::WorksheetPtr> worksheets;
  for (int sheet : model.tab_order) {
    if (model.sheets[sheet]->is_worksheet) worksheets.push_back(MakeWorksheet(book_, sheet));
  }
  return worksheets;
}

void EmbeddedWorkbook::Save() { book_.application->saves.Save(*book_); }

void EmbeddedWorkbook::SaveAs(std::string_view filename, host::XlFileFormat format) {
  book_.application->saves.SaveAs(*book_, std::string(filename), format);
}

host::Palette EmbeddedWorkbook::Colors() { RefuseMember("Workbook.Colors"); }

void EmbeddedWorkbook::SetColors(const host::Palette&) { RefuseMember("Workbook.Colors"); }

host::WindowPtr EmbeddedWorkbook::NewWindow() {
  book_->windows().Open();
  book_.application->active_workbook = book_.workbook;
  return MakeWindows(book_).front();
}

}  // namespace

host::WorkbookPtr MakeWorkbook(BookHandle book) {
  return std::make_shared<EmbeddedWorkbook>(std::move(book));
}

host::SheetsPtr MakeSheets(BookHandle book) {
  return std::make_shared<EmbeddedSheets>(std::move(book));
}

}  // namespace vantora::embedded
