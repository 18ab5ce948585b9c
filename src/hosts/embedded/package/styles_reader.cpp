#include "package/styles_reader.h"

#include <charconv>
#include <string_view>

#include "package/column_width.h"
#include "package/fill_colors.h"
#include "package/format_reader.h"
#include "package/xml_tree.h"

namespace vantora::embedded {
namespace {

pugi::xml_node NthChild(pugi::xml_node node, std::string_view name, unsigned index) {
  pugi::xml_node found;
  unsigned next = 0;
  ForEachChild(node, name, [&](pugi::xml_node child) {
    if (next++ == index) found = child;
  });
  return found;
}

// Of the font of the style "Normal", whatever its name in the user's language.
int DefaultDigitWidth(pugi::xml_node sheet) {
  unsigned format = 0;
  ForEachChild(Child(sheet, "cellStyles"), "cellStyle", [&](pugi::xml_node style) {
    pugi::xml_attribute builtin = style.attribute("builtinId");
    if (builtin && builtin.as_int() == 0) format = style.attribute("xfId").as_uint();
  });
  pugi::xml_node xf = NthChild(Child(sheet, "cellStyleXfs"), "xf", format);
  pugi::xml_node font = NthChild(Child(sheet, "fonts"), "font", xf.attribute("fontId").as_uint());
  std::string_view name = Child(font, "name").attribute("val").value();
  std::string_view size = Child(font, "sz").attribute("val").value();
  double points = kUsualFontSize;
  std::from_chars(size.data(), size.data() + size.size(), points);
  return MaxDigitWidth(name.empty() ? kUsualFont : name, points);
}

}  // namespace

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
  styles.max_digit_width = DefaultDigitWidth(style_sheet);
  return styles;
}

}  // namespace vantora::embedded
