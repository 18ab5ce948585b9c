#include "package/chart_caches.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <vector>

#include "formula/lexical.h"
#include "package/sheet_reader.h"
#include "package/sheet_writer.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {
namespace {

using Token = XmlScanner::Token;

// Whole columns and the like: no chart caches so many points one by one.
constexpr std::int64_t kMostPoints = 100000;

struct SheetArea {
  int sheet;
  Area area;
};

// The areas of a text that is nothing but references; nullopt for other texts.
std::optional<std::vector<SheetArea>> PureReferences(const Formula& formula) {
  std::string_view text = formula.text;
  if (text.find_first_not_of("\x01(), ") != std::string_view::npos) return std::nullopt;
  std::vector<SheetArea> areas;
  for (const Reference& reference : formula.references) {
    std::optional<Area> area = reference.At({1, 1});
    if (!area || reference.first_sheet == Reference::kOwnSheet ||
        reference.first_sheet != reference.last_sheet) {
      return std::nullopt;
    }
    areas.push_back({reference.first_sheet, *area});
  }
  if (areas.empty()) return std::nullopt;
  return areas;
}

// The areas that a series refers to, directly or by a name; nullopt when that can't be told.
std::optional<std::vector<SheetArea>> AreasOf(std::string_view text, const WorkbookModel& model) {
  Formula formula = ParseFormula(text, {1, 1}, model);
  if (auto areas = PureReferences(formula)) return areas;
  if (!formula.references.empty() || formula.names.size() != 1) return std::nullopt;
  std::string_view name = formula.names.front();
  std::size_t mark = name.rfind('!');
  int sheet = -1;
  if (mark != std::string_view::npos) {
    sheet = model.IdOf(name.substr(0, mark)).value_or(-1);
    name.remove_prefix(mark + 1);
  }
  const DefinedName* defined = model.FindName(name, sheet);
  if (!defined) return std::nullopt;
  return PureReferences(ParseFormula(defined->refers_to, {1, 1}, model));
}

// As a cell of the standard format shows it: at most 15 digits.
std::string ShownNumber(double number) {
  char buffer[40];
  auto [end, error] =
      std::to_chars(buffer, buffer + sizeof buffer, number, std::chars_format::general, 15);
  return std::string(buffer, end);
}

struct Point {
  std::size_t begin = 0;
  std::size_t end = 0;
  std::string_view value;  // raw
};

// One numCache or strCache, or one level of a multiLvlStrCache.
struct Cache {
  bool numeric = false;
  std::string prefix;
  std::string_view count;        // raw
  std::size_t points_begin = 0;  // where points come
  std::map<int, Point> points;
  // Where the whole element stands.
  std::size_t begin = 0;
  std::size_t end = 0;
  bool is_empty = false;
};

// A multiLvlStrCache: the innermost categories come first.
struct LevelCache {
  std::string prefix;
  std::string_view count;  // raw
  std::vector<Cache> levels;
};

class CacheUpdater {
 public:
  CacheUpdater(std::string_view text, WorkbookModel& model,
               const std::function<bool(int, const Area&)>& concerns)
      : xml_(text), patch_(text), model_(model), concerns_(concerns) {}

  std::optional<std::string> Run() {
    while (xml_.Next() != Token::kDone) {
      if (xml_.token() != Token::kStart || xml_.is_empty()) continue;
      const std::string_view name = xml_.local_name();
      if (name == "numRef" || name == "strRef" || name == "multiLvlStrRef") ReadReference();
    }
    if (patch_.empty()) return std::nullopt;
    return patch_.Apply();
  }

 private:
  void ReadReference() {
    std::string formula;
    while (xml_.Next() != Token::kEnd) {
      if (xml_.token() != Token::kStart) continue;
      std::string_view name = xml_.local_name();
      if (name == "f") {
        formula = xml_.ElementText();
      } else if ((name == "numCache" || name == "strCache") && !xml_.is_empty()) {
        Cache cache;
        cache.numeric = name == "numCache";
        ReadCache(cache);
        Update(formula, cache);
      } else if (name == "multiLvlStrCache" && !xml_.is_empty()) {
        UpdateLevels(formula, ReadLevels());
      } else {
        xml_.SkipElement();
      }
    }
  }

  std::string Prefix() const {
    std::string_view full = xml_.name();
    return std::string(full.substr(0, full.size() - xml_.local_name().size()));
  }

  LevelCache ReadLevels() {
    LevelCache cache;
    cache.prefix = Prefix();
    while (xml_.Next() != Token::kEnd) {
      if (xml_.token() != Token::kStart) continue;
      if (xml_.local_name() == "lvl") {
        Cache& level = cache.levels.emplace_back();
        level.begin = xml_.begin();
        level.is_empty = xml_.is_empty();
        if (!level.is_empty) ReadCache(level);
        level.end = xml_.end();
        continue;
      }
      if (xml_.local_name() == "ptCount") {
        cache.count = xml_.Attribute("val").value_or(std::string_view{});
      }
      xml_.SkipElement();
    }
    return cache;
  }

  void ReadCache(Cache& cache) {
    cache.prefix = Prefix();
    cache.points_begin = xml_.end();
    while (xml_.Next() != Token::kEnd) {
      if (xml_.token() != Token::kStart) continue;
      std::string_view name = xml_.local_name();
      if (name == "pt") {
        ReadPoint(cache);
        continue;
      }
      if (name == "ptCount") cache.count = xml_.Attribute("val").value_or(std::string_view{});
      xml_.SkipElement();
      if (name != "extLst" && cache.points.empty()) cache.points_begin = xml_.end();
    }
  }

  void ReadPoint(Cache& cache) {
    int index = -1;
    std::string_view text = xml_.Attribute("idx").value_or("");
    std::from_chars(text.data(), text.data() + text.size(), index);
    Point point;
    point.begin = xml_.begin();
    if (!xml_.is_empty()) {
      while (xml_.Next() != Token::kEnd) {
        if (xml_.token() != Token::kStart) continue;
        bool is_value = xml_.local_name() == "v";
        std::string_view inner = xml_.SkipElement();
        if (is_value) point.value = inner;
      }
    }
    point.end = xml_.end();
    cache.points[index] = point;
  }

  void Update(const std::string& formula, const Cache& cache) {
    auto areas = AreasOf(formula, model_);
    if (!areas || !cache.count.data()) return;
    std::int64_t size = 0;
    bool concerned = false;
    for (const SheetArea& area : *areas) {
      size += std::int64_t{area.area.rows()} * area.area.columns();
      concerned |= concerns_(area.sheet, area.area);
    }
    if (!concerned || size > kMostPoints) return;
    UpdateCount(cache.count, size);
    int index = 0;
    std::size_t place = cache.points_begin;
    for (const SheetArea& area : *areas) {
      for (int row = area.area.first_row; row <= area.area.last_row; ++row) {
        for (int column = area.area.first_column; column <= area.area.last_column; ++column) {
          UpdatePoint(cache, index++, model_.sheets[area.sheet]->cells.Get({row, column}), place);
        }
      }
    }
    RemovePointsFrom(size, cache);
  }

  void UpdateCount(std::string_view written, std::int64_t size) {
    if (std::string count = std::to_string(size); count != written) patch_.Replace(written, count);
  }

  void RemovePointsFrom(std::int64_t size, const Cache& cache) {
    for (const auto& [number, point] : cache.points) {
      if (number < 0 || number >= size) patch_.Replace(point.begin, point.end, "");
    }
  }

  // Categories in several levels: one column for each level, or one row.
  void UpdateLevels(const std::string& formula, const LevelCache& cache) {
    auto areas = AreasOf(formula, model_);
    if (!areas || areas->size() != 1 || !cache.count.data() || cache.levels.empty()) return;
    const int sheet = areas->front().sheet;
    const Area area = areas->front().area;
    if (!concerns_(sheet, area)) return;
    if (std::int64_t{area.rows()} * area.columns() > kMostPoints) return;
    const int known = static_cast<int>(cache.levels.size());
    // Where columns were inserted, one of the two still fits.
    const bool in_columns = area.columns() == known ||
                            (area.rows() != known && cache.count == std::to_string(area.rows()));
    const int levels = in_columns ? area.columns() : area.rows();
    const int size = in_columns ? area.rows() : area.columns();
    UpdateCount(cache.count, size);
    const auto cell_at = [&](int level, int index) {
      const CellAddress cell = in_columns
                                   ? CellAddress{area.first_row + index, area.last_column - level}
                                   : CellAddress{area.last_row - level, area.first_column + index};
      return model_.sheets[sheet]->cells.Get(cell);
    };
    for (int level = 0; level < levels; ++level) {
      UpdateLevel(cache, level, size, [&](int i) { return cell_at(level, i); });
    }
    for (int level = levels; level < known; ++level) {
      patch_.Replace(cache.levels[level].begin, cache.levels[level].end, "");
    }
  }

  // `cell_at(i)` gives the cell of the level's category i.
  template <typename CellAt>
  void UpdateLevel(const LevelCache& cache, int number, int size, CellAt&& cell_at) {
    const bool is_known = number < static_cast<int>(cache.levels.size());
    const Cache& level = is_known ? cache.levels[number] : cache.levels.back();
    if (is_known && !level.is_empty) {
      std::size_t place = level.points_begin;
      for (int i = 0; i < size; ++i) UpdatePoint(level, i, cell_at(i), place);
      RemovePointsFrom(size, level);
      return;
    }
    std::string points;
    for (int i = 0; i < size; ++i) points += NewPoint(cache.prefix, i, cell_at(i), false);
    const std::string element = "<" + cache.prefix + "lvl>" + points + "</" + cache.prefix + "lvl>";
    if (!is_known) {
      patch_.Insert(level.end, element);
    } else if (!points.empty()) {
      patch_.Replace(level.begin, level.end, element);
    }
  }

  // "" for a cell that makes none.
  std::string NewPoint(const std::string& prefix, int index, const Cell& cell, bool numeric) const {
    const std::optional<std::string> value = ValueOf(cell, numeric);
    if (!value) return "";
    return "<" + prefix + "pt idx=\"" + std::to_string(index) + "\"><" + prefix + "v>" +
           EncodeXmlText(*value) + "</" + prefix + "v></" + prefix + "pt>";
  }

  // `place` is the end of the point before.
  void UpdatePoint(const Cache& cache, int index, const Cell& cell, std::size_t& place) {
    auto old = cache.points.find(index);
    std::optional<std::string> value = ValueOf(cell, cache.numeric);
    if (old == cache.points.end()) {
      if (value) patch_.Insert(place, NewPoint(cache.prefix, index, cell, cache.numeric));
      return;
    }
    const Point& point = old->second;
    place = point.end;
    if (!value) {
      patch_.Replace(point.begin, point.end, "");
    } else if (point.value.data() && !IsSame(point.value, *value, cell)) {
      patch_.Replace(point.value, EncodeXmlText(*value));
    }
  }

  // What a point of the cell says; nullopt when there is none.
  std::optional<std::string> ValueOf(const Cell& cell, bool numeric) const {
    switch (cell.value.kind) {
      case CellKind::kNumber:
        return numeric ? NumberText(cell.value.number) : ShownNumber(cell.value.number);
      case CellKind::kText:
        // A number's place with a text in it is drawn as zero.
        return numeric ? "0" : model_.strings[cell.value.text];
      case CellKind::kBoolean:
        if (numeric) return cell.value.boolean ? "1" : "0";
        return cell.value.boolean ? "TRUE" : "FALSE";
      case CellKind::kError:
        return std::string(NameOfError(cell.value.error));
      default:
        return std::nullopt;
    }
  }

  // The point says the same already, perhaps otherwise written. A number shown as a text keeps its
  // format as long as the cell keeps its value.
  static bool IsSame(std::string_view raw, const std::string& value, const Cell& cell) {
    std::string text = DecodeXml(raw);
    if (text == value) return true;
    if (cell.value.kind != CellKind::kNumber) return false;
    double number = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error == std::errc() && end == text.data() + text.size()) {
      return number == cell.value.number;
    }
    return !(cell.flags & kValueChanged);
  }

  XmlScanner xml_;
  TextPatch patch_;
  WorkbookModel& model_;
  const std::function<bool(int, const Area&)>& concerns_;
};

}  // namespace

std::optional<std::string> UpdateChartCaches(
    std::string_view text, WorkbookModel& model,
    const std::function<bool(int, const Area&)>& concerns) {
  return CacheUpdater(text, model, concerns).Run();
}

}  // namespace vantora::embedded
