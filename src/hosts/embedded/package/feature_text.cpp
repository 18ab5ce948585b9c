#include "package/feature_text.h"

#include <algorithm>
#include <deque>
#include <optional>

#include "formula/formula.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {
namespace {

using Token = XmlScanner::Token;

// Any sheet's name is as good as another where references are only moved.
class AnySheets : public SheetDirectory {
 public:
  std::optional<int> IdOf(std::string_view name) const override {
    auto found = std::ranges::find(names_, name);
    if (found == names_.end()) found = names_.emplace(names_.end(), name);
    return static_cast<int>(found - names_.begin());
  }
  const std::string& NameOf(int id) const override { return names_[id]; }
  int PositionOf(int id) const override { return id; }

 private:
  mutable std::deque<std::string> names_;
};

int Wrapped(int offset, int position, int limit) {
  if (position + offset < 1) return offset + limit;
  if (position + offset > limit) return offset - limit;
  return offset;
}

}  // namespace

std::string Reanchored(const std::string& text, CellAddress from, CellAddress to) {
  AnySheets sheets;
  Formula formula = ParseFormula(text, from, sheets);
  for (Reference& reference : formula.references) {
    if (reference.kind != Reference::Kind::kCell) continue;
    if (!reference.row1_absolute) {
      reference.row1 = reference.row2 = Wrapped(reference.row1, to.row, kMaxRow);
    }
    if (!reference.column1_absolute) {
      reference.column1 = reference.column2 = Wrapped(reference.column1, to.column, kMaxColumn);
    }
  }
  return FormulaText(formula, to, sheets);
}

Feature ReadFeature(std::string_view text) {
  Feature feature;
  XmlScanner scanner(text);
  while (scanner.Next() != Token::kStart) {
  }
  const auto attribute = scanner.Attribute("sqref");
  if (attribute) feature.sqref = *attribute;
  while (scanner.Next() != Token::kDone) {
    if (scanner.token() != Token::kStart) continue;
    std::string_view name = scanner.local_name();
    if (attribute && (name == "formula" || name == "formula1" || name == "formula2")) {
      feature.formulas.push_back({scanner.SkipElement()});
    } else if (attribute && name == "cfvo" && scanner.Attribute("type") == "formula") {
      if (auto value = scanner.Attribute("val")) feature.formulas.push_back({*value, true});
    } else if (!attribute && name == "f") {
      feature.formulas.push_back({scanner.SkipElement()});
    } else if (!attribute && name == "sqref") {
      feature.sqref = scanner.SkipElement();
    }
  }
  return feature;
}

}  // namespace vantora::embedded
