// The charts that a sheet's drawing holds: where they stand, and what their titles say.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "package/opc_package.h"

namespace vantora::embedded {

// What a point measures in the units of drawings.
inline constexpr double kDrawingUnitsPerPoint = 12700;

// A place within a cell; the offsets are in the units of drawings.
struct AnchorPlace {
  int row = 1;
  int column = 1;
  std::int64_t row_offset = 0;
  std::int64_t column_offset = 0;
};

// Lengths in the units of drawings.
struct ChartAnchor {
  // The top left corner: a cell's place, or a distance from the sheet's own corner.
  std::optional<AnchorPlace> from;
  std::int64_t left = 0;
  std::int64_t top = 0;
  // The bottom right corner where the chart is sized with the cells, else its width.
  std::optional<AnchorPlace> to;
  std::int64_t width = 0;
};

struct SheetChart {
  ChartAnchor anchor;
  // Name of the chart's part.
  std::string part;
};

// A text that a chart shows.
struct ChartText {
  // Without "=", of a text that is linked to cells; "" for one that is not.
  std::string formula;
  // Of a linked text, as it was when the file was saved. Lines are separated by "\n".
  std::string text;
};

// In the order of the drawing. Charts inside of groups are left out. Throws FileError.
std::vector<SheetChart> ReadSheetCharts(const OpcPackage& package, std::string_view sheet_part);

// The title of the chart with that part, with Excel's own rules for a title that is automatic: the
// name of the only series, and where there is none "Chart Title" for a title that the chart asks
// for. Nullopt when the chart shows no title. Throws FileError.
std::optional<ChartText> ReadChartTitle(const OpcPackage& package, std::string_view chart_part);

}  // namespace vantora::embedded
