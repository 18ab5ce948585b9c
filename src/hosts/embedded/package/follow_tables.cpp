// Tables, pivot tables and charts: the parts that take their data from areas of cells.
#include <algorithm>
#include <set>
#include <vector>

#include "package/follow_markup.h"
#include "package/markup_follower.h"

namespace vantora::embedded {
namespace {

constexpr auto kAreas = FollowRule::Kind::kAreas;
constexpr auto kFormula = FollowRule::Kind::kFormula;

constexpr FollowRule kChartRules[] = {{"f", "", kFormula}, {"sqref", "", kFormula}};

constexpr FollowRule kTableRules[] = {
    {"table", "ref", kAreas},
    {"autoFilter", "ref", kAreas},
    {"sortState", "ref", kAreas},
    {"sortCondition", "ref", kAreas},
    {"calculatedColumnFormula", "", kFormula},
    {"totalsRowFormula", "", kFormula},
};

// Column names of a table differ without regard to (ASCII) case.
std::string Folded(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

// The columns of a table as they stand in its part, and those that come in between.
class TableColumns {
 public:
  void ReadTable(const XmlScanner& at) {
    area_ = ParseA1(AttributeOf(at, "ref"));
    has_headers_ = AttributeOf(at, "headerRowCount") != "0";
  }
  void ReadColumns(const XmlScanner& at) {
    count_ = AttributeOf(at, "count");
    VisitInside(at, XmlScanner::Mode::kStrict, [&](XmlScanner& scanner) {
      if (scanner.local_name() != "tableColumn") return;
      tag_ = scanner.name();
      // An inner scanner's places count from the element it began with.
      const std::size_t place = at.begin() + scanner.begin();
      columns_.push_back({place, {}});
      names_.insert(Folded(DecodeSpreadsheetText(AttributeOf(scanner, "name"))));
      last_id_ = std::max(last_id_, ReadNumber(AttributeOf(scanner, "id")).value_or(0));
    });
  }

  void Follow(MarkupFollower& follower, std::vector<TableHeader>* headers) {
    if (!area_ || columns_.empty()) return;
    Area area = *area_;
    for (const ColumnInsertion& insertion : follower.insertions()) {
      if (insertion.sheet != follower.sheet() || insertion.column > area.last_column) continue;
      if (insertion.column > area.first_column) {
        AddColumns(insertion.column - area.first_column, insertion.count);
      } else {
        area.first_column += insertion.count;
      }
      area.last_column += insertion.count;
    }
    Write(follower.patch());
    if (!headers || !has_headers_) return;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      if (!columns_[i].new_name.empty()) {
        int column = area.first_column + static_cast<int>(i);
        headers->push_back({{area.first_row, column}, columns_[i].new_name});
      }
    }
  }

 private:
  struct Column {
    std::size_t place = 0;  // of its tag, unless it is new
    std::string new_name;
  };

  void AddColumns(int at, int count) {
    auto place = columns_.begin() + std::min<std::size_t>(at, columns_.size() - 1);
    std::vector<Column> added(count);
    for (Column& column : added) column.new_name = FreeName();
    columns_.insert(place, added.begin(), added.end());
  }

  std::string FreeName() {
    for (;; ++last_number_) {
      std::string name = "Column" + std::to_string(last_number_);
      if (names_.insert(Folded(name)).second) return name;
    }
  }

  void Write(TextPatch& patch) {
    std::string added;
    for (const Column& column : columns_) {
      if (!column.new_name.empty()) {
        added += "<" + std::string(tag_) + " id=\"" + std::to_string(++last_id_) + "\" name=\"" +
                 column.new_name + "\"/>";
      } else if (!added.empty()) {
        patch.Insert(column.place, added);
        added.clear();
      }
    }
    std::optional<int> count = ReadNumber(count_);
    const int now = static_cast<int>(columns_.size());
    if (count && *count != now && HasNew()) patch.Replace(count_, std::to_string(now));
  }

  bool HasNew() const {
    return std::ranges::any_of(columns_, [](const Column& c) { return !c.new_name.empty(); });
  }

  std::optional<Area> area_;
  bool has_headers_ = true;
  std::string_view count_;
  std::string_view tag_;
  std::vector<Column> columns_;
  std::set<std::string> names_;
  int last_id_ = 0;
  int last_number_ = 1;
};

// Excel refuses to insert within a pivot table: it only ever moves as a whole.
void FollowPivotLocation(const XmlScanner& at, MarkupFollower& follower) {
  std::string_view piece = AttributeOf(at, "ref");
  std::optional<Area> area = ParseA1(piece);
  if (!area) return;
  const int width = area->columns();
  Area moved = *area;
  moved.first_column = follower.Follow(area->first_column);
  moved.last_column = std::min(moved.first_column + width - 1, kMaxColumn);
  if (moved != *area) follower.patch().Replace(piece, ToA1(moved));
}

// A source in another workbook has a relationship; one by a name has no area.
void FollowPivotSource(const XmlScanner& at, MarkupFollower& follower) {
  if (HasRelationshipId(at)) return;
  std::optional<int> sheet = follower.sheet();
  std::string_view name = AttributeOf(at, "sheet");
  if (!name.empty()) sheet = follower.sheets()->IdOf(DecodeXml(name));
  if (sheet) follower.FollowAreas(AttributeOf(at, "ref"), *sheet);
}

}  // namespace

std::optional<std::string> FollowInChart(std::string_view text,
                                         std::span<const ColumnInsertion> insertions,
                                         const SheetDirectory& sheets) {
  MarkupFollower follower(text, /*sheet=*/-1, insertions, &sheets);
  follower.Walk(XmlScanner(text), kChartRules, [](const XmlScanner&) {});
  return follower.Result();
}

std::optional<std::string> FollowInTable(std::string_view text, int sheet,
                                         std::span<const ColumnInsertion> insertions,
                                         const SheetDirectory& sheets,
                                         std::vector<TableHeader>* headers) {
  MarkupFollower follower(text, sheet, insertions, &sheets);
  TableColumns columns;
  follower.Walk(XmlScanner(text), kTableRules, [&](const XmlScanner& scanner) {
    if (scanner.local_name() == "table") {
      columns.ReadTable(scanner);
    } else if (scanner.local_name() == "tableColumns") {
      columns.ReadColumns(scanner);
    } else if (scanner.local_name() == "autoFilter") {
      FollowFilterColumns(scanner, follower);
    }
  });
  columns.Follow(follower, headers);
  return follower.Result();
}

std::optional<std::string> FollowInPivot(std::string_view text, int sheet,
                                         std::span<const ColumnInsertion> insertions,
                                         const SheetDirectory& sheets) {
  MarkupFollower follower(text, sheet, insertions, &sheets);
  follower.Walk(XmlScanner(text), {}, [&](const XmlScanner& scanner) {
    std::string_view name = scanner.local_name();
    if (name == "location") FollowPivotLocation(scanner, follower);
    if (name == "worksheetSource" || name == "rangeSet") FollowPivotSource(scanner, follower);
  });
  return follower.Result();
}

}  // namespace vantora::embedded
