#include "workbook_tools/formatting.h"

#include <algorithm>
#include <array>

#include "core/common.h"
#include "core/convert.h"
#include "core/model_layout.h"

namespace vantora {

// How a block of cells looks. Colours are palette indices.
struct clsFormatting::BlockFormat {
  int fill_color_index;
  bool is_plain;  // not bold
  host::XlHAlign alignment;
  int border_color_index;
  bool has_lines_between_columns;
};

namespace {

struct ColumnBlock {
  int first_column;
  int column_count;
};

constexpr int kPlanningYears = model::kLastPlanningColumn - model::kFirstPlanningColumn + 1;

constexpr std::array<ColumnBlock, 5> kColumnBlocks = {{
    {model::kFirstHistoryColumn, model::kHistoryYears + 1 + kPlanningYears},  // every year
    {model::kFirstHistoryColumn, model::kHistoryYears},                       // history
    {model::kCurrentYearColumn, 1},                                           // current year
    {model::kFirstPlanningColumn, kPlanningYears},                            // planning
    {model::kFirstHistoryColumn, model::kHistoryYears + 1},  // up to the current year
}};

constexpr std::string_view kRangePrompt =
    "Select the range to be formatted. A multiple selection is allowed.";

// The size of a sheet: 256 columns by 65,536 rows up to host version 11.
constexpr double kLastSmallVersion = 11;
constexpr int kRows = 1048576;
constexpr int kColumns = 16384;
constexpr int kRowsOfSmallSheet = 65536;
constexpr int kColumnsOfSmallSheet = 256;

const ColumnBlock& BlockAfter(int first_column, int column_count, bool forward) {
  const auto found =
      std::find_if(kColumnBlocks.begin(), kColumnBlocks.end(), [&](const ColumnBlock& block) {
        return block.first_column == first_column && block.column_count == column_count;
      });
  // A selection that is none of the blocks counts as the last one.
  const std::size_t from = found == kColumnBlocks.end()
                               ? kColumnBlocks.size() - 1
                               : static_cast<std::size_t>(found - kColumnBlocks.begin());
  const std::size_t step = forward ? 1 : kColumnBlocks.size() - 1;
  return kColumnBlocks[(from + step) % kColumnBlocks.size()];
}

host::RangePtr Selected(host::Application& application) {
  host::RangePtr selection = application.Selection();
  if (!selection) {
    throw HostError(HostError::kObjectNotSet, "No cells are selected.", "Orvanemcro1");
  }
  return selection;
}

}  // namespace

void clsFormatting::RangeSelect(bool forward, std::optional<int> index) {
  if (!initialized()) return;
  const host::RangePtr selection = Selected(*application());
  const host::WindowPtr window = ActiveWindowOf(*application());
  const int scroll_column = window->ScrollColumn();
  const bool is_named = index && *index >= 1 && *index <= static_cast<int>(kColumnBlocks.size());
  const ColumnBlock& block =
      is_named ? kColumnBlocks[static_cast<std::size_t>(*index - 1)]
               : BlockAfter(selection->Column(), selection->ColumnsCount(), forward);
  const host::WorksheetPtr sheet = application()->ActiveSheet();
  host::RangePtr result;
  for (const host::RangePtr& area : selection->Areas()) {
    const int first_row = area->Row();
    const host::RangePtr cells =
        sheet->Range(first_row, block.first_column, first_row + area->RowsCount() - 1,
                     block.first_column + block.column_count - 1);
    result = result ? application()->Union(result, cells) : cells;
  }
  result->Select();
  // Selecting moves the view sideways.
  window->SetScrollColumn(scroll_column);
}

void clsFormatting::LeftFormat() {
  if (!initialized()) return;
  static constexpr BlockFormat kHeadings = {.fill_color_index = 15,
                                            .is_plain = true,
                                            .alignment = host::XlHAlign::kLeft,
                                            .border_color_index = 56,
                                            .has_lines_between_columns = false};
  FormatChosenRange(kHeadings);
}

void clsFormatting::RightFormat() {
  if (!initialized()) return;
  // Without a fill the cells are input cells.
  static constexpr BlockFormat kFigures = {.fill_color_index = host::kColorIndexNone,
                                           .is_plain = false,
                                           .alignment = host::XlHAlign::kRight,
                                           .border_color_index = 15,
                                           .has_lines_between_columns = true};
  FormatChosenRange(kFigures);
}

void clsFormatting::FormatChosenRange(const BlockFormat& format) {
  const host::RangePtr range = application()->InputRange(kRangePrompt, kProductName);
  if (!range || RefuseWholeRowsAndColumns(range)) return;
  for (const host::RangePtr& area : range->Areas()) FormatArea(*area, format);
}

bool clsFormatting::RefuseWholeRowsAndColumns(const host::RangePtr& range) {
  const bool is_small = LeadingNumber(application()->Version()) <= kLastSmallVersion;
  const int rows = is_small ? kRowsOfSmallSheet : kRows;
  const int columns = is_small ? kColumnsOfSmallSheet : kColumns;
  std::string_view text;
  for (const host::RangePtr& area : range->Areas()) {
    if (area->ColumnsCount() >= columns) {
      text = "You must select a cell range, not whole rows.";
    } else if (area->RowsCount() >= rows) {
      text = "You must select a cell range, not whole columns.";
    }
    if (text.empty()) continue;
    services().user_interface.MessageBox(text, kExclamation, kProductName);
    return true;
  }
  return false;
}

void clsFormatting::FormatArea(host::Range& area, const BlockFormat& format) {
  const host::InteriorPtr interior = area.Interior();
  interior->SetColorIndex(format.fill_color_index);
  if (format.fill_color_index != host::kColorIndexNone) {
    interior->SetPattern(host::XlPattern::kSolid);
  }
  if (format.is_plain) area.Font()->SetBold(false);
  if (format.has_lines_between_columns && area.ColumnsCount() > 1) {
    const host::BordersPtr lines = area.Borders(host::XlBordersIndex::kInsideVertical);
    lines->SetWeight(host::XlBorderWeight::kHairline);
    lines->SetColorIndex(format.border_color_index);
  }
  area.BorderAround(host::XlBorderWeight::kThin, format.border_color_index);
  area.SetHorizontalAlignment(format.alignment);
}

void clsFormatting::PasteFormula() {
  if (!initialized()) return;
  application()->SetScreenUpdating(false);
  Try([this] {
    const host::RangePtr selection = Selected(*application());
    if (selection->Areas().size() > 1) {
      PasteIntoEach(selection);
    } else {
      PasteIntoSelection();
    }
  });
  Try([this] { application()->SetScreenUpdating(true); });
}

void clsFormatting::PasteIntoEach(const host::RangePtr& selection) {
  for (const host::RangePtr& area : selection->Areas()) {
    Try([&] { area->Select(); });
    Try([&] { PasteIntoSelection(); });
    Try([&] { selection->Select(); });
  }
}

void clsFormatting::PasteIntoSelection() {
  Selected(*application())
      ->PasteSpecial(host::XlPasteType::kFormulas, host::XlPasteSpecialOperation::kNone, false,
                     false);
}

void clsFormatting::Try(const std::function<void()>& step) {
  try {
    step();
  } catch (const HostError&) {
    services().user_interface.MessageBox("You need to do a COPY before you can PASTE.",
                                         kExclamation, "Vantora Paste");
  }
}

}  // namespace vantora
