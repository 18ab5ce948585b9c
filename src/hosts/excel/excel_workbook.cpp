#include "hosts/excel/excel_workbook.h"

#include "hosts/excel/excel_range.h"
#include "hosts/excel/excel_worksheet.h"

namespace vantora::excel {

namespace {

class ExcelName : public host::Name {
 public:
  explicit ExcelName(Object object) : object_(std::move(object)) {}

  host::RangePtr RefersToRange() override {
    return std::make_shared<ExcelRange>(object_.Child(Member::kNameRefersToRange));
  }

 private:
  Object object_;
};

class ExcelNames : public host::Names {
 public:
  explicit ExcelNames(Object object) : object_(std::move(object)) {}

  host::NamePtr Item(std::string_view name) override {
    return std::make_shared<ExcelName>(object_.Child(Member::kNamesItem, {name}));
  }

 private:
  Object object_;
};

}  // namespace

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

}  // namespace vantora::excel
