#include "package/format_edits.h"

#include <algorithm>
#include <initializer_list>
#include <span>
#include <string_view>

#include "core/convert.h"
#include "core/host.h"
#include "package/fill_colors.h"
#include "package/sheet_reader.h"

namespace vantora::embedded {
namespace {

using Order = std::initializer_list<std::string_view>;

// Indexed colours that stand for the system's.
constexpr int kSystemForeground = 64;
constexpr int kSystemBackground = 65;

const Order kFontOrder = {"b",       "i",      "strike", "condense",  "extend",
                          "outline", "shadow", "u",      "vertAlign", "sz",
                          "color",   "name",   "family", "charset",   "scheme"};
const Order kBorderOrder = {"left", "right", "top", "bottom", "diagonal", "vertical", "horizontal"};
const Order kPatternOrder = {"fgColor", "bgColor"};
const Order kFormatOrder = {"alignment", "protection", "extLst"};

std::string_view PrefixOf(pugi::xml_node node) {
  std::string_view name = node.name();
  return name.substr(0, name.size() - LocalNameOf(node).size());
}

// The child of that name; made at the place that `order` gives it when missing.
pugi::xml_node EnsureChild(pugi::xml_node parent, std::string_view name, const Order& order) {
  if (pugi::xml_node child = Child(parent, name)) return child;
  const std::string full_name = std::string(PrefixOf(parent)) + std::string(name);
  const auto place = std::find(order.begin(), order.end(), name);
  for (pugi::xml_node child : parent.children()) {
    if (std::find(place, order.end(), LocalNameOf(child)) != order.end()) {
      return parent.insert_child_before(full_name.c_str(), child);
    }
  }
  return parent.append_child(full_name.c_str());
}

void SetIndexedColor(pugi::xml_node color, int index) {
  color.remove_attributes();
  SetAttribute(color, "indexed", std::to_string(index));
}

int IndexOfPaletteColor(int color_index) { return color_index - 1 + kPaletteStart; }

std::string PatternType(pugi::xml_node pattern) {
  std::string type = pattern.attribute("patternType").value();
  return type.empty() ? "none" : type;
}

pugi::xml_node RemoveFill(pugi::xml_node fill) {
  fill.remove_children();
  pugi::xml_node pattern = fill.append_child((std::string(PrefixOf(fill)) + "patternFill").c_str());
  SetAttribute(pattern, "patternType", "none");
  return pattern;
}

void MakeSolid(pugi::xml_node pattern) {
  const std::string type = PatternType(pattern);
  if (type == "solid") return;
  SetAttribute(pattern, "patternType", "solid");
  pugi::xml_node front = EnsureChild(pattern, "fgColor", kPatternOrder);
  SetIndexedColor(front, kSystemBackground);
  if (pugi::xml_node back = Child(pattern, "bgColor"); back && type != "none") {
    // The colour that showed between the pattern's lines.
    front.remove_attributes();
    for (pugi::xml_attribute attribute : back.attributes()) front.append_copy(attribute);
  }
  SetIndexedColor(EnsureChild(pattern, "bgColor", kPatternOrder), kSystemForeground);
}

void SetSwitch(pugi::xml_node font, std::string_view name, bool on) {
  while (pugi::xml_node child = Child(font, name)) font.remove_child(child);
  if (on) EnsureChild(font, name, kFontOrder);
}

void EditLine(pugi::xml_node side, const LineChange& change) {
  const std::string_view style = side.attribute("style").value();
  const bool is_new = style.empty() || style == "none";
  if (change.weight || is_new) {
    SetAttribute(side, "style", change.weight == LineWeight::kHairline ? "hair" : "thin");
  }
  if (!change.color_index && !is_new) return;
  const int color = change.color_index.value_or(kAutomaticColor);
  SetIndexedColor(EnsureChild(side, "color", {"color"}),
                  color == kAutomaticColor ? kSystemForeground : IndexOfPaletteColor(color));
}

}  // namespace

void SetAttribute(pugi::xml_node node, const char* name, const std::string& value) {
  pugi::xml_attribute attribute = node.attribute(name);
  if (!attribute) attribute = node.append_attribute(name);
  attribute.set_value(value.c_str());
}

bool ConcernsFill(const FormatChange& change) {
  return change.fill_color_index || change.fill_pattern;
}

bool ConcernsFont(const FormatChange& change) {
  return change.font_size || change.bold || change.italic || change.font_color_index;
}

bool ConcernsBorder(const FormatChange& change) {
  return std::any_of(change.sides.begin(), change.sides.end(),
                     [](const auto& side) { return side.has_value(); });
}

bool ConcernsAlignment(const FormatChange& change) {
  return change.horizontal_alignment || change.wrap_text;
}

void EditFill(pugi::xml_node fill, const FormatChange& change) {
  pugi::xml_node pattern = Child(fill, "patternFill");
  if (change.fill_color_index == host::kColorIndexNone ||
      change.fill_pattern == FillPattern::kNone) {
    RemoveFill(fill);
    return;
  }
  if (!pattern) pattern = RemoveFill(fill);  // it was a gradient
  if (change.fill_pattern || PatternType(pattern) == "none") MakeSolid(pattern);
  if (!change.fill_color_index) return;
  const char* shown = PatternType(pattern) == "solid" ? "fgColor" : "bgColor";
  SetIndexedColor(EnsureChild(pattern, shown, kPatternOrder),
                  IndexOfPaletteColor(*change.fill_color_index));
}

void EditFont(pugi::xml_node font, const FormatChange& change) {
  if (change.bold) SetSwitch(font, "b", *change.bold);
  if (change.italic) SetSwitch(font, "i", *change.italic);
  if (change.font_size) {
    SetAttribute(EnsureChild(font, "sz", kFontOrder), "val", NumberToText(*change.font_size));
  }
  if (!change.font_color_index) return;
  pugi::xml_node color = EnsureChild(font, "color", kFontOrder);
  if (*change.font_color_index == kAutomaticColor) {
    color.remove_attributes();
    SetAttribute(color, "auto", "1");
  } else {
    SetIndexedColor(color, IndexOfPaletteColor(*change.font_color_index));
  }
}

void EditBorder(pugi::xml_node border, const FormatChange& change) {
  constexpr std::array<std::string_view, 4> kSides = {"left", "right", "top", "bottom"};
  for (std::size_t side = 0; side < kSides.size(); ++side) {
    if (!change.sides[side]) continue;
    EditLine(EnsureChild(border, kSides[side], kBorderOrder), *change.sides[side]);
  }
}

void EditAlignment(pugi::xml_node xf, const FormatChange& change) {
  pugi::xml_node alignment = EnsureChild(xf, "alignment", kFormatOrder);
  if (change.horizontal_alignment) {
    SetAttribute(alignment, "horizontal",
                 *change.horizontal_alignment == HorizontalAlignment::kLeft ? "left" : "right");
  }
  if (change.wrap_text) {
    alignment.remove_attribute("wrapText");
    if (*change.wrap_text) SetAttribute(alignment, "wrapText", "1");
  }
  if (!alignment.first_attribute()) xf.remove_child(alignment);
}

}  // namespace vantora::embedded
