// What the host's members know of a cell format, read from the elements of the styles part.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "cells/styles.h"
#include "package/fill_colors.h"
#include "package/xml_tree.h"

namespace vantora::embedded {

class FormatReader {
 public:
  // Reads the fills and number formats of a <styleSheet>. Colours and palette must outlive it.
  FormatReader(const FillColors& colors, const Palette& palette, pugi::xml_node style_sheet);

  // Entries that came behind the others of their tables.
  void AddFill(pugi::xml_node fill);
  void AddNumberFormat(pugi::xml_node format);

  // Of an <xf>.
  CellFormat Read(pugi::xml_node xf) const;

 private:
  const FillColors* colors_;
  const Palette* palette_;
  std::vector<int> fills_;
  // The codes that the workbook defines.
  std::map<unsigned, std::string> number_formats_;
};

// The palette that a <styleSheet> defines; colours that it leaves out are the default ones.
Palette ReadPalette(pugi::xml_node style_sheet);

}  // namespace vantora::embedded
