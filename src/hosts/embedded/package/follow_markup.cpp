#include "package/follow_markup.h"

#include "package/markup_follower.h"

namespace vantora::embedded {
namespace {

constexpr auto kAreas = FollowRule::Kind::kAreas;
constexpr auto kFormula = FollowRule::Kind::kFormula;

// What a sheet shows (<selection>, <pane>, top left cells) is not among them: Excel leaves the
// selection, the split and the scroll position at their addresses.
constexpr FollowRule kSheetRules[] = {
    {"mergeCell", "ref", kAreas},
    {"conditionalFormatting", "sqref", kAreas},
    {"formula", "", kFormula},
    {"cfvo", "val", kFormula},
    {"dataValidation", "sqref", kAreas},
    {"formula1", "", kFormula},
    {"formula2", "", kFormula},
    {"hyperlink", "ref", kAreas},
    {"autoFilter", "ref", kAreas},
    {"sortState", "ref", kAreas},
    {"sortCondition", "ref", kAreas},
    {"protectedRange", "sqref", kAreas},
    {"scenarios", "sqref", kAreas},
    {"inputCells", "r", kAreas},
    {"ignoredError", "sqref", kAreas},
    {"cellWatch", "r", kAreas},
    {"cellSmartTags", "r", kAreas},
    {"webPublishItem", "sourceRef", kAreas},
    {"controlPr", "linkedCell", kFormula},
    {"controlPr", "listFillRange", kFormula},
    // The extension lists: conditional formats, validations, sparklines and others.
    {"sqref", "", kAreas},
    {"f", "", kFormula},
};

// A break's id is the 0-based column that it stands left of.
void FollowColumnBreaks(const XmlScanner& at, MarkupFollower& follower) {
  VisitInside(at, XmlScanner::Mode::kStrict, [&](XmlScanner& scanner) {
    std::string_view piece = AttributeOf(scanner, "id");
    std::optional<int> id = ReadNumber(piece);
    if (scanner.local_name() != "brk" || !id || *id >= kMaxColumn) return;
    follower.ReplaceNumber(piece, *id, follower.Follow(*id + 1) - 1);
  });
}

// A source of a consolidation names its sheet; with a relationship it lies in another file.
void FollowDataReference(const XmlScanner& at, MarkupFollower& follower) {
  std::string_view sheet_name = AttributeOf(at, "sheet");
  if (HasRelationshipId(at)) return;
  std::optional<int> sheet = follower.sheet();
  if (!sheet_name.empty()) sheet = follower.sheets()->IdOf(DecodeXml(sheet_name));
  if (sheet) follower.FollowAreas(AttributeOf(at, "ref"), *sheet);
}

void FollowElement(std::string_view text, MarkupFollower& follower) {
  follower.Walk(XmlScanner(text), kSheetRules, [&](const XmlScanner& scanner) {
    std::string_view name = scanner.local_name();
    if (name == "autoFilter") {
      FollowFilterColumns(scanner, follower);
    } else if (name == "colBreaks") {
      FollowColumnBreaks(scanner, follower);
    } else if (name == "dataRef") {
      FollowDataReference(scanner, follower);
    } else if (name == "anchor") {
      FollowObjectAnchor(scanner, follower);
    }
  });
}

}  // namespace

bool FollowInSheetMarkup(SheetMarkup& markup, int sheet,
                         std::span<const ColumnInsertion> insertions,
                         const SheetDirectory& sheets) {
  bool changed = false;
  for (MarkupElement& element : markup.elements) {
    if (element.text.empty()) continue;
    MarkupFollower follower(element.text, sheet, insertions, &sheets);
    FollowElement(element.text, follower);
    if (auto followed = follower.Result()) {
      element.text = std::move(*followed);
      changed = true;
    }
  }
  if (changed) markup.changed = true;
  return changed;
}

}  // namespace vantora::embedded
