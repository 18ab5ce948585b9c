#include "package/cell_patch.h"

#include <algorithm>

namespace vantora::embedded {
namespace {

void ReadOriginalFormula(XmlScanner& xml, OriginalCell& cell) {
  for (const XmlAttribute& attribute : xml.attributes()) {
    if (attribute.name == "t") {
      cell.formula_type = attribute.value;
    } else if (attribute.name == "ref") {
      cell.formula_area = attribute.value;
    } else if (attribute.name == "si") {
      cell.formula_group = attribute.value;
    } else if (attribute.name == "r1") {
      cell.formula_input_1 = attribute.value;
    } else if (attribute.name == "r2") {
      cell.formula_input_2 = attribute.value;
    }
  }
  cell.formula.begin = xml.begin();
  cell.formula_tag_end = xml.end();
  cell.formula_text = xml.SkipElement();
  cell.formula.end = xml.end();
}

}  // namespace

void ReadOriginalCell(XmlScanner& xml, OriginalCell& cell) {
  cell = OriginalCell{};
  cell.begin = xml.begin();
  cell.end = cell.tag_end = xml.end();
  cell.name = xml.name();
  cell.is_empty = xml.is_empty();
  for (const XmlAttribute& attribute : xml.attributes()) {
    if (attribute.name == "r") {
      cell.place = attribute.value;
    } else if (attribute.name == "s") {
      cell.style = attribute.value;
    } else if (attribute.name == "t") {
      cell.type = attribute.value;
    } else if (attribute.name == "cm") {
      cell.cell_metadata = attribute.value;
    } else if (attribute.name == "vm") {
      cell.value_metadata = attribute.value;
    }
  }
  if (cell.is_empty) return;
  while (xml.Next() != XmlScanner::Token::kEnd) {
    if (xml.token() != XmlScanner::Token::kStart) continue;
    std::string_view name = xml.local_name();
    if (name == "f") {
      ReadOriginalFormula(xml, cell);
      continue;
    }
    OriginalCell::Child child{xml.begin(), 0};
    xml.SkipElement();
    child.end = xml.end();
    if (name == "v") cell.value = child;
    if (name == "is") cell.inline_text = child;
  }
  cell.end = xml.end();
}

void ElementPatch::RemoveAttribute(std::string_view value) {
  std::size_t quote = Offset(value) - 1;
  std::size_t begin = document_.rfind('=', quote);
  auto is_blank = [&](std::size_t at) {
    return document_[at] == ' ' || document_[at] == '\t' || document_[at] == '\n' ||
           document_[at] == '\r';
  };
  while (is_blank(begin - 1)) --begin;
  while (!is_blank(begin - 1)) --begin;
  while (is_blank(begin - 1)) --begin;
  Replace(begin, quote + value.size() + 2, "");
}

void ElementPatch::AppendTo(std::string& out, std::size_t begin, std::size_t end) {
  // What is inserted at the start of a replaced piece comes before it.
  std::stable_sort(edits_.begin(), edits_.end(), [](const Edit& a, const Edit& b) {
    return a.begin != b.begin ? a.begin < b.begin : a.end < b.end;
  });
  std::size_t at = begin;
  for (const Edit& edit : edits_) {
    out += document_.substr(at, edit.begin - at);
    out += edit.replacement;
    at = edit.end;
  }
  out += document_.substr(at, end - at);
}

}  // namespace vantora::embedded
