// The columns of an open workbook's sheets: hiding them, and their widths.
#include <algorithm>

#include "host/column_formats.h"
#include "host/open_workbook.h"
#include "package/column_width.h"
#include "package/sheet_reader.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {
namespace {

constexpr double kWidestColumn = 255;

// A sheet's protection that lets its user format columns says so.
bool LetsFormatColumns(const SheetMarkup& markup) {
  const MarkupElement* protection = markup.Find("sheetProtection");
  if (!protection) return false;
  XmlScanner xml(protection->text);
  while (xml.Next() != XmlScanner::Token::kStart) {
  }
  auto locked = xml.Attribute("formatColumns");
  return locked && !IsTrue(*locked);
}

}  // namespace

double OpenWorkbook::DefaultWidth(int sheet_id) {
  return DefaultColumnWidth(file_->markup(sheet_id), model().styles.max_digit_width);
}

const ColumnSizes& OpenWorkbook::Columns(int sheet_id) {
  auto known = column_sizes_.find(sheet_id);
  if (known == column_sizes_.end() || !known->second.IsOf(sheet(sheet_id))) {
    ColumnSizes sizes(sheet(sheet_id), DefaultWidth(sheet_id), model().styles.max_digit_width);
    known = column_sizes_.insert_or_assign(sheet_id, std::move(sizes)).first;
  }
  return known->second;
}

bool OpenWorkbook::ColumnsHidden(int sheet_id, int first, int last) {
  const SheetModel& target = sheet(sheet_id);
  for (int column = first; column <= last; ++column) {
    if (!IsColumnHidden(target, column)) return false;
  }
  return true;
}

void OpenWorkbook::RefuseFormattingColumns(int sheet_id, const char* property) {
  if (!sheet(sheet_id).is_protected || LetsFormatColumns(file_->markup(sheet_id))) return;
  Refuse("Unable to set the " + std::string(property) +
         " property of the Range class: the sheet \"" + sheet(sheet_id).name + "\" is protected.");
}

void OpenWorkbook::SetColumnsHidden(int sheet_id, int first, int last, bool hidden) {
  RefuseFormattingColumns(sheet_id, "Hidden");
  embedded::SetColumnsHidden(sheet(sheet_id), first, last, hidden, DefaultWidth(sheet_id));
}

double OpenWorkbook::ColumnWidth(int sheet_id, int column) {
  const int digit = model().styles.max_digit_width;
  const SheetModel& target = sheet(sheet_id);
  if (IsColumnHidden(target, column)) return 0;
  double width = WidthOfColumn(target, column, DefaultWidth(sheet_id));
  return CharactersOfPixels(PixelsOfWidth(width, digit), digit);
}

void OpenWorkbook::SetColumnsWidth(int sheet_id, int first, int last, double characters) {
  RefuseFormattingColumns(sheet_id, "ColumnWidth");
  if (!(characters >= 0 && characters <= kWidestColumn)) {
    Refuse(
        "Unable to set the ColumnWidth property of the Range class: a column is 0 to 255 "
        "characters wide.");
  }
  const int digit = model().styles.max_digit_width;
  double width = WidthOfPixels(PixelsOfCharacters(characters, digit), digit);
  embedded::SetColumnsWidth(sheet(sheet_id), first, last, width, DefaultWidth(sheet_id));
}

}  // namespace vantora::embedded
