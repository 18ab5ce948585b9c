#include "host/objects.h"

#include <algorithm>
#include <cstdint>

namespace vantora::embedded {

void Refuse(const std::string& text) { throw HostError(HostError::kApplicationDefined, text); }

void RefuseMember(const std::string& member) { Refuse("The embedded host has no " + member + "."); }

Area OneCell(std::int64_t row, std::int64_t column) {
  if (row < 1 || row > kMaxRow || column < 1 || column > kMaxColumn) {
    Refuse("Application-defined or object-defined error: there is no cell in row " +
           std::to_string(row) + ", column " + std::to_string(column) + ".");
  }
  int valid_row = static_cast<int>(row);
  int valid_column = static_cast<int>(column);
  return {valid_row, valid_column, valid_row, valid_column};
}

// What a paste of `from` at the selected `target` fills: whole copies of it. It is repeated where
// the target is a multiple of it; the rest of any other target is left alone.
Area FilledByPaste(const Area& from, const Area& target) {
  const bool fits = (target.rows() < from.rows() || target.rows() % from.rows() == 0) &&
                    (target.columns() < from.columns() || target.columns() % from.columns() == 0);
  Area filled = target;
  filled.last_row = target.first_row + (fits ? std::max(target.rows(), from.rows()) : from.rows()) - 1;
  filled.last_column =
      target.first_column + (fits ? std::max(target.columns(), from.columns()) : from.columns()) - 1;
  return filled;
}

void PasteCopied(const BookHandle& book, int sheet, const Area& target, unsigned parts,
                 const std::string& method) {
  const auto& copied = book.application->copied;
  if (!copied) Refuse(method + " failed: nothing has been copied.");
  const Area& from = copied->area;
  if (copied->workbook != book.workbook || copied->sheet != sheet) {
    Refuse(method + " failed: a copy can be pasted on its own sheet only.");
  }
  const Area to = FilledByPaste(from, target);
  if (to.last_row > kMaxRow || to.last_column > kMaxColumn) {
    Refuse("You can't paste this here because the Copy area and paste area aren't the same size.");
  }
  for (int row = to.first_row; row <= to.last_row; row += from.rows()) {
    for (int column = to.first_column; column <= to.last_column; column += from.columns()) {
      book->Paste(sheet, from,
                  {row, column, row + from.rows() - 1, column + from.columns() - 1}, parts);
    }
  }
}

}  // namespace vantora::embedded
