#include "cli/changes_json.h"

namespace vantora::cli {

nlohmann::ordered_json ChangesJson(const embedded::ChangeList& changes) {
  using Json = nlohmann::ordered_json;
  Json inserted = Json::array();
  for (const auto& columns : changes.inserted) {
    inserted.push_back({{"sheet", columns.sheet},
                        {"column", embedded::ColumnLetters(columns.column)},
                        {"count", columns.count}});
  }
  Json cells = Json::array();
  for (const auto& cell : changes.cells) {
    cells.push_back({{"sheet", cell.sheet},
                     {"cell", embedded::ToA1(cell.cell)},
                     {"before", cell.before},
                     {"after", cell.after}});
  }
  return {{"inserted_columns", inserted}, {"cells", cells}, {"others", changes.others}};
}

}  // namespace vantora::cli
