#include "cells/styles.h"

namespace vantora::embedded {

const Palette& DefaultPalette() {
  static const Palette palette = {
      0x000000, 0xFFFFFF, 0xFF0000, 0x00FF00, 0x0000FF, 0xFFFF00, 0xFF00FF, 0x00FFFF,
      0x800000, 0x008000, 0x000080, 0x808000, 0x800080, 0x008080, 0xC0C0C0, 0x808080,
      0x9999FF, 0x993366, 0xFFFFCC, 0xCCFFFF, 0x660066, 0xFF8080, 0x0066CC, 0xCCCCFF,
      0x000080, 0xFF00FF, 0xFFFF00, 0x00FFFF, 0x800080, 0x800000, 0x008080, 0x0000FF,
      0x00CCFF, 0xCCFFFF, 0xCCFFCC, 0xFFFF99, 0x99CCFF, 0xFF99CC, 0xCC99FF, 0xFFCC99,
      0x3366FF, 0x33CCCC, 0x99CC00, 0xFFCC00, 0xFF9900, 0xFF6600, 0x666699, 0x969696,
      0x003366, 0x339966, 0x003300, 0x333300, 0x993300, 0x993366, 0x333399, 0x333333};
  return palette;
}

int NearestPaletteIndex(const Palette& palette, std::uint32_t rgb) {
  auto channel = [](std::uint32_t color, int shift) {
    return static_cast<int>((color >> shift) & 0xFF);
  };
  int nearest = 1;
  int least = 3 * 256 * 256;
  for (std::size_t index = 0; index < palette.size(); ++index) {
    int distance = 0;
    for (int shift : {0, 8, 16}) {
      int difference = channel(palette[index], shift) - channel(rgb, shift);
      distance += difference * difference;
    }
    if (distance < least) {
      least = distance;
      nearest = static_cast<int>(index) + 1;
    }
  }
  return nearest;
}

}  // namespace vantora::embedded
