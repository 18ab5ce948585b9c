// Workbook and Sheets over an open workbook.
#include <cstdint>

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
  // `wanted` describes the sheet for the error.
  host::SheetPtr ItemOf(std::optional<int> sheet, const std::string& wanted);

  BookHandle book_;
};

// A chart sheet, or another one without cells.
class EmbeddedSheet : public host::Sheet {
 public:
  EmbeddedSheet(BookHandle book, int sheet) : book_(std::move(book)), sheet_(sheet) {}
  std::string Name() override { return book_->sheet(sheet_).name; }
  void Activate() override { book_->Activate(sheet_); }
  void Select() override { book_->Activate(sheet_); }

 private:
  BookHandle book_;
  int sheet_;
};

host::SheetPtr EmbeddedSheets::ItemOf(std::optional<int> sheet, const std::string& wanted) {
  if (!sheet) {
    throw HostError(HostError::kSubscriptOutOfRange,
                    "Subscript out of range: the workbook has no sheet " + wanted + ".");
  }
  return MakeSheet(book_, *sheet);
}

host::SheetPtr EmbeddedSheets::Item(int index) {
  const std::vector<int>& tabs = book_->model().tab_order;
  std::optional<int> sheet;
  if (index >= 1 && index <= static_cast<int>(tabs.size())) sheet = tabs[index - 1];
  return ItemOf(sheet, "number " + std::to_string(index));
}

host::SheetPtr EmbeddedSheets::Item(std::string_view name) {
  return ItemOf(book_->model().IdOf(name), "\"" + std::string(name) + "\"");
}

host::WorksheetPtr EmbeddedSheets::Add(const host::SheetPtr& after) {
  // A sheet's name is its identity among the sheets of its workbook.
  std::optional<int> sheet = after ? book_->model().IdOf(after->Name()) : std::nullopt;
  if (!sheet) Refuse("Add method of Sheets class failed: there is no sheet to put it behind.");
  const int added = book_->AddSheet(*sheet);
  book_.application->active_workbook = book_.workbook;
  return MakeWorksheet(book_, added);
}

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

// Red and blue change places: files write them the other way round.
std::uint32_t Swapped(std::uint32_t color) {
  return (color & 0xFF) << 16 | (color & 0xFF00) | (color >> 16 & 0xFF);
}

host::Palette EmbeddedWorkbook::Colors() {
  const Palette& palette = book_->model().styles.palette;
  host::Palette colors;
  for (std::uint32_t color : palette) colors.push_back(static_cast<int>(Swapped(color)));
  return colors;
}

void EmbeddedWorkbook::SetColors(const host::Palette& colors) {
  Palette palette;
  if (colors.size() != palette.size()) {
    Refuse("Unable to set the Colors property of the Workbook class: a palette has " +
           std::to_string(palette.size()) + " colors.");
  }
  for (std::size_t i = 0; i < palette.size(); ++i) {
    palette[i] = Swapped(static_cast<std::uint32_t>(colors[i]));
  }
  book_->SetPalette(palette);
}

host::WindowPtr EmbeddedWorkbook::NewWindow() {
  book_->windows().Open();
  book_.application->active_workbook = book_.workbook;
  return MakeWindows(book_).front();
}

}  // namespace

host::WorkbookPtr MakeWorkbook(BookHandle book) {
  return std::make_shared<EmbeddedWorkbook>(std::move(book));
}

host::SheetPtr MakeSheet(BookHandle book, int sheet) {
  if (book->sheet(sheet).is_worksheet) return MakeWorksheet(std::move(book), sheet);
  return std::make_shared<EmbeddedSheet>(std::move(book), sheet);
}

host::SheetsPtr MakeSheets(BookHandle book) {
  return std::make_shared<EmbeddedSheets>(std::move(book));
}

}  // namespace vantora::embedded
