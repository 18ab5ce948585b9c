#include "host/column_sizes.h"

#include <algorithm>
#include <iterator>

#include "host/column_formats.h"
#include "package/column_width.h"

namespace vantora::embedded {

ColumnSizes::ColumnSizes(const SheetModel& sheet, double default_width, int max_digit_width)
    : version_(sheet.column_formats_version) {
  int next = 1;
  std::int64_t left = 0;
  auto add = [&](int first, int last, int width) {
    if (last < first) return;
    runs_.push_back({first, width, left});
    left += std::int64_t{width} * (last - first + 1);
    next = last + 1;
  };
  const int standard = PixelsOfWidth(default_width, max_digit_width);
  for (const ColumnFormat& format : sheet.column_formats) {
    add(next, format.first - 1, standard);
    int width =
        IsColumnHidden(sheet, format.first)
            ? 0
            : PixelsOfWidth(WidthOfColumn(sheet, format.first, default_width), max_digit_width);
    add(format.first, format.last, width);
  }
  add(next, kMaxColumn + 1, standard);
}

const ColumnSizes::Run& ColumnSizes::RunOf(int column) const {
  return *std::prev(std::partition_point(runs_.begin(), runs_.end(),
                                         [&](const Run& run) { return run.first <= column; }));
}

int ColumnSizes::Width(int column) const { return RunOf(column).width; }

std::int64_t ColumnSizes::Left(int column) const {
  const Run& run = RunOf(column);
  return run.left + std::int64_t{run.width} * (column - run.first);
}

}  // namespace vantora::embedded
