#include "package/format_reader.h"

#include "package/sheet_reader.h"

namespace vantora::embedded {
namespace {

constexpr unsigned kTextNumberFormat = 49;

}  // namespace

FormatReader::FormatReader(const FillColors& colors, const Palette& palette,
                           pugi::xml_node style_sheet)
    : colors_(&colors), palette_(&palette), text_formats_{kTextNumberFormat} {
  ForEachChild(Child(style_sheet, "fills"), "fill", [&](pugi::xml_node fill) { AddFill(fill); });
  ForEachChild(Child(style_sheet, "numFmts"), "numFmt",
               [&](pugi::xml_node format) { AddNumberFormat(format); });
}

void FormatReader::AddFill(pugi::xml_node fill) {
  fills_.push_back(colors_->IndexOf(fill, *palette_));
}

void FormatReader::AddNumberFormat(pugi::xml_node format) {
  unsigned id = format.attribute("numFmtId").as_uint();
  if (std::string_view(format.attribute("formatCode").value()) == "@") {
    text_formats_.insert(id);
  } else {
    text_formats_.erase(id);
  }
}

CellFormat FormatReader::Read(pugi::xml_node xf) const {
  CellFormat format;
  std::size_t fill = xf.attribute("fillId").as_uint();
  if (fill < fills_.size()) format.fill_color_index = fills_[fill];
  format.text_format = text_formats_.contains(xf.attribute("numFmtId").as_uint());
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
