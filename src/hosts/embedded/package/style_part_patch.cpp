#include "package/style_part_patch.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <vector>

#include "core/convert.h"
#include "package/fill_colors.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {
namespace {

using Token = XmlScanner::Token;

// The children of <styleSheet> in the schema's order.
constexpr std::array<std::string_view, 11> kOrder = {
    "numFmts",    "fonts", "fills",       "borders", "cellStyleXfs", "cellXfs",
    "cellStyles", "dxfs",  "tableStyles", "colors",  "extLst"};

// An element as it stands in the text.
struct Place {
  std::string_view name;
  std::string_view local_name;
  std::size_t begin = 0;
  std::size_t tag_end = 0;
  std::size_t content_end = 0;
  std::size_t end = 0;
  bool is_empty = false;
  // Data is null when there is none.
  std::string_view count;
};

struct Layout {
  // With its colon.
  std::string prefix;
  std::vector<Place> children;
  std::optional<Place> indexed_colors;
  // Where the root's end tag begins.
  std::size_t content_end = 0;

  const Place* Find(std::string_view local_name) const {
    for (const Place& child : children) {
      if (child.local_name == local_name) return &child;
    }
    return nullptr;
  }
};

Place PlaceAt(const XmlScanner& xml) {
  Place place;
  place.name = xml.name();
  place.local_name = xml.local_name();
  place.begin = xml.begin();
  place.tag_end = place.content_end = place.end = xml.end();
  place.is_empty = xml.is_empty();
  if (auto count = xml.Attribute("count")) place.count = *count;
  return place;
}

Layout ReadLayout(std::string_view text) {
  Layout layout;
  XmlScanner xml(text);
  while (xml.Next() != Token::kDone) {
    if (xml.token() == Token::kStart) {
      if (xml.depth() == 0) {
        layout.prefix = xml.name().substr(0, xml.name().size() - xml.local_name().size());
      } else if (xml.depth() == 1) {
        layout.children.push_back(PlaceAt(xml));
      } else if (xml.depth() == 2 && xml.local_name() == "indexedColors") {
        Place place = PlaceAt(xml);
        xml.SkipElement();
        place.end = xml.end();
        layout.indexed_colors = place;
      }
    } else if (xml.token() == Token::kEnd) {
      if (xml.depth() == 0) layout.content_end = xml.begin();
      if (xml.depth() == 1) {
        layout.children.back().content_end = xml.begin();
        layout.children.back().end = xml.end();
      }
    }
  }
  return layout;
}

// Where a child that is missing belongs.
std::size_t PlaceFor(const Layout& layout, std::string_view local_name) {
  const auto order = std::find(kOrder.begin(), kOrder.end(), local_name);
  for (const Place& child : layout.children) {
    if (std::find(order, kOrder.end(), child.local_name) != kOrder.end()) return child.begin;
  }
  return layout.content_end;
}

std::string Element(std::string_view name, std::string_view attributes, std::string_view content) {
  std::string text = "<" + std::string(name) + std::string(attributes) + ">";
  text += content;
  return text + "</" + std::string(name) + ">";
}

void AppendEntries(TextPatch& patch, std::string_view text, const Layout& layout,
                   const StyleTable& table) {
  const std::string count = std::to_string(table.size());
  const Place* place = layout.Find(table.name());
  if (place == nullptr) {
    patch.Insert(PlaceFor(layout, table.name()),
                 Element(layout.prefix + std::string(table.name()), " count=\"" + count + "\"",
                         table.AddedMarkup()));
    return;
  }
  if (place->count.data() != nullptr) patch.Replace(place->count, count);
  if (!place->is_empty) {
    patch.Insert(place->content_end, table.AddedMarkup());
    return;
  }
  const std::size_t slash = text.rfind('/', place->tag_end - 1);
  patch.Replace(slash, place->tag_end,
                ">" + table.AddedMarkup() + "</" + std::string(place->name) + ">");
}

// The palette's first eight colours stand before it once more.
std::string IndexedColors(const std::string& prefix, const Palette& palette) {
  std::string content;
  const auto add = [&](std::size_t index) {
    content += "<" + prefix + "rgbColor rgb=\"00" + ZeroPaddedHex(palette[index], 6) + "\"/>";
  };
  for (std::size_t index = 0; index < kPaletteStart; ++index) add(index);
  for (std::size_t index = 0; index < palette.size(); ++index) add(index);
  return Element(prefix + "indexedColors", "", content);
}

void ReplacePalette(TextPatch& patch, const Layout& layout, const Palette& palette) {
  const std::string markup = IndexedColors(layout.prefix, palette);
  if (layout.indexed_colors) {
    patch.Replace(layout.indexed_colors->begin, layout.indexed_colors->end, markup);
    return;
  }
  const Place* colors = layout.Find("colors");
  if (colors != nullptr && !colors->is_empty) {
    patch.Insert(colors->tag_end, markup);
    return;
  }
  const std::string element = Element(layout.prefix + "colors", "", markup);
  if (colors != nullptr) {
    patch.Replace(colors->begin, colors->end, element);
  } else {
    patch.Insert(PlaceFor(layout, "colors"), element);
  }
}

}  // namespace

std::string PatchStylesPart(std::string_view text, std::initializer_list<const StyleTable*> tables,
                            const Palette* palette) {
  const Layout layout = ReadLayout(text);
  TextPatch patch(text);
  for (const StyleTable* table : tables) {
    if (table->changed()) AppendEntries(patch, text, layout, *table);
  }
  if (palette != nullptr) ReplacePalette(patch, layout, *palette);
  return patch.Apply();
}

}  // namespace vantora::embedded
