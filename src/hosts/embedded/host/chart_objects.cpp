// Charts on a sheet of an open workbook.
#include <algorithm>

#include "host/change_recorder.h"
#include "host/objects.h"
#include "host/row_edits.h"
#include "package/column_width.h"
#include "package/sheet_charts.h"

namespace vantora::embedded {
namespace {

// A series takes its name from a few cells at most.
constexpr std::int64_t kMostCellsOfText = 100;

double ToPoints(std::int64_t units) { return static_cast<double>(units) / kDrawingUnitsPerPoint; }

double TopOfRow(const SheetModel& sheet, int row) {
  const double standard = RowHeight(sheet, sheet.rows.standard());
  double top = standard * (row - 1);
  for (const RowTable::Entry& entry : sheet.rows.entries()) {
    if (entry.row >= row) break;
    top += RowHeight(sheet, entry.format) - standard;
  }
  return top;
}

class EmbeddedChartObject : public host::ChartObject {
 public:
  EmbeddedChartObject(BookHandle book, int sheet, SheetChart chart)
      : book_(std::move(book)), sheet_(sheet), chart_(std::move(chart)) {}

  double Left() override {
    return chart_.anchor.from ? LeftOf(*chart_.anchor.from) : ToPoints(chart_.anchor.left);
  }
  double Top() override {
    return chart_.anchor.from ? TopOf(*chart_.anchor.from) : ToPoints(chart_.anchor.top);
  }
  double Width() override {
    return chart_.anchor.to ? LeftOf(*chart_.anchor.to) - Left() : ToPoints(chart_.anchor.width);
  }
  std::string TitleCaption() override;

 private:
  // A place never reaches beyond its cell, which may have become smaller.
  double LeftOf(const AnchorPlace& place) {
    const ColumnSizes& columns = book_->Columns(sheet_);
    const double width = columns.Width(place.column) * kPointsPerPixel;
    return static_cast<double>(columns.Left(place.column)) * kPointsPerPixel +
           std::min(ToPoints(place.column_offset), width);
  }
  double TopOf(const AnchorPlace& place) {
    const SheetModel& sheet = book_->sheet(sheet_);
    return TopOfRow(sheet, place.row) +
           std::min(ToPoints(place.row_offset), RowHeight(sheet, sheet.rows.Of(place.row)));
  }
  // What the cells hold now, joined; nullopt when they can't be told or read.
  std::optional<std::string> TextOfCells(const std::string& formula);

  BookHandle book_;
  int sheet_;
  SheetChart chart_;
};

std::string EmbeddedChartObject::TitleCaption() {
  WorkbookFile& file = book_->file();
  file.FollowInSharedParts();
  std::optional<ChartText> title = ReadChartTitle(file.package(), chart_.part);
  if (!title) Refuse("Unable to get the ChartTitle property of the Chart class: it has no title.");
  if (title->formula.empty()) return title->text;
  return TextOfCells(title->formula).value_or(title->text);
}

std::optional<std::string> EmbeddedChartObject::TextOfCells(const std::string& formula) {
  auto place = book_->PlaceOf(DefinedName{"", sheet_, formula});
  if (!place || std::int64_t{place->area.rows()} * place->area.columns() > kMostCellsOfText) {
    return std::nullopt;
  }
  std::string text;
  const Area& area = place->area;
  for (int row = area.first_row; row <= area.last_row; ++row) {
    for (int column = area.first_column; column <= area.last_column; ++column) {
      try {
        book_->Read(place->sheet, {row, column});
        std::string part = DisplayValue(book_->sheet(place->sheet).cells.Get({row, column}).value,
                                        book_->model().strings);
        if (!text.empty() && !part.empty()) text += ' ';
        text += part;
      } catch (const HostError&) {
        // Out of date and beyond calculation: the text of the last save is nearer to the truth than
        // no title.
        return std::nullopt;
      }
    }
  }
  return text;
}

}  // namespace

std::vector<host::ChartObjectPtr> MakeChartObjects(BookHandle book, int sheet) {
  book->file().FollowInsertions(sheet);
  std::vector<host::ChartObjectPtr> objects;
  for (SheetChart& chart : ReadSheetCharts(book->file().package(), book->file().part_of(sheet))) {
    objects.push_back(std::make_shared<EmbeddedChartObject>(book, sheet, std::move(chart)));
  }
  return objects;
}

}  // namespace vantora::embedded
