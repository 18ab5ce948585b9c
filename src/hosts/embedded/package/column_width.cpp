#include "package/column_width.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

#include "core/convert.h"
#include "package/xml_scanner.h"
#include "package/xml_tree.h"

namespace vantora::embedded {
namespace {

// How wide a digit is, in ems. The pixels follow by rounding, where the screen's rendering of a
// font makes no exception.
struct DigitWidth {
  std::string_view font;
  double ems;
};
constexpr DigitWidth kDigitWidths[] = {
    {"Arial", 0.556},     {"Aptos Narrow", 0.488},  {"Calibri", 0.507},         {"Cambria", 0.554},
    {"Courier New", 0.6}, {"Helvetica", 0.556},     {"Liberation Sans", 0.556}, {"Segoe UI", 0.539},
    {"Tahoma", 0.546},    {"Times New Roman", 0.5}, {"Verdana", 0.636},
};
// A font that the table does not have is taken for as wide as Arial.
constexpr double kUnknownFont = 0.556;
// Drawn narrower than rounding says.
constexpr std::string_view kNarrowed = "Calibri";
constexpr int kNarrowedHeight = 15;
constexpr int kNarrowedWidth = 7;

constexpr std::string_view kUsualFont = "Calibri";
constexpr double kUsualFontSize = 11;
constexpr int kUsualCharacters = 8;
// Standard widths are whole multiples, which makes sheets scroll fast.
constexpr int kStandardStep = 8;

// The number that an attribute holds; `otherwise` where it holds none.
double NumberOr(std::string_view text, double otherwise) {
  double number = 0;
  auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() ? number : otherwise;
}

int DigitPixels(std::string_view font, double points) {
  const int height = static_cast<int>(std::lround(points / kPointsPerPixel));
  if (EqualsIgnoreCase(font, kNarrowed) && height == kNarrowedHeight) return kNarrowedWidth;
  double ems = kUnknownFont;
  for (const DigitWidth& known : kDigitWidths) {
    if (EqualsIgnoreCase(font, known.font)) ems = known.ems;
  }
  return std::max(1, static_cast<int>(std::lround(height * ems)));
}

// Margins on both sides and the grid line.
int Padding(int max_digit_width) { return 2 * ((max_digit_width + 3) / 4) + 1; }

pugi::xml_node NthChild(pugi::xml_node node, std::string_view name, unsigned index) {
  pugi::xml_node found;
  unsigned next = 0;
  ForEachChild(node, name, [&](pugi::xml_node child) {
    if (next++ == index) found = child;
  });
  return found;
}

}  // namespace

int MaxDigitWidth(pugi::xml_node style_sheet) {
  unsigned format = 0;
  ForEachChild(Child(style_sheet, "cellStyles"), "cellStyle", [&](pugi::xml_node style) {
    pugi::xml_attribute builtin = style.attribute("builtinId");
    if (builtin && builtin.as_int() == 0) format = style.attribute("xfId").as_uint();
  });
  pugi::xml_node xf = NthChild(Child(style_sheet, "cellStyleXfs"), "xf", format);
  pugi::xml_node font =
      NthChild(Child(style_sheet, "fonts"), "font", xf.attribute("fontId").as_uint());
  std::string_view name = Child(font, "name").attribute("val").value();
  double size = NumberOr(Child(font, "sz").attribute("val").value(), kUsualFontSize);
  return DigitPixels(name.empty() ? kUsualFont : name, size);
}

int PixelsOfWidth(double width, int max_digit_width) {
  return static_cast<int>((256 * width + 128 / max_digit_width) / 256 * max_digit_width);
}

double WidthOfPixels(int pixels, int max_digit_width) {
  return std::floor(pixels * 256.0 / max_digit_width) / 256;
}

int PixelsOfCharacters(double characters, int max_digit_width) {
  const int padding = Padding(max_digit_width);
  // Less than a character takes its part of the margins only.
  double pixels = characters < 1 ? characters * (max_digit_width + padding)
                                 : characters * max_digit_width + padding;
  return static_cast<int>(std::floor(pixels + 0.5));
}

double CharactersOfPixels(int pixels, int max_digit_width) {
  const int padding = Padding(max_digit_width);
  double characters = pixels < max_digit_width + padding
                          ? pixels / static_cast<double>(max_digit_width + padding)
                          : (pixels - padding) / static_cast<double>(max_digit_width);
  return std::floor(characters * 100 + 0.5) / 100;
}

double DefaultColumnWidth(const SheetMarkup& markup, int max_digit_width) {
  double characters = kUsualCharacters;
  if (const MarkupElement* format = markup.Find("sheetFormatPr")) {
    XmlScanner xml(format->text);
    while (xml.Next() != XmlScanner::Token::kStart) {
    }
    if (auto width = xml.Attribute("defaultColWidth")) {
      if (double number = NumberOr(*width, 0); number > 0) return number;
    }
    characters = NumberOr(xml.Attribute("baseColWidth").value_or(""), characters);
  }
  int pixels = static_cast<int>(characters * max_digit_width) + Padding(max_digit_width);
  pixels = (pixels + kStandardStep - 1) / kStandardStep * kStandardStep;
  return WidthOfPixels(pixels, max_digit_width);
}

}  // namespace vantora::embedded
