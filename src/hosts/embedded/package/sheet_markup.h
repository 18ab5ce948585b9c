// What a sheet's part holds around the cells, element by element, as it came.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vantora::embedded {

struct MarkupElement {
  // Local name: "sheetViews", "mergeCells", "AlternateContent".
  std::string name;
  // The element as it stands, with the blanks before it. Empty for "sheetData", whose place in the
  // order this only keeps.
  std::string text;
};

struct SheetMarkup {
  // All up to and including the root's start tag; from the last child's end to the end.
  std::string start;
  std::string end;
  // Prefix of the spreadsheet namespace with its colon, "" as a rule.
  std::string prefix;
  // The root's children in order, "sheetData" among them.
  std::vector<MarkupElement> elements;
  // Differs from the package's part.
  bool changed = false;

  // Null when there is none.
  // (The first of several, as conditional formats are.)
  MarkupElement* Find(std::string_view name);
  const MarkupElement* Find(std::string_view name) const;
  // The element of that name; made (with empty text) at the place the schema gives it when missing.
  // `changed` is set when it is made; whoever edits an element sets it as well.
  MarkupElement& FindOrInsert(std::string_view name);
  // Removes all of that name.
  void Remove(std::string_view name);
};

}  // namespace vantora::embedded
