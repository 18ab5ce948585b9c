#include "host/shapes.h"

#include <algorithm>

#include "core/convert.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {
namespace {

// A drawing names each of its objects in one element, whatever kind of object it is.
void AddDrawingNames(std::string_view drawing, std::vector<std::string>& names) {
  XmlScanner scanner(drawing);
  while (scanner.Next() != XmlScanner::Token::kDone) {
    if (scanner.token() == XmlScanner::Token::kStart && scanner.local_name() == "cNvPr") {
      names.push_back(DecodeXml(scanner.Attribute("name").value_or("")));
    }
  }
}

// Form controls of workbooks whose controls stand in the legacy drawing alone; later ones have them
// in both drawings.
void AddLegacyNames(std::string_view drawing, std::vector<std::string>& names) {
  XmlScanner scanner(drawing, XmlScanner::Mode::kLenient);
  std::string shape;
  while (scanner.Next() != XmlScanner::Token::kDone) {
    if (scanner.token() != XmlScanner::Token::kStart) continue;
    if (scanner.local_name() == "shape") {
      shape = DecodeSpreadsheetText(scanner.Attribute("id").value_or(""));
    } else if (scanner.local_name() == "ClientData" &&
               scanner.Attribute("ObjectType").value_or("Note") != "Note" &&
               std::ranges::find(names, shape) == names.end()) {
      names.push_back(shape);
    }
  }
}

// Form controls as the sheet itself lists them.
void AddControlNames(const SheetMarkup& markup, std::vector<std::string>& names) {
  for (const MarkupElement& element : markup.elements) {
    if (element.name != "controls" && element.name != "AlternateContent") continue;
    XmlScanner scanner(element.text);
    while (scanner.Next() != XmlScanner::Token::kDone) {
      if (scanner.token() == XmlScanner::Token::kStart && scanner.local_name() == "control") {
        names.push_back(DecodeXml(scanner.Attribute("name").value_or("")));
      }
    }
  }
}

}  // namespace

std::vector<std::string> ShapeNames(const OpcPackage& package, std::string_view sheet_part) {
  std::vector<std::string> names;
  std::vector<std::string> legacy_names;
  for (const Relationship& relationship : package.RelationshipsOf(sheet_part)) {
    if (relationship.external || !package.Has(relationship.target)) continue;
    try {
      if (relationship.IsType("drawing")) {
        AddDrawingNames(package.Read(relationship.target), names);
      } else if (relationship.IsType("vmlDrawing")) {
        AddLegacyNames(package.Read(relationship.target), legacy_names);
      }
    } catch (const XmlError& error) {
      ThrowDamaged(relationship.target, error);
    }
  }
  // A form control that the drawing has stands in the legacy drawing as well.
  for (std::string& name : legacy_names) {
    if (std::ranges::find(names, name) == names.end()) names.push_back(std::move(name));
  }
  return names;
}

std::optional<std::string> ShapeOnSheet(WorkbookFile& file, int sheet, std::string_view name) {
  std::vector<std::string> names = ShapeNames(file.package(), file.part_of(sheet));
  AddControlNames(file.markup(sheet), names);
  for (std::string& candidate : names) {
    if (EqualsIgnoreCase(candidate, name)) return std::move(candidate);
  }
  return std::nullopt;
}

}  // namespace vantora::embedded
