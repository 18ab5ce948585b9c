#include "sheet_stream.h"

#include <charconv>

namespace vantora::bench {
namespace {

constexpr std::string_view kStart =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
    "<worksheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\" "
    "xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\">";

void Append(std::string& text, double number) {
  char buffer[32];
  text.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr);
}

}  // namespace

std::string Letters(int column) {
  std::string letters;
  for (; column > 0; column = (column - 1) / 26) {
    letters.insert(letters.begin(), static_cast<char>('A' + (column - 1) % 26));
  }
  return letters;
}

std::string Place(int column, int row) { return Letters(column) + std::to_string(row); }

SheetStream::SheetStream(ZipStream& zip, const std::string& part, std::string_view head)
    : zip_(zip) {
  zip_.Begin(part);
  text_.append(kStart).append(head).append("<sheetData>");
}

void SheetStream::BeginRow(int row) {
  row_ = row;
  text_ += "<row r=\"" + std::to_string(row) + "\" spans=\"1:30\">";
}

void SheetStream::EndRow() {
  text_ += "</row>";
  if (text_.size() < (1 << 16)) return;
  zip_.Write(text_);
  text_.clear();
}

void SheetStream::Start(int column, int style) {
  ++counts_.cells;
  text_ += "<c r=\"" + Place(column, row_) + '"';
  if (style) text_ += " s=\"" + std::to_string(style) + '"';
}

void SheetStream::Value(double value) {
  text_ += "<v>";
  Append(text_, value);
  text_ += "</v></c>";
}

void SheetStream::Blank(int column, int style) {
  Start(column, style);
  text_ += "/>";
}

void SheetStream::Number(int column, double value, int style) {
  Start(column, style);
  text_ += '>';
  Value(value);
}

void SheetStream::Text(int column, int shared_string, int style) {
  Start(column, style);
  text_ += " t=\"s\">";
  Value(shared_string);
}

void SheetStream::Formula(int column, std::string_view formula, double value, int style) {
  Start(column, style);
  ++counts_.formulas;
  text_.append("><f>").append(formula).append("</f>");
  Value(value);
}

void SheetStream::Master(int column, int last_column, std::string_view formula, double value,
                         int style) {
  Start(column, style);
  ++counts_.formulas;
  text_ += "><f t=\"shared\" ref=\"" + Place(column, row_) + ':' + Place(last_column, row_) +
           "\" si=\"" + std::to_string(shared_formulas_++) + "\">";
  text_.append(formula).append("</f>");
  Value(value);
}

void SheetStream::Follow(int column, double value, int style) {
  Start(column, style);
  ++counts_.formulas;
  text_ += "><f t=\"shared\" si=\"" + std::to_string(shared_formulas_ - 1) + "\"/>";
  Value(value);
}

ModelCounts SheetStream::End(std::string_view tail) {
  text_.append("</sheetData>").append(tail).append("</worksheet>");
  zip_.Write(text_);
  return counts_;
}

}  // namespace vantora::bench
