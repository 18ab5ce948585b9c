// Anchors and linked cells of drawings: the drawing parts, legacy drawings, comments and the
// properties of form controls.
#include <vector>

#include "package/follow_markup.h"
#include "package/markup_follower.h"

namespace vantora::embedded {
namespace {

constexpr auto kAreas = FollowRule::Kind::kAreas;
constexpr auto kFormula = FollowRule::Kind::kFormula;

constexpr FollowRule kDrawingRules[] = {
    {"sp", "textlink", kFormula},
    {"cameraTool", "cellRange", kFormula},
};

constexpr FollowRule kVmlRules[] = {
    {"FmlaLink", "", kFormula}, {"FmlaRange", "", kFormula}, {"FmlaGroup", "", kFormula},
    {"FmlaPict", "", kFormula}, {"FmlaTxbx", "", kFormula},
};

constexpr FollowRule kCommentRules[] = {
    {"comment", "ref", kAreas},
    {"threadedComment", "ref", kAreas},
};

constexpr FollowRule kControlRules[] = {
    {"formControlPr", "fmlaLink", kFormula},
    {"formControlPr", "fmlaRange", kFormula},
    {"formControlPr", "fmlaGroup", kFormula},
    {"formControlPr", "fmlaTxbx", kFormula},
};

Placement PlacementOf(std::string_view edit_as) {
  if (edit_as == "oneCell") return Placement::kMove;
  if (edit_as == "absolute") return Placement::kStay;
  return Placement::kMoveAndSize;
}

// An element whose presence says yes unless its text says no.
bool IsSet(std::string_view raw) {
  std::string_view value = TrimBlanks(raw);
  return value != "False" && value != "false" && value != "f" && value != "0";
}

// The <x:ClientData> of a shape, as views into the text.
struct ClientData {
  bool is_note = false;
  // As Excel writes them, the elements MoveWithCells and SizeWithCells mean the opposite of what
  // they are called: an object that has the first keeps its place, one that has the second its
  // size.
  bool keeps_place = false;
  bool keeps_size = false;
  std::string_view anchor;
  std::string_view column;

  Placement placement() const {
    if (keeps_place) return Placement::kStay;
    return keeps_size ? Placement::kMove : Placement::kMoveAndSize;
  }
};

ClientData ReadClientData(const XmlScanner& at) {
  ClientData data;
  data.is_note = AttributeOf(at, "ObjectType") == "Note";
  VisitInside(at, XmlScanner::Mode::kLenient, [&](XmlScanner& scanner) {
    std::string_view name = scanner.local_name();
    if (name == "MoveWithCells") {
      data.keeps_place = IsSet(scanner.SkipElement());
    } else if (name == "SizeWithCells") {
      data.keeps_size = IsSet(scanner.SkipElement());
    } else if (name == "Anchor") {
      data.anchor = scanner.SkipElement();
    } else if (name == "Column") {
      data.column = TrimBlanks(scanner.SkipElement());
    }
  });
  return data;
}

// Left column, offset, top row, offset, right column, offset, bottom row, offset.
void FollowVmlAnchor(std::string_view text, Placement placement, MarkupFollower& follower) {
  std::vector<std::string_view> pieces;
  std::vector<int> numbers;
  while (true) {
    std::size_t comma = text.find(',');
    pieces.push_back(TrimBlanks(text.substr(0, comma)));
    std::optional<int> number = ReadNumber(pieces.back());
    if (!number) return;
    numbers.push_back(*number);
    if (comma == std::string_view::npos) break;
    text.remove_prefix(comma + 1);
  }
  if (numbers.size() != 8) return;
  AnchorColumns was{numbers[0], numbers[4], numbers[5] == 0};
  AnchorColumns is = follower.Follow(was, placement);
  follower.ReplaceNumber(pieces[0], was.from, is.from);
  follower.ReplaceNumber(pieces[4], was.to, is.to);
}

}  // namespace

std::optional<std::string> FollowInDrawing(std::string_view text, int sheet,
                                           std::span<const ColumnInsertion> insertions,
                                           const SheetDirectory& sheets) {
  MarkupFollower follower(text, sheet, insertions, &sheets);
  follower.Walk(XmlScanner(text), kDrawingRules, [&](const XmlScanner& scanner) {
    if (scanner.local_name() == "twoCellAnchor") {
      FollowAnchor(scanner, PlacementOf(AttributeOf(scanner, "editAs")), follower);
    } else if (scanner.local_name() == "oneCellAnchor") {
      FollowAnchor(scanner, Placement::kMove, follower);
    }
  });
  return follower.Result();
}

std::optional<std::string> FollowInVmlDrawing(std::string_view text, int sheet,
                                              std::span<const ColumnInsertion> insertions,
                                              const SheetDirectory& sheets) {
  MarkupFollower follower(text, sheet, insertions, &sheets);
  XmlScanner scanner(text, XmlScanner::Mode::kLenient);
  follower.Walk(scanner, kVmlRules, [&](const XmlScanner& at) {
    if (at.local_name() != "ClientData") return;
    ClientData data = ReadClientData(at);
    FollowVmlAnchor(data.anchor, data.placement(), follower);
    std::optional<int> column = ReadNumber(data.column);
    if (!data.is_note || !column) return;
    follower.ReplaceNumber(data.column, *column, follower.Follow(*column + 1) - 1);
  });
  return follower.Result();
}

std::optional<std::string> FollowInComments(std::string_view text, int sheet,
                                            std::span<const ColumnInsertion> insertions) {
  MarkupFollower follower(text, sheet, insertions, nullptr);
  follower.Walk(XmlScanner(text), kCommentRules, [&](const XmlScanner& scanner) {
    if (scanner.local_name() == "anchor") FollowObjectAnchor(scanner, follower);
  });
  return follower.Result();
}

std::optional<std::string> FollowInControlProperties(std::string_view text, int sheet,
                                                     std::span<const ColumnInsertion> insertions,
                                                     const SheetDirectory& sheets) {
  MarkupFollower follower(text, sheet, insertions, &sheets);
  follower.Walk(XmlScanner(text), kControlRules, [](const XmlScanner&) {});
  return follower.Result();
}

}  // namespace vantora::embedded
