#include "inspection/reference_sheet.h"

#include <array>

#include "core/cell_place.h"
#include "core/common.h"
#include "core/convert.h"
#include "core/model_layout.h"
#include "inspection/sheet_flags.h"

namespace vantora::inspection {
namespace {

// A list by its flag; `length_offset` is the column, counted from the flagged one, whose first
// empty cell ends it.
struct ListRule {
  std::string_view flag;
  std::string_view name;
  int length_offset;
  bool is_reported_when_missing;
};

constexpr std::array<ListRule, 8> kLists = {{
    {"n", "names", 0, true},
    {"k", "planning keys: keys", 0, true},
    {"c", "planning keys: sheet columns", 0, true},
    {"s", "planning keys: sheet names", 0, true},
    {"e", "key discrepancies", 0, false},
    {"m", "menu table", 0, false},
    {"g", "charts", 2, false},
    {"h", "dashboard configurations", 1, false},
}};

bool IsEmptyAt(SheetReader& reader, int row, int column) {
  return TrimBlanks(reader.TextAt(row, column)).empty();
}

// The menu table ends where both its item and its sub-item are empty.
int MenuRows(SheetReader& reader, int first_row, int column) {
  int row = first_row;
  while (!IsEmptyAt(reader, row, column) || !IsEmptyAt(reader, row, column + 1)) ++row;
  return row - first_row;
}

int RowsOf(SheetReader& reader, int first_row, int length_column) {
  int row = first_row;
  while (!IsEmptyAt(reader, row, length_column)) ++row;
  return row - first_row;
}

void CheckMenuTable(SheetReader& reader, int first_row, int column, int rows) {
  enum class Parent { kNone, kPopup, kButton } parent = Parent::kNone;
  for (int row = first_row; row < first_row + rows; ++row) {
    const bool has_item = !IsEmptyAt(reader, row, column);
    const bool has_macro = !IsEmptyAt(reader, row, column + 3);
    const Value face = reader.ValueAt(row, column + 5);
    if (!IsNumeric(face)) {
      reader.Report(CellName(row, column + 5),
                    "The button face is no number: building the menu "
                    "stops with an error.");
    }
    if (has_item) {
      parent = has_macro ? Parent::kButton : Parent::kPopup;
      continue;
    }
    if (!has_macro) {
      reader.Report(CellName(row, column + 1),
                    "The sub-item has no macro; it is left out of the "
                    "menu with a message.");
    } else if (parent == Parent::kNone) {
      reader.Report(CellName(row, column + 1),
                    "The sub-item has no item above it: building the "
                    "menu stops with an error.");
    } else if (parent == Parent::kButton) {
      reader.Report(CellName(row, column + 1),
                    "The item above this sub-item has a macro and so no sub-menu: building the "
                    "menu stops with an error.");
    }
  }
}

// The configurations' numbers, that of the row which ends the list included.
void CheckNumbers(SheetReader& reader, int first_row, int column, int rows) {
  for (int row = first_row; row <= first_row + rows; ++row) {
    const std::string text(TrimBlanks(reader.TextAt(row, column)));
    if (TextToInteger(text)) continue;
    reader.Report(CellName(row, column),
                  std::string(row == first_row + rows ? "The row that ends the list of dashboard "
                                                        "configurations"
                                                      : "The dashboard configuration") +
                      " has no number: building the dashboard's menu stops with an error. Write " +
                      (row == first_row + rows ? "0" : "one") + " there.");
  }
}

}  // namespace

ReferenceSheetFacts InspectReferenceSheet(SheetReader& reader) {
  ReferenceSheetFacts facts{.sheet = reader.name(), .lists = {}};
  facts.lists_row = FlagNumber(reader.sheet(), model::kReferenceSheetFlag, model::kDefaultListsRow);
  if (facts.lists_row <= model::kListHeadingDistance) {
    reader.Report("A1", "Lists from row " + std::to_string(facts.lists_row) +
                            " on have no room for their headings: no list is defined.");
  }
  for (const ListRule& rule : kLists) {
    ListFacts list{.flag = rule.flag, .name = rule.name, .column = {}};
    for (int column = 2; column <= reader.column_count(); ++column) {
      if (!EqualsIgnoreCase(reader.TextAt(model::kFlagRow, column), rule.flag)) continue;
      if (list.column) {
        reader.Report(
            CellName(model::kFlagRow, *list.column),
            "A flag \"" + std::string(rule.flag) + "\" further right overrides this one.");
      }
      list.column = column;
    }
    if (!list.column) {
      if (rule.is_reported_when_missing) {
        reader.Report("Row 1 has no flag \"" + std::string(rule.flag) + "\" (" +
                      std::string(rule.name) + ").");
      }
    } else if (rule.flag == "m") {
      list.entries = MenuRows(reader, facts.lists_row, *list.column);
      CheckMenuTable(reader, facts.lists_row, *list.column, list.entries);
    } else {
      list.entries = RowsOf(reader, facts.lists_row, *list.column + rule.length_offset);
      if (rule.flag == "h") CheckNumbers(reader, facts.lists_row, *list.column, list.entries);
    }
    const int last_row = facts.lists_row + list.entries - 1;
    if (list.entries > 1 && last_row >= reader.row_count()) {
      reader.Report(CellName(last_row, *list.column),
                    "The list of " + std::string(rule.name) +
                        " fills the used range to its last row: selecting, sorting and clearing it "
                        "take its first row only. Use a row below it.");
    }
    facts.lists.push_back(list);
  }
  return facts;
}

void InspectMenuGroups(const std::vector<SheetFacts>& sheets, std::vector<Problem>& problems) {
  std::array<int, model::kMenuGroups + 1> sheets_of_group{};
  for (const SheetFacts& sheet : sheets) {
    const SheetFlag* flag = FindFlag(sheet, model::kMenuSheetFlag);
    if (!flag) continue;
    const int group = *flag->number;
    if (group < 1 || group > model::kMenuGroups) {
      problems.push_back({sheet.name, "A1",
                          "The menu group " + std::to_string(group) +
                              " is not within 1 to 9; the sheet is left out of the menu."});
    } else if (++sheets_of_group[group] > model::kSheetsOfAMenuGroup) {
      problems.push_back({sheet.name, "A1",
                          "Menu group " + std::to_string(group) +
                              " holds 15 sheets; this one more stops building the menu with an "
                              "error."});
    }
  }
}

}  // namespace vantora::inspection
