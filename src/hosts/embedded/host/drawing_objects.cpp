// Shapes and charts on a sheet of an open workbook.
#include "host/form_controls.h"
#include "host/objects.h"
#include "host/shapes.h"

namespace vantora::embedded {

namespace {

class EmbeddedShape : public host::Shape {
 public:
  EmbeddedShape(BookHandle book, int sheet, std::string name)
      : book_(std::move(book)), sheet_(sheet), name_(std::move(name)) {}

  std::string LinkedCell() override {
    WorkbookFile& file = book_->file();
    file.FollowInsertions(sheet_);
    auto link = LinkedCellOf(file.package(), file.markup(sheet_), file.part_of(sheet_), name_);
    if (!link) Refuse("The shape \"" + name_ + "\" is no form control.");
    return *std::move(link);
  }

 private:
  BookHandle book_;
  int sheet_;
  std::string name_;
};

}  // namespace

host::ShapePtr MakeShape(BookHandle book, int sheet, std::string_view name) {
  std::optional<std::string> found = ShapeOnSheet(book->file(), sheet, name);
  if (!found) {
    Refuse("The item with the specified name wasn't found: the sheet \"" + book->sheet(sheet).name +
           "\" has no shape or control \"" + std::string(name) + "\".");
  }
  return std::make_shared<EmbeddedShape>(std::move(book), sheet, *std::move(found));
}

std::vector<host::ChartObjectPtr> MakeChartObjects(BookHandle, int) {
  RefuseMember("Worksheet.ChartObjects");
}

}  // namespace vantora::embedded
