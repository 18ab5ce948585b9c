#include "host/pivot_areas.h"

#include "package/xml_scanner.h"

namespace vantora::embedded {

std::vector<Area> PivotAreas(const OpcPackage& package, std::string_view sheet_part) {
  std::vector<Area> areas;
  for (const Relationship& relationship : package.RelationshipsOf(sheet_part)) {
    if (!relationship.IsType("pivotTable") || relationship.external) continue;
    std::string text = package.Read(relationship.target);
    XmlScanner scanner(text);
    while (scanner.Next() != XmlScanner::Token::kDone) {
      if (scanner.token() != XmlScanner::Token::kStart || scanner.local_name() != "location")
        continue;
      if (auto area = ParseA1(scanner.Attribute("ref").value_or(""))) areas.push_back(*area);
      break;
    }
  }
  return areas;
}

}  // namespace vantora::embedded
