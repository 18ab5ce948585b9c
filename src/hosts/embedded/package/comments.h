// The comments (notes) of one sheet: the comments part and the legacy drawing with their boxes.
#pragma once

#include <string_view>

#include "cells/address.h"
#include "package/opc_package.h"
#include "package/sheet_markup.h"

namespace vantora::embedded {

// Works on the package's parts as they are now; each call leaves them consistent. Parts, their
// relationships, content types and the sheet's <legacyDrawing> are made when the first comment
// comes.
class SheetComments {
 public:
  // All three must outlive it.
  SheetComments(OpcPackage& package, SheetMarkup& markup, std::string sheet_part);

  bool Has(CellAddress cell) const;
  // Adds an empty comment, hidden, its box right of the cell as Excel places it. The cell has none.
  void Add(CellAddress cell);
  // The cell has a comment.
  void SetText(CellAddress cell, std::string_view text);
  void SetVisible(CellAddress cell, bool visible);
  // Removes the comments of an area.
  void Clear(const Area& area);
  // As a paste of `from` at `to` (the same size) does: texts, formats and sizes come along.
  void Paste(const Area& from, const Area& to);

 private:
  OpcPackage& package_;
  SheetMarkup& markup_;
  std::string sheet_part_;
};

}  // namespace vantora::embedded
