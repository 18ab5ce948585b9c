// Adding a worksheet to a package: its part, and what must be said of it elsewhere. The list of
// sheets in the workbook's part follows when the workbook is saved.
#include <algorithm>

#include "package/sheet_reader.h"
#include "package/workbook_file.h"
#include "package/workbook_reader.h"

namespace vantora::embedded {
namespace {

constexpr std::string_view kWorksheetType =
    "application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml";

// The namespaces that a workbook's parts are written in.
struct Namespaces {
  std::string_view spreadsheet;
  std::string_view relationships;
};
constexpr Namespaces kTransitional = {
    "http://schemas.openxmlformats.org/spreadsheetml/2006/main",
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships"};
constexpr Namespaces kStrict = {"http://purl.oclc.org/ooxml/spreadsheetml/main",
                                "http://purl.oclc.org/ooxml/officeDocument/relationships"};

std::string EmptyWorksheet(const Namespaces& namespaces) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n<worksheet xmlns=\"" +
         std::string(namespaces.spreadsheet) + "\" xmlns:r=\"" +
         std::string(namespaces.relationships) +
         "\"><dimension ref=\"A1\"/><sheetViews><sheetView workbookViewId=\"0\"/></sheetViews>"
         "<sheetFormatPr defaultRowHeight=\"15\"/><sheetData/><pageMargins left=\"0.7\" "
         "right=\"0.7\" top=\"0.75\" bottom=\"0.75\" header=\"0.3\" footer=\"0.3\"/></worksheet>";
}

}  // namespace

int WorkbookFile::AddSheet(const std::string& name, int position) {
  const bool is_strict = std::any_of(sheets_.begin(), sheets_.end(), [](const SheetPart& sheet) {
    return sheet.markup.start.find(kStrict.spreadsheet) != std::string::npos;
  });
  const Namespaces& namespaces = is_strict ? kStrict : kTransitional;
  const std::string text = EmptyWorksheet(namespaces);
  std::string part = package_->FreePartName("xl/worksheets/sheet", ".xml");
  package_->Write(part, text);
  package_->SetContentType(part, kWorksheetType);
  parts_->sheet_relationships.push_back(package_->AddRelationship(
      parts_->workbook, std::string(namespaces.relationships) + "/worksheet", part));
  parts_->sheets.push_back(part);

  SheetModel& sheet = model_.AddSheet(name);
  model_.tab_order.pop_back();
  model_.tab_order.insert(model_.tab_order.begin() + position, sheet.id);
  SheetPart& added = sheets_.emplace_back();
  added.part = std::move(part);
  // What was inserted before concerns no reference of a sheet that did not exist.
  added.insertions_followed = insertions_.size();
  SheetRoom room;
  ReadSheet(text, model_, sheet, added.markup, room);
  added.loaded_area = sheet.cells.UsedArea();
  return sheet.id;
}

}  // namespace vantora::embedded
