// One cell of a sheet's part as it stands, and the changes to it.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "package/xml_scanner.h"

namespace vantora::embedded {

// The places of a cell's element that the writer may change. Views into the part.
struct OriginalCell {
  std::size_t begin = 0;
  std::size_t end = 0;
  std::size_t tag_end = 0;
  std::string_view name;
  bool is_empty = false;
  // Data of absent attributes is null.
  std::string_view place, style, type;
  std::string_view cell_metadata, value_metadata;

  struct Child {
    std::size_t begin = 0;
    std::size_t end = 0;
    bool exists() const { return end > begin; }
  };
  Child formula, value, inline_text;
  // Of <f>: its start tag's end and attributes, and what stands between its tags.
  std::size_t formula_tag_end = 0;
  std::string_view formula_text;
  std::string_view formula_type, formula_area, formula_group;
  std::string_view formula_input_1, formula_input_2;

  bool has_formula() const { return formula.exists(); }
};

// Reads the cell whose start tag the scanner stands at, and moves past it.
void ReadOriginalCell(XmlScanner& xml, OriginalCell& cell);

// Changes to pieces of one element, in any order; applied while it is written.
class ElementPatch {
 public:
  void Reset(std::string_view document) {
    document_ = document;
    edits_.clear();
  }
  bool empty() const { return edits_.empty(); }
  void Replace(std::size_t begin, std::size_t end, std::string replacement) {
    edits_.push_back({begin, end, std::move(replacement)});
  }
  void Replace(std::string_view piece, std::string replacement) {
    Replace(Offset(piece), Offset(piece) + piece.size(), std::move(replacement));
  }
  // Removes the attribute with its name and the blanks before it.
  void RemoveAttribute(std::string_view value);
  // Appends the element that stands at [begin, end) to `out`.
  void AppendTo(std::string& out, std::size_t begin, std::size_t end);

 private:
  struct Edit {
    std::size_t begin;
    std::size_t end;
    std::string replacement;
  };
  std::size_t Offset(std::string_view piece) const {
    return static_cast<std::size_t>(piece.data() - document_.data());
  }

  std::string_view document_;
  std::vector<Edit> edits_;
};

}  // namespace vantora::embedded
