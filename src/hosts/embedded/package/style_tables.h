// The tables of a styles part as a tree: entries are found by what they say, and added behind the
// others.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "package/xml_tree.h"

namespace vantora::embedded {

// One table: <fonts> with its <font> elements, for example.
class StyleTable {
 public:
  // `name` and `entry` are local names; `style_sheet` is the tree's root, which may lack the table.
  StyleTable(pugi::xml_node style_sheet, std::string prefix, std::string_view name,
             std::string_view entry);

  std::size_t size() const { return entries_.size(); }
  // The first entry for one that does not exist; an empty node in an empty table.
  pugi::xml_node operator[](std::size_t index) const;
  // The place of the entry that says the same as `entry`; nullopt when there is none.
  std::optional<std::size_t> Find(pugi::xml_node entry);
  // Adds a copy of it.
  std::size_t Add(pugi::xml_node entry);
  std::size_t FindOrAdd(pugi::xml_node entry);

  std::string_view name() const { return name_; }
  std::string_view entry_name() const { return entry_name_; }
  // The number of entries that the part has.
  std::size_t original_size() const { return original_size_; }
  bool changed() const { return entries_.size() > original_size_; }
  // The markup of the entries that were added.
  std::string AddedMarkup() const;

 private:
  pugi::xml_node style_sheet_;
  std::string prefix_;
  std::string_view name_;
  std::string_view entry_name_;
  std::vector<pugi::xml_node> entries_;
  std::size_t original_size_;
  // The first `indexed_` entries by CanonicalText.
  std::unordered_map<std::string, std::size_t> places_;
  std::size_t indexed_ = 0;
};

// A text that is the same for elements of the styles part that say the same: whatever their
// prefixes, the order of attributes, defaults that are written out, and in fonts and borders the
// order of the children.
std::string CanonicalText(pugi::xml_node element);

// Gives the names of the spreadsheet's elements in a tree another prefix (with its colon).
void SetPrefix(pugi::xml_node element, std::string_view prefix);

}  // namespace vantora::embedded
