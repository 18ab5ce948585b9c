// Which column of the dashboard a chart belongs to.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/host.h"

namespace vantora {

// A chart as the chart list needs it, lengths in whole points.
struct PlacedChart {
  std::string title;
  double left;
  double top;
  double width;
};

// Nullopt for a chart whose title or place can't be read, and for one without a title or a width:
// the chart list leaves them out.
std::optional<PlacedChart> PlaceOf(host::ChartObject& chart);

class DashboardColumns {
 public:
  // Measures the columns of the sheet's used range.
  explicit DashboardColumns(host::Worksheet& dashboard);

  // The column (from 1) whose left edge is within a twentieth of a column from the chart's; of
  // columns that begin at one place, as hidden ones do, the first. Nullopt when there is none.
  std::optional<int> ColumnOf(const PlacedChart& chart) const;
  // Whether a chart of that column reaches beyond it.
  bool IsTooWide(const PlacedChart& chart, int column) const;

 private:
  std::vector<double> edges_;
  double standard_width_ = 0;
};

}  // namespace vantora
