// What operations and edits need to know of the workbook's cell formats.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "cells/cell_store.h"

namespace vantora::embedded {

// How a cell's text stands in it. kGeneral: texts to the left, numbers to the right.
enum class TextAlignment : std::uint8_t { kGeneral, kLeft, kCenter, kRight, kFill };

// One entry of cellXfs, as far as the host's members and formulas read it.
struct CellFormat {
  // Palette index 1 to 56 of the fill, -4142 without a fill.
  int fill_color_index = -4142;
  // The number format is text ("@"): a put text stays text.
  bool text_format = false;
  // Cells of this format can't be edited while their sheet is protected.
  bool locked = true;
  TextAlignment alignment = TextAlignment::kGeneral;
  // The code of the number format; "" for "General".
  std::string number_format;
};

// Colours as 0xRRGGBB.
using Palette = std::array<std::uint32_t, 56>;

// The palette of a workbook that defines none.
const Palette& DefaultPalette();
// 1-based index of the palette colour nearest to `rgb` (an exact match wins; of equals the first).
int NearestPaletteIndex(const Palette& palette, std::uint32_t rgb);

struct Styles {
  Palette palette = DefaultPalette();
  // Indexed by StyleId; at least one entry.
  std::vector<CellFormat> formats{CellFormat{}};
  // Pixels of the default font's widest digit: what widths of columns are counted in.
  int max_digit_width = 7;

  const CellFormat& operator[](StyleId id) const {
    return formats[id < formats.size() ? id : 0];
  }
};

}  // namespace vantora::embedded
