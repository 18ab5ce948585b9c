#include "package/sheet_features.h"

#include <algorithm>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "formula/formula.h"
#include "package/area_list.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {
namespace {

using Token = XmlScanner::Token;

// What an edit makes of an element: nullopt leaves it as it is, an empty text removes it.
using EditedText = std::optional<std::string>;

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

// The formula as it reads at `to`, meaning the same for each cell as it did written for `from`.
// Relative references to cells wrap around at the sheet's edges, as these formulas' do.
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

// One conditional format or validation, as views into its text. The older form has its areas in an
// attribute and its formulas in elements of their own; the extension's are all elements <xm:f>.
struct Feature {
  struct FormulaPiece {
    std::string_view text;
    bool is_attribute = false;
  };
  std::string_view sqref;
  std::vector<FormulaPiece> formulas;
};

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

EditedText EditFeature(std::string_view text, const AreaEdit& edit) {
  Feature feature = ReadFeature(text);
  std::vector<Area> before = ParseAreas(feature.sqref);
  std::optional<std::vector<Area>> after = Edited(before, edit);
  if (!after) return std::nullopt;
  if (after->empty()) return "";
  TextPatch patch(text);
  patch.Replace(feature.sqref, ToSqref(*after));
  CellAddress from = AnchorOf(before);
  CellAddress to = AnchorOf(*after);
  for (const Feature::FormulaPiece& formula : feature.formulas) {
    if (from == to || formula.text.empty()) continue;
    std::string was = DecodeXml(formula.text);
    std::string is = Reanchored(was, from, to);
    if (is == was) continue;
    patch.Replace(formula.text, formula.is_attribute ? EncodeXmlAttribute(is) : EncodeXmlText(is));
  }
  return patch.Apply();
}

// Edits the children called `item` of a list, and its count; empty when it has no children left.
template <typename EditItem>
EditedText EditList(std::string_view text, std::string_view item, EditItem edit_item) {
  XmlScanner scanner(text);
  while (scanner.Next() != Token::kStart) {
  }
  if (scanner.is_empty()) return std::nullopt;
  const std::optional<std::string_view> count = scanner.Attribute("count");
  TextPatch patch(text);
  int items = 0;
  int left = 0;
  bool others = false;
  while (scanner.Next() != Token::kDone) {
    if (scanner.token() != Token::kStart) continue;
    const bool is_item = scanner.local_name() == item;
    const std::size_t begin = scanner.begin();
    scanner.SkipElement();
    if (!is_item) {
      others = true;
      continue;
    }
    ++items;
    EditedText edited = edit_item(text.substr(begin, scanner.end() - begin));
    if (edited) patch.Replace(begin, scanner.end(), *edited);
    if (!edited || !edited->empty()) ++left;
  }
  if (patch.empty()) return std::nullopt;
  if (left == 0 && !others) return "";
  if (count && left != items) patch.Replace(*count, std::to_string(left));
  return patch.Apply();
}

EditedText EditExtension(std::string_view text, unsigned features, const AreaEdit& edit) {
  auto edit_feature = [&](std::string_view item) { return EditFeature(item, edit); };
  EditedText edited;
  if (features & kConditionalFormats) {
    edited = EditList(text, "conditionalFormattings", [&](std::string_view list) {
      return EditList(list, "conditionalFormatting", edit_feature);
    });
  }
  if (!edited && (features & kValidations)) {
    edited = EditList(text, "dataValidations", [&](std::string_view list) {
      return EditList(list, "dataValidation", edit_feature);
    });
  }
  return edited;
}

// A hyperlink element for another area. Unique identifiers are not copied.
std::string CopyOfHyperlink(std::string_view text, const Area& area) {
  XmlScanner scanner(text);
  scanner.Next();
  TextPatch patch(text);
  for (const XmlAttribute& attribute : scanner.attributes()) {
    if (attribute.name == "ref") patch.Replace(attribute.value, ToA1(area));
    if (LocalName(attribute.name) != "uid") continue;
    // With the blank before it.
    std::size_t begin = static_cast<std::size_t>(attribute.name.data() - text.data()) - 1;
    std::size_t end = static_cast<std::size_t>(attribute.value.data() - text.data());
    patch.Replace(begin, end + attribute.value.size() + 1, "");
  }
  return patch.Apply();
}

EditedText EditHyperlink(std::string_view text, const AreaEdit& edit) {
  XmlScanner scanner(text);
  scanner.Next();
  std::optional<std::string_view> ref = scanner.Attribute("ref");
  if (!ref) return std::nullopt;
  std::optional<std::vector<Area>> after = Edited(ParseAreas(*ref), edit);
  if (!after) return std::nullopt;
  std::string edited;
  for (const Area& area : *after) {
    if (!edited.empty()) {
      edited += CopyOfHyperlink(text, area);
      continue;
    }
    TextPatch patch(text);
    patch.Replace(*ref, ToA1(area));
    edited = patch.Apply();
  }
  return edited;
}

struct MergedCell {
  Area area;
  std::size_t begin;
  std::size_t end;
};

struct MergedCells {
  std::vector<MergedCell> cells;
  std::string_view count;
  std::string_view tag;      // of the elements, with their prefix
  std::size_t list_end = 0;  // where the list's end tag begins
};

MergedCells ReadMergedCells(std::string_view text) {
  MergedCells merged;
  XmlScanner scanner(text);
  while (scanner.Next() != Token::kDone) {
    if (scanner.token() == Token::kEnd) merged.list_end = scanner.begin();
    if (scanner.token() != Token::kStart) continue;
    if (scanner.local_name() == "mergeCells") {
      merged.count = scanner.Attribute("count").value_or(std::string_view());
      continue;
    }
    if (scanner.local_name() != "mergeCell") continue;
    merged.tag = scanner.name();
    const std::size_t begin = scanner.begin();
    auto area = ParseA1(scanner.Attribute("ref").value_or(std::string_view()));
    scanner.SkipElement();
    if (area) merged.cells.push_back({*area, begin, scanner.end()});
  }
  return merged;
}

EditedText EditMergedCells(std::string_view text, const AreaEdit& edit) {
  MergedCells merged = ReadMergedCells(text);
  TextPatch patch(text);
  std::size_t left = 0;
  std::string added;
  for (const MergedCell& cell : merged.cells) {
    if (Covers(edit.cut, cell.area)) {
      patch.Replace(cell.begin, cell.end, "");
    } else {
      ++left;
    }
    if (edit.source && Covers(*edit.source, cell.area)) {
      added += "<" + std::string(merged.tag) + " ref=\"" + ToA1(edit.Moved(cell.area)) + "\"/>";
      ++left;
    }
  }
  if (!added.empty()) patch.Insert(merged.list_end, added);
  if (patch.empty()) return std::nullopt;
  if (left == 0) return "";
  if (!merged.count.empty() && left != merged.cells.size()) {
    patch.Replace(merged.count, std::to_string(left));
  }
  return patch.Apply();
}

EditedText EditElement(const MarkupElement& element, unsigned features, const AreaEdit& edit) {
  std::string_view text = element.text;
  if (element.name == "conditionalFormatting" && (features & kConditionalFormats)) {
    return EditFeature(text, edit);
  }
  if (element.name == "dataValidations" && (features & kValidations)) {
    return EditList(text, "dataValidation",
                    [&](std::string_view item) { return EditFeature(item, edit); });
  }
  if (element.name == "mergeCells" && (features & kMergedCells)) return EditMergedCells(text, edit);
  if (element.name == "hyperlinks" && (features & kHyperlinks)) {
    return EditList(text, "hyperlink",
                    [&](std::string_view item) { return EditHyperlink(item, edit); });
  }
  if (element.name == "extLst" && (features & (kConditionalFormats | kValidations))) {
    return EditList(text, "ext",
                    [&](std::string_view ext) { return EditExtension(ext, features, edit); });
  }
  return std::nullopt;
}

void Edit(SheetMarkup& markup, unsigned features, const AreaEdit& edit) {
  std::vector<MarkupElement> left;
  left.reserve(markup.elements.size());
  for (MarkupElement& element : markup.elements) {
    EditedText edited;
    if (!element.text.empty()) edited = EditElement(element, features, edit);
    if (edited) {
      markup.changed = true;
      element.text = std::move(*edited);
      if (element.text.empty()) continue;
    }
    left.push_back(std::move(element));
  }
  markup.elements = std::move(left);
}

}  // namespace

void ClearFeatures(SheetMarkup& markup, const Area& area, unsigned features) {
  Edit(markup, features, {area, std::nullopt});
}

void PasteFeatures(SheetMarkup& markup, const Area& from, const Area& to, unsigned features) {
  Edit(markup, features, {to, from});
}

std::vector<Area> AreasOfFeatures(const SheetMarkup& markup) {
  std::vector<Area> areas;
  const auto add = [&](std::string_view sqref) {
    for (const Area& area : ParseAreas(sqref)) areas.push_back(area);
  };
  for (const MarkupElement& element : markup.elements) {
    // The element itself may have the areas, or its children; extensions have them as texts.
    XmlScanner scanner(element.text);
    while (!element.text.empty() && scanner.Next() != Token::kDone) {
      if (scanner.token() != Token::kStart) continue;
      const std::string_view name = scanner.local_name();
      if (name == "conditionalFormatting" || name == "dataValidation") {
        if (auto sqref = scanner.Attribute("sqref")) add(*sqref);
      } else if (name == "mergeCell" || name == "hyperlink") {
        if (auto ref = scanner.Attribute("ref")) add(*ref);
      } else if (name == "sqref" && !scanner.is_empty()) {
        add(scanner.SkipElement());
      }
    }
  }
  return areas;
}

std::vector<Area> MergedAreas(const SheetMarkup& markup) {
  std::vector<Area> areas;
  const MarkupElement* element = markup.Find("mergeCells");
  if (!element || element->text.empty()) return areas;
  for (const MergedCell& cell : ReadMergedCells(element->text).cells) areas.push_back(cell.area);
  return areas;
}

}  // namespace vantora::embedded
