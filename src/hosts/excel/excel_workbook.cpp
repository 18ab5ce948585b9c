#include "hosts/excel/excel_workbook.h"

#include <optional>
#include <utility>

#include "hosts/excel/call_error.h"
#include "hosts/excel/excel_names.h"
#include "hosts/excel/excel_window.h"
#include "hosts/excel/excel_worksheet.h"

namespace vantora::excel {

namespace {

// A sheet that is not a worksheet.
class ExcelChartSheet : public host::Sheet {
 public:
  explicit ExcelChartSheet(Object object) : object_(std::move(object)) {}

  const Object& object() const { return object_; }

  std::string Name() override { return object_.GetText(Member::kChartName); }
  void Activate() override { object_.Call(Member::kChartActivate); }
  void Select() override { object_.Call(Member::kChartSelect); }

 private:
  Object object_;
};

class ExcelSheets : public host::Sheets {
 public:
  explicit ExcelSheets(Object object) : object_(std::move(object)) {}

  int Count() override { return object_.GetInt(Member::kSheetsCount); }
  host::SheetPtr Item(int index) override { return Made(Member::kSheetsItem, index); }
  host::SheetPtr Item(std::string_view name) override { return Made(Member::kSheetsItem, name); }
  host::WorksheetPtr Add(const host::SheetPtr& after) override {
    return std::make_shared<ExcelWorksheet>(
        object_.Child(Member::kSheetsAdd, {}, {{L"After", DispatchOf(*after)}}));
  }

 private:
  host::SheetPtr Made(Member member, Variant index) {
    std::optional<Object> sheet = object_.FindChild(member, {std::move(index)});
    if (!sheet) throw NothingError(FullNameOf(member));
    return MakeSheet(*std::move(sheet));
  }

  static IDispatch* DispatchOf(host::Sheet& sheet) {
    if (auto* worksheet = dynamic_cast<ExcelWorksheet*>(&sheet)) {
      return worksheet->object().dispatch();
    }
    return dynamic_cast<ExcelChartSheet&>(sheet).object().dispatch();
  }

  Object object_;
};

}  // namespace

// Worksheets have a used range, chart sheets have not.
host::SheetPtr MakeSheet(Object sheet) {
  if (sheet.Has(L"UsedRange")) return std::make_shared<ExcelWorksheet>(std::move(sheet));
  return std::make_shared<ExcelChartSheet>(std::move(sheet));
}

std::string ExcelWorkbook::Name() { return object_.GetText(Member::kWorkbookName); }

host::NamesPtr ExcelWorkbook::Names() {
  return std::make_shared<ExcelNames>(object_.Child(Member::kWorkbookNames));
}

std::vector<host::WorksheetPtr> ExcelWorkbook::Worksheets() {
  std::vector<host::WorksheetPtr> worksheets;
  for (Object& worksheet : object_.Items(Member::kWorkbookWorksheets)) {
    worksheets.push_back(std::make_shared<ExcelWorksheet>(std::move(worksheet)));
  }
  return worksheets;
}

host::SheetsPtr ExcelWorkbook::Sheets() {
  return std::make_shared<ExcelSheets>(object_.Child(Member::kWorkbookSheets));
}

void ExcelWorkbook::Save() { object_.Call(Member::kWorkbookSave); }

void ExcelWorkbook::SaveAs(std::string_view filename, host::XlFileFormat format) {
  object_.Call(Member::kWorkbookSaveAs, {},
               {{L"Filename", filename}, {L"FileFormat", static_cast<int>(format)}});
}

host::Palette ExcelWorkbook::Colors() {
  std::optional<std::vector<int>> colors = object_.Get(Member::kWorkbookColors).ToInts();
  if (!colors) throw WrongTypeError(FullNameOf(Member::kWorkbookColors), "a list of colours");
  return *std::move(colors);
}

void ExcelWorkbook::SetColors(const host::Palette& colors) {
  object_.Put(Member::kWorkbookColors, Variant::ListOf(colors));
}

std::vector<host::WindowPtr> ExcelWorkbook::Windows() {
  std::vector<host::WindowPtr> windows;
  for (Object& window : object_.Items(Member::kWorkbookWindows)) {
    windows.push_back(std::make_shared<ExcelWindow>(std::move(window)));
  }
  return windows;
}

host::WindowPtr ExcelWorkbook::NewWindow() {
  return std::make_shared<ExcelWindow>(object_.Child(Member::kWorkbookNewWindow));
}

}  // namespace vantora::excel
