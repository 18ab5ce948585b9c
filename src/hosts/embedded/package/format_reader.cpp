#include "package/format_reader.h"

#include "formula/number_format.h"
#include "package/sheet_reader.h"

namespace vantora::embedded {
namespace {

TextAlignment AlignmentOf(std::string_view horizontal) {
  if (horizontal == "right") return TextAlignment::kRight;
  if (horizontal == "center" || horizontal == "centerContinuous") return TextAlignment::kCenter;
  if (horizontal == "fill") return TextAlignment::kFill;
  return horizontal == "left" ? TextAlignment::kLeft : TextAlignment::kGeneral;
}

}  // namespace

FormatReader::FormatReader(const FillColors& colors, const Palette& palette,
                           pugi::xml_node style_sheet)
    : colors_(&colors), palette_(&palette) {
  ForEachChild(Child(style_sheet, "fills"), "fill", [&](pugi::xml_node fill) { AddFill(fill); });
  ForEachChild(Child(style_sheet, "numFmts"), "numFmt",
               [&](pugi::xml_node format) { AddNumberFormat(format); });
}

void FormatReader::AddFill(pugi::xml_node fill) {
  fills_.push_back(colors_->IndexOf(fill, *palette_));
}

void FormatReader::AddNumberFormat(pugi::xml_node format) {
  number_formats_[format.attribute("numFmtId").as_uint()] = format.attribute("formatCode").value();
}

CellFormat FormatReader::Read(pugi::xml_node xf) const {
  CellFormat format;
  std::size_t fill = xf.attribute("fillId").as_uint();
  if (fill < fills_.size()) format.fill_color_index = fills_[fill];
  const unsigned number_format = xf.attribute("numFmtId").as_uint();
  const auto own = number_formats_.find(number_format);
  format.number_format =
      own != number_formats_.end() ? own->second : BuiltInNumberFormat(number_format);
  format.text_format = format.number_format == "@";
  if (format.number_format == "General") format.number_format.clear();
  format.alignment = AlignmentOf(Child(xf, "alignment").attribute("horizontal").value());
  pugi::xml_attribute locked = Child(xf, "protection").attribute("locked");
  format.locked = !locked || IsTrue(locked.value());
  return format;
}

Palette ReadPalette(pugi::xml_node style_sheet) {
  Palette palette = DefaultPalette();
  std::size_t index = 0;
  ForEachChild(Child(Child(style_sheet, "colors"), "indexedColors"), "rgbColor",
               [&](pugi::xml_node color) {
                 auto rgb = ParseRgb(color.attribute("rgb").value());
                 if (rgb && index >= kPaletteStart && index - kPaletteStart < palette.size()) {
                   palette[index - kPaletteStart] = *rgb;
                 }
                 ++index;
               });
  return palette;
}

}  // namespace vantora::embedded
