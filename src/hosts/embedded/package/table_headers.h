// Tables and their header cells must agree, or the file counts as damaged.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "formula/workbook_model.h"

namespace vantora::embedded {

// Makes a table and its header cells agree after edits, as typing into a header does: a header that
// changed renames its column, made unique with a number; one that is empty takes the column's name;
// each becomes text. `text` is the table's part, `sheet` the table's sheet. Gives what the part reads
// then, nullopt when it stays.
std::optional<std::string> MatchTableHeaders(std::string_view text, SheetModel& sheet,
                                             StringPool& strings);

}  // namespace vantora::embedded
