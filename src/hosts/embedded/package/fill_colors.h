// The colours of fills, as the palette index that the host's members know.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "cells/styles.h"
#include "package/opc_package.h"
#include "package/xml_tree.h"

namespace vantora::embedded {

// Indexed colours: the first eight repeat the palette's first eight, which follow them.
inline constexpr int kPaletteStart = 8;

// "RRGGBB" or "AARRGGBB"; nullopt for anything else.
std::optional<std::uint32_t> ParseRgb(std::string_view text);

class FillColors {
 public:
  // Reads the theme's colours; `theme_part` may be "". Throws FileError.
  FillColors(const OpcPackage& package, std::string_view theme_part);

  // Of a <fill>: the palette's colour nearest to its own, -4142 for none.
  int IndexOf(pugi::xml_node fill, const Palette& palette) const;

 private:
  int ColorIndex(pugi::xml_node color, std::uint32_t automatic, const Palette& palette) const;

  std::array<std::uint32_t, 12> theme_;
};

}  // namespace vantora::embedded
