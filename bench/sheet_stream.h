// Writes one sheet's part, row by row.
#pragma once

#include <string>
#include <string_view>

#include "planning_model.h"
#include "zip_stream.h"

namespace vantora::bench {

// "AD" for 30.
std::string Letters(int column);
// "AD7".
std::string Place(int column, int row);

class SheetStream {
 public:
  // `head` stands before the rows ("<sheetViews>...").
  SheetStream(ZipStream& zip, const std::string& part, std::string_view head);

  void BeginRow(int row);
  void EndRow();
  // Cells of the row, from left to right. `style` is an index of cellXfs.
  void Blank(int column, int style);
  void Number(int column, double value, int style);
  void Text(int column, int shared_string, int style);
  void Formula(int column, std::string_view formula, double value, int style);
  // The first cell of a formula filled to the right up to `last_column`; Follow is one of the
  // others.
  void Master(int column, int last_column, std::string_view formula, double value, int style);
  void Follow(int column, double value, int style);

  // Ends the part; `tail` stands behind the rows.
  ModelCounts End(std::string_view tail);

 private:
  void Start(int column, int style);
  void Value(double value);

  ZipStream& zip_;
  std::string text_;
  int row_ = 0;
  int shared_formulas_ = 0;
  ModelCounts counts_;
};

}  // namespace vantora::bench
