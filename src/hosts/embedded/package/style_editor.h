// Cell formats of a workbook that change: the tables of its styles part (number formats, fonts,
// fills, borders, cell formats), to which entries are added and from which none is ever taken.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "cells/styles.h"
#include "package/opc_package.h"

namespace vantora::embedded {

// Palette index of the automatic colour of a font or a line.
inline constexpr int kAutomaticColor = 0;

enum class FillPattern { kNone, kSolid };
enum class LineWeight { kHairline, kThin };
enum class HorizontalAlignment { kLeft, kRight };

// A continuous line. What is absent stays; a line that comes into being is thin and automatic.
struct LineChange {
  std::optional<LineWeight> weight;
  std::optional<int> color_index;
  bool operator==(const LineChange&) const = default;
};

enum BorderSide { kLeftSide, kRightSide, kTopSide, kBottomSide };

// What is set of a cell's format; what is absent stays. Colours are palette indices (1 to 56).
struct FormatChange {
  // kColorIndexNone takes the fill away; a cell without one gets a solid one.
  std::optional<int> fill_color_index;
  std::optional<FillPattern> fill_pattern;
  std::optional<double> font_size;
  std::optional<bool> bold;
  std::optional<bool> italic;
  std::optional<int> font_color_index;
  // By BorderSide.
  std::array<std::optional<LineChange>, 4> sides;
  std::optional<HorizontalAlignment> horizontal_alignment;
  std::optional<bool> wrap_text;
};

// The styles part of a workbook that has nothing but the default format.
std::string NewStylesPart();

class StyleEditor {
 public:
  // `part` is the styles part as it is now; "" for a workbook without one, which then is as
  // NewStylesPart has it. `theme_part` may be "" too.
  // `styles` is what was read of it, and gets an entry for each format that is added. Package and
  // styles must outlive the editor. Throws FileError.
  StyleEditor(const OpcPackage& package, std::string_view part, std::string_view theme_part,
              Styles& styles);
  ~StyleEditor();

  // The style of a cell that had `style`, after the change: `style` itself when nothing differs,
  // else an equal one of the workbook, else a new one. Colours must be in range.
  StyleId Changed(StyleId style, const FormatChange& change);
  // `style` with the border of another style.
  StyleId WithBorderOf(StyleId style, StyleId border_source);
  // A style of another workbook: its number format, font, fill, border, alignment and protection, and
  // the named style that it stands on where this workbook has none of that name.
  // Colours of the palette or the theme are taken as such: they look as this workbook has them.
  StyleId Import(const StyleEditor& source, StyleId style);

  // The number of a differential format (of a conditional format) of another workbook, in this one.
  int ImportDifferential(const StyleEditor& source, int id);

  // Replaces the palette; cells with palette colours change their look.
  void SetPalette(const Palette& palette);

  // Whether Text differs from the part.
  bool changed() const;
  // The part's text with what was added; the rest stays byte for byte. Throws FileError.
  std::string Text() const;

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace vantora::embedded
