#include "host/sheet_selection.h"

#include "package/area_list.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {

std::vector<Area> SelectionInMarkup(const SheetMarkup& markup) {
  const MarkupElement* views = markup.Find("sheetViews");
  if (!views) return {Area{}};
  XmlScanner scanner(views->text);
  std::string_view active_pane = "topLeft";
  while (scanner.Next() != XmlScanner::Token::kDone) {
    if (scanner.token() != XmlScanner::Token::kStart) continue;
    if (scanner.local_name() == "pane") {
      active_pane = scanner.Attribute("activePane").value_or("topLeft");
    } else if (scanner.local_name() == "selection" &&
               scanner.Attribute("pane").value_or("topLeft") == active_pane) {
      std::vector<Area> areas = ParseAreas(scanner.Attribute("sqref").value_or("A1"));
      if (areas.empty()) areas.emplace_back();
      return areas;
    }
  }
  return {Area{}};
}

}  // namespace vantora::embedded
