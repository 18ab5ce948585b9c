#include "package/fill_colors.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace vantora::embedded {
namespace {

constexpr std::uint32_t kWhite = 0xFFFFFF;
constexpr std::uint32_t kBlack = 0x000000;
constexpr int kNoFill = -4142;
constexpr int kSystemForeground = 64;
constexpr int kSystemBackground = 65;

// Dark and light swap their places between the theme's order and that of the indices.
constexpr std::array<std::string_view, 12> kThemeOrder = {
    "lt1",     "dk1",     "lt2",     "dk2",     "accent1", "accent2",
    "accent3", "accent4", "accent5", "accent6", "hlink",   "folHlink"};
// What Excel's standard theme has.
constexpr std::array<std::uint32_t, 12> kStandardTheme = {0xFFFFFF, 0x000000, 0xEEECE1, 0x1F497D,
                                                          0x4F81BD, 0xC0504D, 0x9BBB59, 0x8064A2,
                                                          0x4BACC6, 0xF79646, 0x0000FF, 0x800080};
using Theme = std::array<std::uint32_t, 12>;

Theme ReadTheme(const OpcPackage& package, std::string_view part) {
  Theme theme = kStandardTheme;
  if (part.empty() || !package.Has(part)) return theme;
  pugi::xml_document document = ParseTree(package, part);
  pugi::xml_node scheme = Child(Child(Child(document, "theme"), "themeElements"), "clrScheme");
  for (std::size_t i = 0; i < kThemeOrder.size(); ++i) {
    pugi::xml_node entry = Child(scheme, kThemeOrder[i]);
    auto rgb = ParseRgb(Child(entry, "srgbClr").attribute("val").value());
    if (!rgb) rgb = ParseRgb(Child(entry, "sysClr").attribute("lastClr").value());
    if (rgb) theme[i] = *rgb;
  }
  return theme;
}

struct Hls {
  double hue = 0;  // of a turn
  double lightness = 0;
  double saturation = 0;
};

Hls ToHls(std::uint32_t rgb) {
  double red = (rgb >> 16 & 255) / 255.0;
  double green = (rgb >> 8 & 255) / 255.0;
  double blue = (rgb & 255) / 255.0;
  double high = std::max({red, green, blue});
  double low = std::min({red, green, blue});
  double range = high - low;
  Hls hls;
  hls.lightness = (high + low) / 2;
  if (range == 0) return hls;
  hls.saturation = hls.lightness <= 0.5 ? range / (high + low) : range / (2 - high - low);
  if (high == red) {
    hls.hue = (green - blue) / range / 6;
  } else if (high == green) {
    hls.hue = (2 + (blue - red) / range) / 6;
  } else {
    hls.hue = (4 + (red - green) / range) / 6;
  }
  hls.hue -= std::floor(hls.hue);
  return hls;
}

std::uint32_t ToRgb(const Hls& hls) {
  double most = hls.lightness <= 0.5 ? hls.lightness * (1 + hls.saturation)
                                     : hls.lightness + hls.saturation * (1 - hls.lightness);
  double least = 2 * hls.lightness - most;
  auto channel = [&](double hue) {
    hue -= std::floor(hue);
    double level = hue < 1.0 / 6   ? least + (most - least) * 6 * hue
                   : hue < 0.5     ? most
                   : hue < 2.0 / 3 ? least + (most - least) * 6 * (2.0 / 3 - hue)
                                   : least;
    return static_cast<std::uint32_t>(std::lround(std::clamp(level, 0.0, 1.0) * 255));
  };
  return channel(hls.hue + 1.0 / 3) << 16 | channel(hls.hue) << 8 | channel(hls.hue - 1.0 / 3);
}

// `tint` from -1 (black) over 0 (as it is) to 1 (white) moves the lightness.
std::uint32_t Tinted(std::uint32_t rgb, double tint) {
  if (tint == 0 || std::isnan(tint)) return rgb;
  tint = std::clamp(tint, -1.0, 1.0);
  Hls hls = ToHls(rgb);
  hls.lightness = tint < 0 ? hls.lightness * (1 + tint) : hls.lightness * (1 - tint) + tint;
  return ToRgb(hls);
}

double ParseTint(std::string_view text) {
  double tint = 0;
  std::from_chars(text.data(), text.data() + text.size(), tint);
  return tint;
}

}  // namespace

// "RRGGBB" or "AARRGGBB".
std::optional<std::uint32_t> ParseRgb(std::string_view text) {
  if (text.size() == 8) text.remove_prefix(2);
  std::uint32_t rgb = 0;
  auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), rgb, 16);
  if (text.size() != 6 || error != std::errc() || end != text.data() + 6) return std::nullopt;
  return rgb;
}

FillColors::FillColors(const OpcPackage& package, std::string_view theme_part)
    : theme_(ReadTheme(package, theme_part)) {}

int FillColors::IndexOf(pugi::xml_node fill, const Palette& palette) const {
  if (pugi::xml_node gradient = Child(fill, "gradientFill")) {
    return ColorIndex(Child(Child(gradient, "stop"), "color"), kWhite, palette);
  }
  pugi::xml_node pattern = Child(fill, "patternFill");
  std::string_view type = pattern.attribute("patternType").value();
  if (type.empty() || type == "none") return kNoFill;
  if (type == "solid") return ColorIndex(Child(pattern, "fgColor"), kBlack, palette);
  // A pattern is drawn over a fill, white as long as none is chosen.
  return ColorIndex(Child(pattern, "bgColor"), kWhite, palette);
}

// Palette index of a colour element; `automatic` stands for the system's colour.
int FillColors::ColorIndex(pugi::xml_node color, std::uint32_t automatic,
                           const Palette& palette) const {
  if (pugi::xml_attribute indexed = color.attribute("indexed")) {
    int index = indexed.as_int(kSystemForeground);
    if (index >= 0 && index < kPaletteStart) return index + 1;
    if (index >= 0 && index < kSystemForeground) return index - kPaletteStart + 1;
    if (index == kSystemBackground) return NearestPaletteIndex(palette, kWhite);
  } else if (pugi::xml_attribute theme = color.attribute("theme")) {
    std::size_t index = theme.as_uint();
    double tint = ParseTint(color.attribute("tint").value());
    if (index < theme_.size()) return NearestPaletteIndex(palette, Tinted(theme_[index], tint));
  } else if (auto rgb = ParseRgb(color.attribute("rgb").value())) {
    return NearestPaletteIndex(palette, Tinted(*rgb, ParseTint(color.attribute("tint").value())));
  }
  return NearestPaletteIndex(palette, automatic);
}

}  // namespace vantora::embedded
