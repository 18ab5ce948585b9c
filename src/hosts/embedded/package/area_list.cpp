#include "package/area_list.h"

#include <algorithm>
#include <tuple>

namespace vantora::embedded {
namespace {

void Subtract(const Area& area, const Area& cut, std::vector<Area>& rest) {
  std::optional<Area> hole = Intersection(area, cut);
  if (!hole) {
    rest.push_back(area);
    return;
  }
  auto add = [&](int first_row, int first_column, int last_row, int last_column) {
    if (first_row <= last_row && first_column <= last_column) {
      rest.push_back({first_row, first_column, last_row, last_column});
    }
  };
  add(area.first_row, area.first_column, area.last_row, hole->first_column - 1);
  add(area.first_row, hole->last_column + 1, area.last_row, area.last_column);
  add(area.first_row, hole->first_column, hole->first_row - 1, hole->last_column);
  add(hole->last_row + 1, hole->first_column, area.last_row, hole->last_column);
}

// Joins areas that follow each other below (the same columns) or to the right (the same rows).
bool JoinNeighbours(std::vector<Area>& areas, bool below) {
  auto key = [below](const Area& a) {
    return below ? std::tuple(a.first_column, a.last_column, a.first_row)
                 : std::tuple(a.first_row, a.last_row, a.first_column);
  };
  std::ranges::sort(areas, {}, key);
  std::vector<Area> joined;
  for (const Area& area : areas) {
    if (!joined.empty()) {
      Area& last = joined.back();
      if (below && last.first_column == area.first_column && last.last_column == area.last_column &&
          last.last_row + 1 == area.first_row) {
        last.last_row = area.last_row;
        continue;
      }
      if (!below && last.first_row == area.first_row && last.last_row == area.last_row &&
          last.last_column + 1 == area.first_column) {
        last.last_column = area.last_column;
        continue;
      }
    }
    joined.push_back(area);
  }
  const bool any = joined.size() != areas.size();
  areas = std::move(joined);
  return any;
}

std::vector<Area> Joined(std::vector<Area> areas) {
  bool any = true;
  while (any) {
    any = JoinNeighbours(areas, /*below=*/true);
    any = JoinNeighbours(areas, /*below=*/false) || any;
  }
  std::ranges::sort(areas);
  return areas;
}

}  // namespace

Area AreaEdit::Moved(Area area) const {
  const int rows = cut.first_row - source->first_row;
  const int columns = cut.first_column - source->first_column;
  return {area.first_row + rows, area.first_column + columns, area.last_row + rows,
          area.last_column + columns};
}

bool Covers(const Area& outer, const Area& inner) {
  return outer.first_row <= inner.first_row && inner.last_row <= outer.last_row &&
         outer.first_column <= inner.first_column && inner.last_column <= outer.last_column;
}

std::optional<Area> Intersection(const Area& a, const Area& b) {
  if (!a.Intersects(b)) return std::nullopt;
  return Area{std::max(a.first_row, b.first_row), std::max(a.first_column, b.first_column),
              std::min(a.last_row, b.last_row), std::min(a.last_column, b.last_column)};
}

std::vector<Area> ParseAreas(std::string_view sqref) {
  constexpr std::string_view kBlanks = " \t\r\n";
  std::vector<Area> areas;
  for (std::size_t at = sqref.find_first_not_of(kBlanks); at != std::string_view::npos;
       at = sqref.find_first_not_of(kBlanks, at)) {
    std::size_t end = std::min(sqref.find_first_of(kBlanks, at), sqref.size());
    if (auto area = ParseA1(sqref.substr(at, end - at))) areas.push_back(*area);
    at = end;
  }
  return areas;
}

std::string ToSqref(const std::vector<Area>& areas) {
  std::string text;
  for (const Area& area : areas) {
    if (!text.empty()) text += ' ';
    text += ToA1(area);
  }
  return text;
}

std::optional<std::vector<Area>> Edited(const std::vector<Area>& areas, const AreaEdit& edit) {
  bool touched = false;
  std::vector<Area> rest;
  for (const Area& area : areas) {
    touched = touched || area.Intersects(edit.cut);
    Subtract(area, edit.cut, rest);
    if (!edit.source) continue;
    if (auto copied = Intersection(area, *edit.source)) {
      touched = true;
      rest.push_back(edit.Moved(*copied));
    }
  }
  if (!touched) return std::nullopt;
  rest = Joined(std::move(rest));
  if (rest == Joined(areas)) return std::nullopt;
  return rest;
}

CellAddress AnchorOf(const std::vector<Area>& areas) {
  CellAddress corner{areas.front().first_row, areas.front().first_column};
  for (const Area& area : areas) {
    corner.row = std::min(corner.row, area.first_row);
    corner.column = std::min(corner.column, area.first_column);
  }
  return corner;
}

}  // namespace vantora::embedded
