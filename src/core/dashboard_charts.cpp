#include "core/dashboard_charts.h"

#include <algorithm>
#include <cmath>

#include "core/convert.h"
#include "core/host_error.h"

namespace vantora {
namespace {

// A chart may miss its column by this part of a column's width.
constexpr double kTolerance = 20;

// Points as the chart list counts them.
double Whole(double points) { return RoundHalfToEven(points); }

}  // namespace

std::optional<PlacedChart> PlaceOf(host::ChartObject& chart) {
  try {
    PlacedChart placed{std::string(TrimBlanks(chart.TitleCaption())), Whole(chart.Left()),
                       Whole(chart.Top()), Whole(chart.Width())};
    if (placed.title.empty() || placed.width < 1) return std::nullopt;
    return placed;
  } catch (const HostError&) {
    // A chart without a title, as a rule.
    return std::nullopt;
  }
}

DashboardColumns::DashboardColumns(host::Worksheet& dashboard) {
  const int column_count = dashboard.UsedRange()->ColumnsCount();
  for (int column = 1; column <= column_count; ++column) {
    edges_.push_back(Whole(dashboard.Columns(column)->Left()));
  }
  standard_width_ = column_count < 2 ? Whole(dashboard.Columns(1)->Width()) : edges_[1] - edges_[0];
}

std::optional<int> DashboardColumns::ColumnOf(const PlacedChart& chart) const {
  const double tolerance = Whole(standard_width_ / kTolerance);
  const auto edge = std::find_if(edges_.begin(), edges_.end(), [&](double left) {
    return std::abs(left - chart.left) <= tolerance;
  });
  if (edge == edges_.end()) return std::nullopt;
  return static_cast<int>(edge - edges_.begin()) + 1;
}

bool DashboardColumns::IsTooWide(const PlacedChart& chart, int column) const {
  return chart.left + chart.width > edges_[static_cast<std::size_t>(column - 1)] + standard_width_;
}

}  // namespace vantora
