// What the functions of follow_markup.h share: a text of markup, the insertions it follows, and the
// patches that this takes.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "formula/formula.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {

// How an object over the cells keeps its place.
enum class Placement { kMoveAndSize, kMove, kStay };

// 0-based columns of an object's edges.
struct AnchorColumns {
  int from = 0;
  int to = 0;
  // The right edge lies on the left border of `to`: a column inserted there is outside the object.
  bool ends_at_border = false;
};

// Where an attribute or an element's text holds places of the sheet or formulas.
struct FollowRule {
  enum class Kind { kAreas, kFormula };
  // Local name.
  std::string_view element;
  // As written; "" for the element's text.
  std::string_view attribute;
  Kind kind;
};

class MarkupFollower {
 public:
  // All must outlive it. `sheet` is the id of the sheet that areas lie on and formulas belong to,
  // -1 for none; `sheets` may be null when there are no formulas.
  MarkupFollower(std::string_view text, int sheet, std::span<const ColumnInsertion> insertions,
                 const SheetDirectory* sheets)
      : sheet_(sheet), insertions_(insertions), sheets_(sheets), patch_(text) {}

  int sheet() const { return sheet_; }
  const SheetDirectory* sheets() const { return sheets_; }
  std::span<const ColumnInsertion> insertions() const { return insertions_; }
  TextPatch& patch() { return patch_; }

  // A place after the insertions of `sheet`; what would leave the sheet stays at its edge.
  Area Follow(Area area, int sheet) const;
  // A 1-based column after the insertions of the own sheet.
  int Follow(int column) const;
  AnchorColumns Follow(AnchorColumns anchor, Placement placement) const;

  // Pieces are views into the text.
  void FollowAreas(std::string_view piece, int sheet);
  void FollowFormula(std::string_view piece, bool is_attribute);
  // Replaces a number when it differs.
  void ReplaceNumber(std::string_view piece, int was, int is);

  // Applies the rules to all elements from the scanner's place on, and calls `on_start` (void
  // (const XmlScanner&)) at each start tag for what they can't say.
  template <typename OnStart>
  void Walk(XmlScanner scanner, std::span<const FollowRule> rules, OnStart on_start);

  // The text with the patches; nullopt when there is none.
  std::optional<std::string> Result() const;

 private:
  void Apply(const FollowRule& rule, std::string_view piece);

  int sheet_;
  std::span<const ColumnInsertion> insertions_;
  const SheetDirectory* sheets_;
  TextPatch patch_;
};

// `text` without the blanks around it.
std::string_view TrimBlanks(std::string_view text);
// A whole number with blanks around it; nullopt when it is none, or so large that no sheet has a
// place for it: sums of those that are read can't overflow.
std::optional<int> ReadNumber(std::string_view text);
// The attribute's value, "" when absent.
std::string_view AttributeOf(const XmlScanner& scanner, std::string_view name);
// An attribute of that local name with a prefix (r:id).
bool HasRelationshipId(const XmlScanner& scanner);

// Calls `visit` (void(XmlScanner&)) at each start tag within the element at whose start tag `at`
// stands. It may move past the element with SkipElement.
template <typename Visit>
void VisitInside(const XmlScanner& at, XmlScanner::Mode mode, Visit visit) {
  if (at.is_empty()) return;
  XmlScanner inner(at.document().substr(at.begin()), mode);
  inner.Next();
  while (true) {
    XmlScanner::Token token = inner.Next();
    if (token == XmlScanner::Token::kEnd && inner.depth() == 0) return;
    if (token == XmlScanner::Token::kDone) return;
    if (token == XmlScanner::Token::kStart) visit(inner);
  }
}

// <xdr:from> and <xdr:to> inside the element at `at`.
void FollowAnchor(const XmlScanner& at, Placement placement, MarkupFollower& follower);
// <anchor moveWithCells sizeWithCells> of form controls, embedded objects and comment properties.
void FollowObjectAnchor(const XmlScanner& at, MarkupFollower& follower);
// The column numbers of an <autoFilter>, which count from its first column. (Its area is a rule's.)
void FollowFilterColumns(const XmlScanner& at, MarkupFollower& follower);

template <typename OnStart>
void MarkupFollower::Walk(XmlScanner scanner, std::span<const FollowRule> rules, OnStart on_start) {
  using Token = XmlScanner::Token;
  for (Token token = scanner.Next(); token != Token::kDone;) {
    if (token != Token::kStart) {
      token = scanner.Next();
      continue;
    }
    const FollowRule* text_rule = nullptr;
    std::string_view name = scanner.local_name();
    for (const FollowRule& rule : rules) {
      if (rule.element != name) continue;
      if (rule.attribute.empty()) {
        text_rule = &rule;
      } else if (auto value = scanner.Attribute(rule.attribute)) {
        Apply(rule, *value);
      }
    }
    on_start(static_cast<const XmlScanner&>(scanner));
    const bool has_text = text_rule && !scanner.is_empty();
    token = scanner.Next();
    if (has_text && token == Token::kText) Apply(*text_rule, scanner.text());
  }
}

}  // namespace vantora::embedded
