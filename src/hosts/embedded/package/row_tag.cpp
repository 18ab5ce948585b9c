#include "package/row_tag.h"

#include <algorithm>
#include <charconv>

#include "package/sheet_reader.h"

namespace vantora::embedded {
namespace {

template <typename Number>
std::optional<Number> NumberIn(std::string_view text) {
  Number number{};
  auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (text.empty() || error != std::errc()) return std::nullopt;
  return number;
}

template <typename Number>
std::string TextOf(Number number) {
  char buffer[32];
  auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, number);
  return std::string(buffer, end);
}

// The attributes that a row of that format and style has, in the order that Excel writes them; an
// empty value for one that it does not have.
struct Attribute {
  std::string_view name;
  std::string_view RowTag::*old;
  std::string value;
};

std::vector<Attribute> StyleAttributes(const std::optional<StyleId>& style) {
  return {{"s", &RowTag::style, style ? TextOf(*style) : ""},
          {"customFormat", &RowTag::custom_format, style ? "1" : ""}};
}

std::vector<Attribute> FormatAttributes(const RowFormat& format) {
  auto flag = [](bool on) { return std::string(on ? "1" : ""); };
  return {{"ht", &RowTag::height, format.height ? TextOf(*format.height) : ""},
          {"hidden", &RowTag::hidden, flag(format.hidden)},
          {"customHeight", &RowTag::custom_height, flag(format.custom_height)},
          {"outlineLevel", &RowTag::outline_level,
           format.outline_level ? TextOf(static_cast<int>(format.outline_level)) : ""},
          {"collapsed", &RowTag::collapsed, flag(format.collapsed)}};
}

// `was` holds the attributes that the tag's meaning comes to, in the same order: where it agrees,
// the tag stays as it is written.
void PatchAttributes(const RowTag& tag, std::size_t body_end, const std::vector<Attribute>& was,
                     const std::vector<Attribute>& now, ElementPatch& patch) {
  std::string added;
  for (std::size_t i = 0; i < now.size(); ++i) {
    if (was[i].value == now[i].value) continue;
    std::string_view old = tag.*now[i].old;
    if (!old.data()) {
      added += " " + std::string(now[i].name) + "=\"" + now[i].value + "\"";
    } else if (now[i].value.empty()) {
      patch.RemoveAttribute(old);
    } else {
      patch.Replace(old, now[i].value);
    }
  }
  if (!added.empty()) patch.Replace(body_end, body_end, added);
}

void AppendAttributes(std::string& out, const std::vector<Attribute>& attributes) {
  for (const Attribute& attribute : attributes) {
    if (attribute.value.empty()) continue;
    out += " " + std::string(attribute.name) + "=\"" + attribute.value + "\"";
  }
}

}  // namespace

std::optional<StyleId> RowTag::Style() const {
  if (!IsTrue(custom_format)) return std::nullopt;
  return NumberIn<StyleId>(style).value_or(0);
}

RowFormat RowTag::Format() const {
  RowFormat format;
  format.height = NumberIn<double>(height);
  format.custom_height = IsTrue(custom_height);
  format.hidden = IsTrue(hidden);
  format.collapsed = IsTrue(collapsed);
  format.outline_level = static_cast<std::uint8_t>(
      std::clamp(NumberIn<int>(outline_level).value_or(0), 0, kMaxOutlineLevel));
  return format;
}

RowTag ReadRowTag(const XmlScanner& xml) {
  static constexpr std::pair<std::string_view, std::string_view RowTag::*> kAttributes[] = {
      {"r", &RowTag::number},
      {"spans", &RowTag::spans},
      {"s", &RowTag::style},
      {"customFormat", &RowTag::custom_format},
      {"ht", &RowTag::height},
      {"hidden", &RowTag::hidden},
      {"customHeight", &RowTag::custom_height},
      {"outlineLevel", &RowTag::outline_level},
      {"collapsed", &RowTag::collapsed},
  };
  RowTag tag;
  for (const XmlAttribute& attribute : xml.attributes()) {
    for (const auto& [name, member] : kAttributes) {
      if (attribute.name == name) tag.*member = attribute.value;
    }
  }
  return tag;
}

void PatchRowTag(const RowTag& tag, std::size_t body_end, const RowFormat& format,
                 const std::optional<StyleId>& style, ElementPatch& patch) {
  if (const std::optional<StyleId> was = tag.Style(); was != style) {
    PatchAttributes(tag, body_end, StyleAttributes(was), StyleAttributes(style), patch);
  }
  if (const RowFormat was = tag.Format(); was != format) {
    PatchAttributes(tag, body_end, FormatAttributes(was), FormatAttributes(format), patch);
  }
}

void AppendRowAttributes(std::string& out, const RowFormat& format,
                         const std::optional<StyleId>& style) {
  AppendAttributes(out, StyleAttributes(style));
  AppendAttributes(out, FormatAttributes(format));
}

}  // namespace vantora::embedded
