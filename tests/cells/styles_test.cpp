#include "cells/styles.h"

#include <gtest/gtest.h>

namespace vantora::embedded {
namespace {

TEST(PaletteTest, FindsTheNearestColour) {
  const Palette& palette = DefaultPalette();
  const std::pair<std::uint32_t, int> cases[] = {
      {0x000000, 1}, {0xFFFFFF, 2},  {0xC0C0C0, 15}, {0x333333, 56}, {0x010101, 1},
      {0xFEFEFE, 2}, {0xBFC1C0, 15}, {0x0000FF, 5},  // stands twice: the first counts
  };
  for (auto [rgb, index] : cases) EXPECT_EQ(NearestPaletteIndex(palette, rgb), index) << rgb;
}

TEST(StylesTest, AnUnknownFormatIsTheDefaultOne) {
  Styles styles;
  styles.formats.emplace_back().fill_color_index = 15;
  EXPECT_EQ(styles[1].fill_color_index, 15);
  EXPECT_EQ(styles[9].fill_color_index, -4142);
}

}  // namespace
}  // namespace vantora::embedded
