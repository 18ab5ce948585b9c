#include "inspection/sheet_content.h"

#include <cctype>
#include <map>
#include <optional>

#include "core/cell_place.h"
#include "core/convert.h"
#include "core/dashboard_charts.h"
#include "core/model_layout.h"

namespace vantora::inspection {
namespace {

bool Contains(const std::string& text, std::string_view part) {
  return FindIgnoreCase(text, part).has_value();
}

}  // namespace

void InspectHistory(SheetReader& reader, SheetFacts& facts) {
  int marker_column = 0;
  for (int column = 2; column <= reader.column_count(); ++column) {
    if (!EqualsIgnoreCase(reader.TextAt(model::kFlagRow, column), model::kMarkerColumnFlag)) {
      continue;
    }
    if (marker_column) {
      reader.Report(CellName(model::kFlagRow, marker_column),
                    "A marker flag further right overrides this one.");
    }
    marker_column = column;
  }
  if (marker_column) {
    facts.column_flags.push_back(
        {marker_column, std::string(model::kMarkerColumnFlag), "marker column of the sheet"});
  }
}

void InspectBaseRows(SheetReader& reader, SheetFacts& facts) {
  for (int row = 1; row <= reader.row_count(); ++row) {
    const std::string flag = reader.TextAt(row, model::kBaseFlagColumn);
    if (!Contains(flag, model::kBaseFlag)) continue;
    if (row == 1) {
      reader.Report(CellName(row, model::kBaseFlagColumn),
                    "A base flag in row 1 has no live row above it: freezing stops here with an "
                    "error.");
      continue;
    }
    facts.base_rows.push_back(row);
    if (!Contains(flag, model::kSpinnerBaseFlag)) continue;
    if (reader.sheet()->Cells(row, model::kBaseFlagColumn)->HasFormula()) {
      reader.Report(CellName(row, model::kBaseFlagColumn),
                    "The flag is calculated: freezing sees it, setting the spinners to base does "
                    "not.");
    } else {
      facts.spinner_base_rows.push_back(row);
    }
  }
}

namespace {

struct PlanningColumns {
  int flags = 0;
  int save_area = 0;
};

PlanningColumns FindPlanningColumns(SheetReader& reader) {
  PlanningColumns columns;
  for (int column = 2; column <= reader.column_count() && !columns.save_area; ++column) {
    const std::string text = reader.TextAt(model::kFlagRow, column);
    if (EqualsIgnoreCase(text, model::kFlagColumnFlag)) columns.flags = column;
    if (EqualsIgnoreCase(text, model::kSaveColumnFlag)) columns.save_area = column;
  }
  return columns;
}

// The row that an address such as "$C$12" or "Planning!$C$12" names; 0 when it names none.
int RowOfAddress(std::string_view address) {
  if (auto bang = address.rfind('!'); bang != std::string_view::npos) {
    address.remove_prefix(bang + 1);
  }
  while (!address.empty() && !std::isdigit(static_cast<unsigned char>(address.front()))) {
    address.remove_prefix(1);
  }
  return NumberToInteger(LeadingNumber(address)).value_or(0);
}

void FindInflationRow(SheetReader& reader, int flag_column, SheetFacts& facts) {
  for (int row = 2; row <= reader.row_count(); ++row) {
    if (!EqualsIgnoreCase(reader.TextAt(row, flag_column), model::kInflationRowFlag)) continue;
    facts.inflation_row = row;
    return;
  }
  reader.Report("No row is flagged \"x\" as holding inflation values: the spin buttons stop.");
}

SpinnerBlock FindBlock(SheetReader& reader, int flag_column, const std::string& shape,
                       const std::string& linked_cell) {
  SpinnerBlock block{.shape = shape, .linked_cell = linked_cell, .end_row = {}};
  const int spin_row = RowOfAddress(linked_cell);
  if (spin_row == 0) return block;
  block.first_row = spin_row + 1;
  block.last_row = reader.row_count();
  for (int row = block.first_row; row <= reader.row_count(); ++row) {
    if (!Contains(reader.TextAt(row, flag_column), model::kEndRowFlag)) continue;
    block.end_row = row;
    block.last_row = row - 1;
    break;
  }
  return block;
}

void CheckProjectFlags(SheetReader& reader, int flag_column, const SpinnerBlock& block) {
  static constexpr std::string_view kLetters = "fsinc ";
  for (int row = block.first_row; row <= block.last_row; ++row) {
    const std::string flags = reader.TextAt(row, flag_column);
    char previous = ' ';
    for (char c : TrimBlanks(flags)) {
      const char letter = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
      const bool is_digit_of_i = std::isdigit(static_cast<unsigned char>(c)) && previous == 'i';
      previous = letter;
      if (is_digit_of_i || kLetters.find(letter) != std::string_view::npos) continue;
      reader.Report(CellName(row, flag_column), std::string("\"") + c +
                                                    "\" is no project flag; the spin button's "
                                                    "macro says so at each click.");
    }
  }
}

// The cell that a shape is linked to; nullopt for a shape that is no control with a link.
std::optional<std::string> LinkedCellOf(SheetReader& reader, const std::string& shape) {
  try {
    return reader.sheet()->Shapes(shape)->LinkedCell();
  } catch (const HostError&) {
    return std::nullopt;  // a picture, a chart, a plain shape
  }
}

}  // namespace

void InspectSpinners(SheetReader& reader, const std::vector<std::string>& shapes,
                     SheetFacts& facts) {
  std::vector<std::pair<std::string, std::string>> buttons;
  for (const std::string& shape : shapes) {
    const auto linked_cell = LinkedCellOf(reader, shape);
    if (linked_cell && !linked_cell->empty()) buttons.emplace_back(shape, *linked_cell);
  }
  const PlanningColumns columns = FindPlanningColumns(reader);
  if (buttons.empty() || (!columns.flags && !columns.save_area)) return;
  if (columns.flags) {
    facts.column_flags.push_back({columns.flags, "f", "flag column of the projects"});
  } else {
    reader.Report("Row 1 has no \"f\" over the flag column: the spin buttons stop.");
  }
  if (columns.save_area) {
    facts.column_flags.push_back({columns.save_area, "s", "first of ten shift-save columns"});
  } else {
    reader.Report("Row 1 has no \"s\" over the first shift-save column: the spin buttons stop.");
  }
  if (!columns.flags || !columns.save_area) return;
  FindInflationRow(reader, columns.flags, facts);
  for (const auto& [shape, linked_cell] : buttons) {
    SpinnerBlock block = FindBlock(reader, columns.flags, shape, linked_cell);
    if (block.first_row == 0) {
      reader.Report("\"" + shape + "\" is linked to \"" + linked_cell + "\", which names no row.");
      continue;
    }
    if (!block.end_row) {
      reader.Report(CellName(block.first_row - 1, columns.flags),
                    "The block of \"" + shape +
                        "\" has no \"end\" row: it runs to the last used row, and the row below "
                        "that keeps the button's position.");
    }
    CheckProjectFlags(reader, columns.flags, block);
    facts.spinner_blocks.push_back(std::move(block));
  }
}

void InspectKeyColumns(SheetReader& reader, SheetFacts& facts) {
  const bool defines_keys = Contains(facts.a1, model::kKeyListSheetFlag);
  bool has_key_list = false;
  for (int column = 1; column <= reader.column_count(); ++column) {
    std::optional<KeyColumn> keys;
    for (int row = 1; row <= reader.row_count(); ++row) {
      const Value value = reader.ValueAt(row, column);
      if (value.IsText() && EqualsIgnoreCase(TrimBlanks(value.AsText()), model::kKeyHeading)) {
        if (!keys) keys = KeyColumn{column, row, 0, defines_keys && column == model::kKeyColumn};
      } else if (keys && !ValueToText(value).empty()) {
        ++keys->keys;
      }
    }
    if (!keys) continue;
    has_key_list |= column == model::kKeyColumn;
    facts.key_columns.push_back(*keys);
  }
  if (defines_keys && !has_key_list) {
    reader.Report(CellName(1, model::kKeyColumn),
                  "The sheet is flagged \"L\", but column I has no \"Planning key\" heading.");
  }
}

namespace {

RatioBlock& BlockOf(std::vector<RatioBlock>& blocks, int number) {
  for (RatioBlock& block : blocks) {
    if (block.number == number) return block;
  }
  blocks.push_back({.number = number, .first_row = {}, .last_row = {}});
  return blocks.back();
}

void TakeMarker(SheetReader& reader, int row, int code, SheetFacts& facts) {
  const int number = code / model::kBlockUnit;
  const int kind = code % model::kBlockUnit;
  if (number > model::kMostBlocks) {
    reader.Report(CellName(row, model::kRatioCodeColumn),
                  "Code " + std::to_string(code) +
                      " names a block above 10: distributing the data stops with an error.");
    return;
  }
  RatioBlock& block = BlockOf(facts.ratio_blocks, number);
  if (kind <= model::kLastBlockStartRemainder) block.first_row = row + 1;
  if (kind > model::kLastBlockDataRemainder) block.last_row = row - 1;
}

void TakeRatioKey(SheetReader& reader, int row, SheetFacts& facts) {
  const Value key = reader.ValueAt(row, model::kRatioKeyColumn);
  if (key.IsEmpty() || !IsNumeric(key)) return;
  const auto number = TextToInteger(ValueToText(key));
  if (!number || *number < 0 || *number > model::kLargestRatioKey) {
    reader.Report(CellName(row, model::kRatioKeyColumn),
                  "The ratio key " + ValueToText(key) +
                      " is not within 0 to 100: distributing the data stops "
                      "with an error.");
    return;
  }
  if (*number > 0) ++facts.ratio_keys;
}

}  // namespace

void InspectRatios(SheetReader& reader, SheetFacts& facts) {
  bool maps = false;
  for (int row = 1; row <= reader.row_count(); ++row) {
    const int code = TextToInteger(reader.TextAt(row, model::kRatioCodeColumn)).value_or(0);
    if (code == model::kRatiosStart) maps = true;
    if (code == model::kRatiosEnd) maps = false;
    if (code > model::kRatiosEnd) TakeMarker(reader, row, code, facts);
    if (maps) TakeRatioKey(reader, row, facts);
  }
  if (maps) {
    reader.Report(
        "The ratio keys have no row coded 99 below them: every row down to the last one "
        "counts.");
  }
  for (const RatioBlock& block : facts.ratio_blocks) {
    const std::string name = "Block " + std::to_string(block.number);
    if (!block.first_row) reader.Report(name + " of the comparison data has no start.");
    if (!block.last_row) {
      reader.Report(name + " of the comparison data has no end: nothing of it is copied.");
    }
  }
}

void InspectTitleSheet(SheetReader& reader, SheetFacts& facts) {
  for (int column = 2; column <= reader.column_count(); ++column) {
    const std::string text = reader.TextAt(model::kFlagRow, column);
    const auto position = FindIgnoreCase(text, model::kMessageFlag);
    if (!position) continue;
    facts.column_flags.push_back({column, text, "column of the message about macros"});
    const double row = RoundHalfToEven(LeadingNumber(std::string_view(text).substr(*position + 1)));
    if (row < 1 || row > model::kLastMessageRow) {
      reader.Report(CellName(model::kFlagRow, column),
                    "The row behind L is not within 1 to 5000; " +
                        std::to_string(model::kDefaultMessageRow) + " is taken.");
    }
    return;
  }
}

void InspectConfigurationTokens(SheetReader& reader, SheetFacts& facts) {
  for (int column = 1; column <= reader.column_count(); ++column) {
    const std::string text = reader.TextAt(model::kFlagRow, column);
    const auto start = FindIgnoreCase(text, model::kHiddenTokenStart);
    if (!start) continue;
    const std::size_t end = text.find(')', *start);
    const std::string token =
        text.substr(*start, end == std::string::npos ? end : end + 1 - *start);
    facts.column_flags.push_back({column, token, "hidden in these configurations"});
    if (end == std::string::npos) {
      reader.Report(CellName(model::kFlagRow, column),
                    "The token \"" + token + "\" has no closing parenthesis.");
    }
    std::string_view list = std::string_view(token).substr(model::kHiddenTokenStart.size());
    if (list.ends_with(')')) list.remove_suffix(1);
    while (!list.empty()) {
      const std::size_t comma = list.find(',');
      const std::string_view part = list.substr(0, comma);
      list.remove_prefix(comma == std::string_view::npos ? list.size() : comma + 1);
      const int number = TextToInteger(part).value_or(0);
      if (number >= 1 && number <= model::kDashboardConfigurations) continue;
      reader.Report(CellName(model::kFlagRow, column),
                    "\"" + std::string(part) + "\" in the token \"" + token +
                        "\" is no configuration from 1 to 9; it is ignored.");
    }
  }
}

void InspectCharts(SheetReader& reader) {
  const DashboardColumns columns(*reader.sheet());
  std::size_t listed = 0;
  std::map<int, std::size_t> charts_of_column;
  for (const host::ChartObjectPtr& chart : reader.sheet()->ChartObjects()) {
    const std::optional<PlacedChart> placed = PlaceOf(*chart);
    if (!placed) {
      reader.Report("A chart has no title: the chart list leaves it out.");
      continue;
    }
    const std::string name = "The chart \"" + placed->title + "\"";
    const std::optional<int> column = columns.ColumnOf(*placed);
    if (!column) {
      reader.Report(name + " begins at no column's left edge: the chart list leaves it out.");
      continue;
    }
    if (++listed > model::kMostListedCharts) {
      reader.Report(name + " is one more than the chart list has room for.");
      continue;
    }
    if (columns.IsTooWide(*placed, *column)) {
      reader.Report(CellName(model::kFlagRow, *column), name + " is wider than its column.");
    }
    if (++charts_of_column[*column] == model::kMostChartsOfAColumn + 1) {
      reader.Report(CellName(model::kFlagRow, *column),
                    "The column has more than " + std::to_string(model::kMostChartsOfAColumn) +
                        " charts: configuring the dashboard stops with an error.");
    }
  }
}

}  // namespace vantora::inspection
