#include "package/markup_follower.h"

#include <algorithm>
#include <charconv>

namespace vantora::embedded {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr int kLargestNumber = 1 << 28;

bool IsTrue(std::string_view value) { return value == "1" || value == "true"; }

// The text of one marker (<from> or <to>): the column's digits and the offset in it.
struct Marker {
  std::string_view column;
  std::string_view offset;
};

Marker ReadMarker(const XmlScanner& at) {
  Marker marker;
  VisitInside(at, XmlScanner::Mode::kStrict, [&](XmlScanner& scanner) {
    if (scanner.local_name() == "col") {
      marker.column = TrimBlanks(scanner.SkipElement());
    } else if (scanner.local_name() == "colOff") {
      marker.offset = TrimBlanks(scanner.SkipElement());
    }
  });
  return marker;
}

}  // namespace

std::string_view TrimBlanks(std::string_view text) {
  std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return text.substr(0, 0);
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::optional<int> ReadNumber(std::string_view text) {
  text = TrimBlanks(text);
  int number = 0;
  auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (number < -kLargestNumber || number > kLargestNumber) return std::nullopt;
  return number;
}

std::string_view AttributeOf(const XmlScanner& scanner, std::string_view name) {
  return scanner.Attribute(name).value_or(std::string_view());
}

bool HasRelationshipId(const XmlScanner& scanner) {
  return std::ranges::any_of(scanner.attributes(), [](const XmlAttribute& attribute) {
    return attribute.name != "id" && LocalName(attribute.name) == "id";
  });
}

Area MarkupFollower::Follow(Area area, int sheet) const {
  if (area.IsWholeRows()) return area;
  for (const ColumnInsertion& insertion : insertions_) {
    if (insertion.sheet != sheet || area.last_column < insertion.column) continue;
    if (area.first_column >= insertion.column) area.first_column += insertion.count;
    area.last_column += insertion.count;
  }
  area.first_column = std::min(area.first_column, kMaxColumn);
  area.last_column = std::min(area.last_column, kMaxColumn);
  return area;
}

int MarkupFollower::Follow(int column) const {
  return Follow(Area{1, column, 1, column}, sheet_).first_column;
}

AnchorColumns MarkupFollower::Follow(AnchorColumns anchor, Placement placement) const {
  if (placement == Placement::kStay) return anchor;
  for (const ColumnInsertion& insertion : insertions_) {
    if (insertion.sheet != sheet_) continue;
    const int column = insertion.column - 1;
    const bool moves = anchor.from >= column;
    const bool grows = placement == Placement::kMoveAndSize &&
                       (anchor.to > column || (anchor.to == column && !anchor.ends_at_border));
    if (moves) anchor.from += insertion.count;
    if (moves || grows) anchor.to += insertion.count;
  }
  anchor.from = std::min(anchor.from, kMaxColumn - 1);
  anchor.to = std::min(anchor.to, kMaxColumn - 1);
  return anchor;
}

void MarkupFollower::FollowAreas(std::string_view piece, int sheet) {
  for (std::size_t at = piece.find_first_not_of(kBlanks); at != std::string_view::npos;
       at = piece.find_first_not_of(kBlanks, at)) {
    std::size_t end = std::min(piece.find_first_of(kBlanks, at), piece.size());
    std::string_view written = piece.substr(at, end - at);
    at = end;
    std::optional<Area> area = ParseA1(written);
    if (!area) continue;
    Area followed = Follow(*area, sheet);
    if (followed == *area) continue;
    std::string text = ToA1(followed);
    // "C3:C3" stays written with both corners.
    if (written.find(':') != std::string_view::npos && text.find(':') == std::string::npos) {
      text = text + ":" + text;
    }
    patch_.Replace(written, text);
  }
}

void MarkupFollower::FollowFormula(std::string_view piece, bool is_attribute) {
  piece = TrimBlanks(piece);
  if (piece.starts_with('=')) piece.remove_prefix(1);
  if (piece.empty() || !sheets_) return;
  std::optional<std::string> followed =
      FollowInsertionsInText(DecodeXml(piece), sheet_, insertions_, *sheets_);
  if (!followed) return;
  patch_.Replace(piece, is_attribute ? EncodeXmlAttribute(*followed) : EncodeXmlText(*followed));
}

void MarkupFollower::ReplaceNumber(std::string_view piece, int was, int is) {
  if (was != is) patch_.Replace(piece, std::to_string(is));
}

void MarkupFollower::Apply(const FollowRule& rule, std::string_view piece) {
  if (rule.kind == FollowRule::Kind::kAreas) {
    FollowAreas(piece, sheet_);
  } else {
    FollowFormula(piece, !rule.attribute.empty());
  }
}

std::optional<std::string> MarkupFollower::Result() const {
  if (patch_.empty()) return std::nullopt;
  return patch_.Apply();
}

void FollowAnchor(const XmlScanner& at, Placement placement, MarkupFollower& follower) {
  Marker from;
  Marker to;
  VisitInside(at, XmlScanner::Mode::kStrict, [&](XmlScanner& scanner) {
    if (scanner.local_name() == "from" && from.column.empty()) from = ReadMarker(scanner);
    if (scanner.local_name() == "to" && to.column.empty()) to = ReadMarker(scanner);
  });
  std::optional<int> first = ReadNumber(from.column);
  if (!first) return;
  std::optional<int> last = ReadNumber(to.column);
  AnchorColumns was{*first, last.value_or(*first), ReadNumber(to.offset) == 0};
  AnchorColumns is = follower.Follow(was, placement);
  follower.ReplaceNumber(from.column, was.from, is.from);
  if (last) follower.ReplaceNumber(to.column, was.to, is.to);
}

void FollowObjectAnchor(const XmlScanner& at, MarkupFollower& follower) {
  const bool moves = IsTrue(AttributeOf(at, "moveWithCells"));
  const bool sizes = IsTrue(AttributeOf(at, "sizeWithCells"));
  FollowAnchor(at,
               !moves  ? Placement::kStay
               : sizes ? Placement::kMoveAndSize
                       : Placement::kMove,
               follower);
}

void FollowFilterColumns(const XmlScanner& at, MarkupFollower& follower) {
  std::optional<Area> area = ParseA1(AttributeOf(at, "ref"));
  if (!area) return;
  const int first = follower.Follow(*area, follower.sheet()).first_column;
  VisitInside(at, XmlScanner::Mode::kStrict, [&](XmlScanner& scanner) {
    if (scanner.local_name() != "filterColumn") return;
    std::string_view piece = AttributeOf(scanner, "colId");
    std::optional<int> id = ReadNumber(piece);
    if (!id) return;
    follower.ReplaceNumber(piece, *id, follower.Follow(area->first_column + *id) - first);
  });
}

}  // namespace vantora::embedded
