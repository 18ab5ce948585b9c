#include "host/form_controls.h"

#include "core/convert.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {
namespace {

using Token = XmlScanner::Token;

// The linked cell that a control's properties part states.
std::string LinkInProperties(const std::string& properties) {
  XmlScanner scanner(properties);
  while (scanner.Next() != Token::kDone) {
    if (scanner.token() == Token::kStart && scanner.local_name() == "formControlPr") {
      return DecodeXml(scanner.Attribute("fmlaLink").value_or(""));
    }
  }
  return "";
}

// The relationship of the control's properties part; nullopt when the sheet lists no such control.
std::optional<std::string> ControlRelationship(const SheetMarkup& markup, std::string_view name) {
  for (const MarkupElement& element : markup.elements) {
    if (element.name != "controls" && element.name != "AlternateContent") continue;
    XmlScanner scanner(element.text);
    while (scanner.Next() != Token::kDone) {
      if (scanner.token() != Token::kStart || scanner.local_name() != "control") continue;
      if (!EqualsIgnoreCase(DecodeXml(scanner.Attribute("name").value_or("")), name)) continue;
      for (const XmlAttribute& attribute : scanner.attributes()) {
        if (LocalName(attribute.name) == "id") return DecodeXml(attribute.value);
      }
    }
  }
  return std::nullopt;
}

std::optional<std::string> LinkInLegacyDrawing(const std::string& drawing, std::string_view name) {
  XmlScanner scanner(drawing, XmlScanner::Mode::kLenient);
  bool is_shape = false;
  bool is_control = false;
  while (scanner.Next() != Token::kDone) {
    if (scanner.token() != Token::kStart) continue;
    if (scanner.local_name() == "shape") {
      if (is_control) return "";
      is_shape =
          EqualsIgnoreCase(DecodeSpreadsheetText(scanner.Attribute("id").value_or("")), name);
    } else if (is_shape && scanner.local_name() == "ClientData") {
      is_control = scanner.Attribute("ObjectType").value_or("Note") != "Note";
    } else if (is_control && scanner.local_name() == "FmlaLink" && !scanner.is_empty()) {
      return scanner.ElementText();
    }
  }
  if (is_control) return "";
  return std::nullopt;
}

}  // namespace

std::optional<std::string> LinkedCellOf(const OpcPackage& package, const SheetMarkup& markup,
                                        std::string_view sheet_part, std::string_view name) {
  const std::optional<std::string> control = ControlRelationship(markup, name);
  std::string part;
  try {
    // Where both descriptions exist, Excel goes by the properties part.
    for (const Relationship& relationship : package.RelationshipsOf(sheet_part)) {
      part = relationship.target;
      if (control && relationship.id == *control && relationship.IsType("ctrlProp") &&
          package.Has(part)) {
        return LinkInProperties(package.Read(part));
      }
    }
    for (const Relationship& relationship : package.RelationshipsOf(sheet_part)) {
      part = relationship.target;
      if (relationship.external || !relationship.IsType("vmlDrawing") || !package.Has(part))
        continue;
      if (auto link = LinkInLegacyDrawing(package.Read(part), name)) return link;
    }
  } catch (const XmlError& error) {
    ThrowDamaged(part, error);
  }
  return std::nullopt;
}

}  // namespace vantora::embedded
