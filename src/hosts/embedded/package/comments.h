// The comments (notes) of one sheet: the comments part and the legacy drawing with their boxes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cells/address.h"
#include "package/move_rows.h"
#include "package/opc_package.h"
#include "package/sheet_markup.h"

namespace vantora::embedded {

// Works on the package's parts as they are now; each call leaves them consistent and reads each
// part once. Parts, their relationships, content types and the sheet's <legacyDrawing> are made
// when the first comment comes, and go with the last one (a drawing with form controls stays).
// Throws XmlError for a part that is not well-formed.
class SheetComments {
 public:
  // The package and the markup must outlive it. `sheet_part` is the sheet's part name.
  SheetComments(OpcPackage& package, SheetMarkup& markup, std::string sheet_part)
      : package_(package), markup_(markup), sheet_part_(std::move(sheet_part)) {}

  bool Has(CellAddress cell) const;
  // The cells that have a comment, a box or a conversation, in any order.
  std::vector<CellAddress> Cells();
  // Adds an empty comment, hidden, its box right of the cell as Excel places it. The cell has none.
  void Add(CellAddress cell);
  // The cell has a comment. Its formats go: the text becomes one run.
  void SetText(CellAddress cell, std::string_view text);
  // The cell has a comment.
  void SetVisible(CellAddress cell, bool visible);
  // Removes the comments of an area, and the conversations that they stand for.
  void Clear(const Area& area);
  // Comments and conversations follow the cells of rows that moved.
  void MoveRows(const RowMoves& moves);
  // As a paste of `from` at `to` (the same size) does: texts, formats and sizes come along, and
  // what stood at `to` goes. A conversation is pasted as a plain comment.
  void Paste(const Area& from, const Area& to);

 private:
  class Edit;

  OpcPackage& package_;
  SheetMarkup& markup_;
  std::string sheet_part_;
};

}  // namespace vantora::embedded
