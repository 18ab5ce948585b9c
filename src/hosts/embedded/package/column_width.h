// Widths of columns: as files have them, in characters as users see them, and in pixels.
//
// All depend on the widest digit of the default font, in pixels at 96 dpi. A file's width counts
// such digits and includes the margins and the grid line; the width that users see does not.
#pragma once

#include <pugixml.hpp>
#include <string>

#include "package/sheet_markup.h"

namespace vantora::embedded {

// What a pixel measures at 96 dpi.
inline constexpr double kPointsPerPixel = 0.75;

// The pixels of the widest digit in the font of the style "Normal" of a <styleSheet>.
int MaxDigitWidth(pugi::xml_node style_sheet);

// Pixels of a file's width.
int PixelsOfWidth(double width, int max_digit_width);
// The file's width of so many pixels, as Excel writes it.
double WidthOfPixels(int pixels, int max_digit_width);
// Pixels of a column as wide as so many characters, and back, rounded as Excel does.
int PixelsOfCharacters(double characters, int max_digit_width);
double CharactersOfPixels(int pixels, int max_digit_width);

// The file's width of a sheet's columns that say none.
double DefaultColumnWidth(const SheetMarkup& markup, int max_digit_width);

}  // namespace vantora::embedded
