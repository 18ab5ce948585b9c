#include "host/column_formats.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string>
#include <string_view>

#include "package/sheet_reader.h"
#include "package/sheet_writer.h"

namespace vantora::embedded {

namespace {

using Runs = std::vector<ColumnFormat>;

Runs::iterator RunAt(Runs& runs, int column) {
  return std::partition_point(runs.begin(), runs.end(),
                              [&](const ColumnFormat& run) { return run.last < column; });
}

// Makes a run boundary before `column`, where a run spans it.
void SplitBefore(Runs& runs, int column) {
  auto run = RunAt(runs, column);
  if (run == runs.end() || run->first >= column) return;
  ColumnFormat left = *run;
  left.last = column - 1;
  run->first = column;
  runs.insert(run, left);
}

// Place of ` name="value"` among a run's attributes; npos when it is absent.
std::size_t PlaceOf(const std::string& attributes, std::string_view name) {
  return attributes.find(" " + std::string(name) + "=\"");
}

std::optional<std::string_view> Attribute(const ColumnFormat& run, std::string_view name) {
  const std::string& text = run.attributes;
  std::size_t at = PlaceOf(text, name);
  if (at == std::string::npos) return std::nullopt;
  std::size_t begin = at + name.size() + 3;
  return std::string_view(text).substr(begin, text.find('"', begin) - begin);
}

void RemoveAttribute(std::string& attributes, std::string_view name) {
  std::size_t at = PlaceOf(attributes, name);
  if (at == std::string::npos) return;
  std::size_t end = attributes.find('"', at + name.size() + 3);
  attributes.erase(at, end + 1 - at);
}

void SetAttribute(std::string& attributes, std::string_view name, const std::string& value) {
  const std::string written = " " + std::string(name) + "=\"" + value + "\"";
  std::size_t at = PlaceOf(attributes, name);
  if (at == std::string::npos) {
    attributes += written;
    return;
  }
  std::size_t end = attributes.find('"', at + name.size() + 3);
  attributes.replace(at, end + 1 - at, written);
}

double WidthOfRun(const ColumnFormat& run, double default_width) {
  auto text = Attribute(run, "width");
  if (!text) return default_width;
  double width = default_width;
  std::from_chars(text->data(), text->data() + text->size(), width);
  return width;
}

bool IsRunHidden(const ColumnFormat& run) {
  return IsTrue(Attribute(run, "hidden").value_or("")) || WidthOfRun(run, 1) == 0;
}

bool SaysNothing(const ColumnFormat& run) { return run.style == 0 && run.attributes.empty(); }

// Joins the run with the one before it where both say the same.
Runs::iterator JoinWithPrevious(Runs& runs, Runs::iterator run) {
  if (run == runs.begin() || run == runs.end()) return run;
  auto previous = std::prev(run);
  if (previous->last + 1 != run->first || previous->style != run->style ||
      previous->attributes != run->attributes) {
    return run;
  }
  previous->last = run->last;
  return std::prev(runs.erase(run));
}

// Calls `change` for each run of columns first..last, cut out of what spans the ends; columns
// without a run come as runs that say nothing. `change` tells whether it changed the run.
template <typename Change>
void ChangeRuns(SheetModel& sheet, int first, int last, Change&& change) {
  Runs& runs = sheet.column_formats;
  for (int column = first; column <= last;) {
    auto run = RunAt(runs, column);
    const bool covered = run != runs.end() && run->first <= column;
    ColumnFormat part = covered ? *run : ColumnFormat{};
    part.first = column;
    part.last = std::min(last, covered ? run->last : run != runs.end() ? run->first - 1 : last);
    column = part.last + 1;
    if (!change(part)) continue;
    sheet.column_formats_changed = true;
    ++sheet.column_formats_version;
    if (covered) {
      SplitBefore(runs, part.first);
      SplitBefore(runs, part.last + 1);
      run = runs.erase(RunAt(runs, part.first));
    }
    if (SaysNothing(part)) continue;
    run = JoinWithPrevious(runs, runs.insert(run, std::move(part)));
    JoinWithPrevious(runs, std::next(run));
  }
}

}  // namespace

void SetColumnStyle(SheetModel& sheet, int first, int last, StyleId style) {
  Runs& runs = sheet.column_formats;
  bool differs = std::any_of(runs.begin(), runs.end(), [&](const ColumnFormat& run) {
    return run.first <= last && run.last >= first && run.style != style;
  });
  if (!differs && style == 0) return;
  SplitBefore(runs, first);
  SplitBefore(runs, last + 1);
  int uncovered = first;
  for (auto run = RunAt(runs, first); uncovered <= last;) {
    if (run != runs.end() && run->first == uncovered) {
      run->style = style;
      uncovered = run->last + 1;
      ++run;
    } else if (style != 0) {
      int end = run != runs.end() ? std::min(run->first - 1, last) : last;
      run = std::next(runs.insert(run, {uncovered, end, style, ""}));
      uncovered = end + 1;
    } else {
      uncovered = run != runs.end() ? run->first : last + 1;
    }
  }
  sheet.column_formats_changed = true;
  ++sheet.column_formats_version;
}

void CopyColumnFormat(SheetModel& sheet, int from, int to) {
  Runs& runs = sheet.column_formats;
  auto source = RunAt(runs, from);
  bool has_source = source != runs.end() && source->first <= from;
  ColumnFormat format = has_source ? *source : ColumnFormat{};
  auto target = RunAt(runs, to);
  bool has_target = target != runs.end() && target->first <= to;
  if (!has_source && !has_target) return;
  if (has_source && has_target && target->style == format.style &&
      target->attributes == format.attributes) {
    return;
  }
  SplitBefore(runs, to);
  SplitBefore(runs, to + 1);
  auto run = RunAt(runs, to);
  if (run != runs.end() && run->first == to) run = runs.erase(run);
  if (has_source) {
    format.first = format.last = to;
    runs.insert(run, format);
  }
  sheet.column_formats_changed = true;
  ++sheet.column_formats_version;
}

const ColumnFormat* FormatOfColumn(const std::vector<ColumnFormat>& runs, int column) {
  auto run = std::partition_point(runs.begin(), runs.end(), [&](const ColumnFormat& candidate) {
    return candidate.last < column;
  });
  return run != runs.end() && run->first <= column ? &*run : nullptr;
}

double WidthOfColumn(const SheetModel& sheet, int column, double default_width) {
  return WidthOfColumn(sheet.column_formats, column, default_width);
}

double WidthOfColumn(const std::vector<ColumnFormat>& runs, int column, double default_width) {
  const ColumnFormat* run = FormatOfColumn(runs, column);
  return run ? WidthOfRun(*run, default_width) : default_width;
}

bool IsColumnHidden(const SheetModel& sheet, int column) {
  return IsColumnHidden(sheet.column_formats, column);
}

bool IsColumnHidden(const std::vector<ColumnFormat>& runs, int column) {
  const ColumnFormat* run = FormatOfColumn(runs, column);
  return run && IsRunHidden(*run);
}

void SetColumnsHidden(SheetModel& sheet, int first, int last, bool hidden, double default_width) {
  const std::string standard = " width=\"" + NumberText(default_width) + "\"";
  ChangeRuns(sheet, first, last, [&](ColumnFormat& run) {
    if (IsRunHidden(run) == hidden) return false;
    if (hidden) {
      if (run.attributes.empty()) run.attributes = standard;
      SetAttribute(run.attributes, "hidden", "1");
      return true;
    }
    RemoveAttribute(run.attributes, "hidden");
    // Without a width to come back to, the column takes the standard one.
    if (WidthOfRun(run, default_width) == 0) {
      RemoveAttribute(run.attributes, "width");
      RemoveAttribute(run.attributes, "customWidth");
    }
    if (run.attributes == standard) run.attributes.clear();
    return true;
  });
}

void SetColumnsWidth(SheetModel& sheet, int first, int last, double width, double default_width) {
  if (width == 0) return SetColumnsHidden(sheet, first, last, true, default_width);
  ChangeRuns(sheet, first, last, [&](ColumnFormat& run) {
    const std::string before = run.attributes;
    RemoveAttribute(run.attributes, "hidden");
    RemoveAttribute(run.attributes, "bestFit");
    SetAttribute(run.attributes, "width", NumberText(width));
    SetAttribute(run.attributes, "customWidth", "1");
    return run.attributes != before;
  });
}

}  // namespace vantora::embedded
