#include "package/table_headers.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "core/convert.h"
#include "formula/lexical.h"
#include "package/sheet_reader.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {
namespace {

struct TableColumn {
  std::string_view raw_name;
  std::string name;
};

// What a header cell shows; "" for an empty one.
std::string HeaderText(const Cell& cell, const StringPool& strings) {
  switch (cell.value.kind) {
    case CellKind::kText:
      return strings[cell.value.text];
    case CellKind::kNumber:
      return NumberToText(cell.value.number);
    case CellKind::kBoolean:
      return cell.value.boolean ? "TRUE" : "FALSE";
    case CellKind::kError:
      return std::string(NameOfError(cell.value.error));
    default:
      return "";
  }
}

// A header cell that the file lacks in a column of its own is none of our doing, and stays.
bool IsEdited(const Cell& cell, CellAddress header, const SheetModel& sheet) {
  if (cell.exists()) return (cell.flags & (kValueChanged | kFormulaChanged)) != 0;
  return sheet.cells.OriginOf(header.column) == CellStore::kNewColumn;
}

// Column names write a line break as the _xHHHH_ escape.
std::string EncodeColumnName(std::string_view name) {
  std::string encoded;
  for (char c : name) {
    if (c == '\n') {
      encoded += "_x000a_";
    } else {
      encoded += c;
    }
  }
  return EncodeXmlAttribute(encoded);
}

bool IsTaken(const std::vector<TableColumn>& columns, std::size_t own, std::string_view name) {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (i != own && EqualsIgnoreCase(columns[i].name, name)) return true;
  }
  return false;
}

std::string Unique(const std::vector<TableColumn>& columns, std::size_t own,
                   const std::string& name) {
  std::string unique = name;
  for (int number = 2; IsTaken(columns, own, unique); ++number) {
    unique = name + std::to_string(number);
  }
  return unique;
}

int ReadCount(std::string_view text, int when_absent) {
  if (text.empty()) return when_absent;
  return text == "0" ? 0 : 1;
}

}  // namespace

std::optional<Table> ReadTable(std::string_view text, int sheet) {
  Table table;
  table.sheet = sheet;
  std::optional<Area> area;
  XmlScanner scanner(text);
  while (scanner.Next() != XmlScanner::Token::kDone) {
    if (scanner.token() != XmlScanner::Token::kStart) continue;
    if (scanner.local_name() == "table") {
      table.name = DecodeXml(scanner.Attribute("displayName").value_or(""));
      area = ParseA1(scanner.Attribute("ref").value_or(""));
      table.header_rows = ReadCount(scanner.Attribute("headerRowCount").value_or(""), 1);
      table.total_rows = ReadCount(scanner.Attribute("totalsRowCount").value_or(""), 0);
    } else if (scanner.local_name() == "tableColumn") {
      table.columns.push_back(DecodeSpreadsheetText(scanner.Attribute("name").value_or("")));
    }
  }
  if (!area || area->columns() != static_cast<int>(table.columns.size())) return std::nullopt;
  table.area = *area;
  return table;
}

std::optional<std::string> MatchTableHeaders(std::string_view text, SheetModel& sheet,
                                             StringPool& strings, TableHeaderEdits& edits) {
  std::optional<Area> area;
  std::vector<TableColumn> columns;
  XmlScanner scanner(text);
  while (scanner.Next() != XmlScanner::Token::kDone) {
    if (scanner.token() != XmlScanner::Token::kStart) continue;
    if (scanner.local_name() == "table") {
      area = ParseA1(scanner.Attribute("ref").value_or(""));
      if (scanner.Attribute("headerRowCount").value_or("1") == "0") return std::nullopt;
    } else if (scanner.local_name() == "tableColumn") {
      std::string_view name = scanner.Attribute("name").value_or("");
      columns.push_back({name, DecodeSpreadsheetText(name)});
    }
  }
  if (!area || area->columns() != static_cast<int>(columns.size())) return std::nullopt;
  TextPatch patch(text);
  for (std::size_t i = 0; i < columns.size(); ++i) {
    CellAddress header{area->first_row, area->first_column + static_cast<int>(i)};
    Cell cell = sheet.cells.Get(header);
    if (!IsEdited(cell, header, sheet)) continue;
    std::string shown = HeaderText(cell, strings);
    std::string name = Unique(columns, i, shown.empty() ? columns[i].name : shown);
    if (name != columns[i].name) {
      columns[i].name = name;
      patch.Replace(columns[i].raw_name, EncodeColumnName(name));
    }
    if (cell.value.kind == CellKind::kText && shown == name && cell.formula == 0) continue;
    if (!cell.exists()) sheet.cells.SetStyle(header, sheet.StyleOf(header));
    sheet.cells.SetConstant(header, CellValue::Text(strings.Intern(name)));
    edits.written.push_back(header);
  }
  if (patch.empty()) return std::nullopt;
  return patch.Apply();
}

std::optional<std::string> RenameInTablePart(std::string_view text, bool is_own,
                                             const ColumnRenames& renames) {
  TextPatch patch(text);
  XmlScanner scanner(text);
  while (scanner.Next() != XmlScanner::Token::kDone) {
    if (scanner.token() != XmlScanner::Token::kStart || scanner.is_empty()) continue;
    const std::string_view name = scanner.local_name();
    if (name != "calculatedColumnFormula" && name != "totalsRowFormula") continue;
    const std::string_view raw = scanner.SkipElement();
    const RenamedFormula renamed = WithRenamedColumns(DecodeXml(raw), is_own, renames);
    if (renamed.changed) patch.Replace(raw, EncodeXmlText(renamed.text));
  }
  if (patch.empty()) return std::nullopt;
  return patch.Apply();
}

}  // namespace vantora::embedded
