#include "package/styles_reader.h"

#include "package/fill_colors.h"
#include "package/format_reader.h"
#include "package/xml_tree.h"

namespace vantora::embedded {

Styles ReadStyles(const OpcPackage& package, std::string_view styles_part,
                  std::string_view theme_part) {
  if (styles_part.empty() || !package.Has(styles_part)) return {};
  FillColors colors(package, theme_part);
  pugi::xml_document document = ParseTree(package, styles_part);
  pugi::xml_node style_sheet = Child(document, "styleSheet");
  Styles styles;
  styles.palette = ReadPalette(style_sheet);
  FormatReader reader(colors, styles.palette, style_sheet);
  styles.formats.clear();
  ForEachChild(Child(style_sheet, "cellXfs"), "xf",
               [&](pugi::xml_node xf) { styles.formats.push_back(reader.Read(xf)); });
  if (styles.formats.empty()) styles.formats.emplace_back();
  return styles;
}

}  // namespace vantora::embedded
