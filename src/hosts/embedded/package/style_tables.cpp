#include "package/style_tables.h"

#include <algorithm>
#include <array>
#include <sstream>

#include "core/convert.h"
#include "package/sheet_reader.h"

namespace vantora::embedded {
namespace {

// Elements of a font that are there or not.
constexpr std::array<std::string_view, 7> kSwitches = {"b",      "i",       "strike", "condense",
                                                       "extend", "outline", "shadow"};

bool IsSwitch(std::string_view name) {
  return std::find(kSwitches.begin(), kSwitches.end(), name) != kSwitches.end();
}

bool IsBorderPart(pugi::xml_node element) {
  return LocalNameOf(element.parent()) == "border" && !element.first_child() &&
         !element.first_attribute();
}

// "" for an attribute that says what its absence says.
std::string CanonicalAttribute(pugi::xml_attribute attribute) {
  std::string_view name = attribute.name();
  std::string_view value = attribute.value();
  if ((name == "pivotButton" || name == "quotePrefix" || name == "wrapText" ||
       name == "diagonalUp" || name == "diagonalDown") &&
      !IsTrue(value)) {
    return "";
  }
  std::string text(name);
  text += '=';
  std::optional<double> number = TextToNumber(value);
  // A format code or a font's name is a text even where it reads as a number.
  if (number && name != "formatCode" && name != "rgb") {
    text += NumberToText(*number);
  } else {
    text += value == "true" ? "1" : value == "false" ? "0" : value;
  }
  return text + '\x01';
}

template <typename Pieces>
std::string Sorted(Pieces pieces, bool sort = true) {
  if (sort) std::sort(pieces.begin(), pieces.end());
  std::string text;
  for (const std::string& piece : pieces) text += piece;
  return text;
}

}  // namespace

std::string CanonicalText(pugi::xml_node element) {
  const std::string_view name = LocalNameOf(element);
  if (IsSwitch(name)) {
    pugi::xml_attribute value = element.attribute("val");
    return value && !IsTrue(value.value()) ? "" : "<" + std::string(name) + ">";
  }
  if (IsBorderPart(element)) return "";
  std::vector<std::string> attributes;
  for (pugi::xml_attribute attribute : element.attributes()) {
    attributes.push_back(CanonicalAttribute(attribute));
  }
  std::vector<std::string> children;
  ForEachChild(element, "",
               [&](pugi::xml_node child) { children.push_back(CanonicalText(child)); });
  std::string text = "<" + std::string(name) + ' ' + Sorted(std::move(attributes)) + '>';
  return text + Sorted(std::move(children), name == "font" || name == "border") + "</>";
}

void SetPrefix(pugi::xml_node element, std::string_view prefix) {
  element.set_name((std::string(prefix) + std::string(LocalNameOf(element))).c_str());
  ForEachChild(element, "", [&](pugi::xml_node child) { SetPrefix(child, prefix); });
}

StyleTable::StyleTable(pugi::xml_node style_sheet, std::string prefix, std::string_view name,
                       std::string_view entry)
    : style_sheet_(style_sheet), prefix_(std::move(prefix)), name_(name), entry_name_(entry) {
  ForEachChild(Child(style_sheet, name), entry,
               [&](pugi::xml_node node) { entries_.push_back(node); });
  original_size_ = entries_.size();
}

pugi::xml_node StyleTable::operator[](std::size_t index) const {
  if (entries_.empty()) return {};
  return entries_[index < entries_.size() ? index : 0];
}

std::optional<std::size_t> StyleTable::Find(pugi::xml_node entry) {
  for (; indexed_ < entries_.size(); ++indexed_) {
    places_.emplace(CanonicalText(entries_[indexed_]), indexed_);
  }
  auto found = places_.find(CanonicalText(entry));
  if (found == places_.end()) return std::nullopt;
  return found->second;
}

std::size_t StyleTable::Add(pugi::xml_node entry) {
  pugi::xml_node table = Child(style_sheet_, name_);
  if (!table) table = style_sheet_.append_child((prefix_ + std::string(name_)).c_str());
  entries_.push_back(table.append_copy(entry));
  return entries_.size() - 1;
}

std::size_t StyleTable::FindOrAdd(pugi::xml_node entry) {
  std::optional<std::size_t> found = Find(entry);
  return found ? *found : Add(entry);
}

std::string StyleTable::AddedMarkup() const {
  std::ostringstream markup;
  for (std::size_t i = original_size_; i < entries_.size(); ++i) {
    entries_[i].print(markup, "", pugi::format_raw | pugi::format_no_declaration);
  }
  return markup.str();
}

}  // namespace vantora::embedded
