#include "package/feature_transfer.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "core/convert.h"
#include "package/area_list.h"
#include "package/feature_text.h"
#include "package/namespaces.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {
namespace {

using Token = XmlScanner::Token;

// A list of features within the extensions of a sheet.
struct ExtensionKind {
  FeatureSet feature;
  std::string_view list;
  std::string_view item;
  std::string_view uri;
};
constexpr ExtensionKind kExtensionKinds[] = {
    {kConditionalFormats, "conditionalFormattings", "conditionalFormatting",
     "{78C0D931-6437-407d-A8EE-F0AAD7539E65}"},
    {kValidations, "dataValidations", "dataValidation", "{CCE6A557-97BC-4b89-ADB6-D9C93CAAB3DF}"},
};
constexpr std::string_view kExtensionNamespace =
    "http://schemas.microsoft.com/office/spreadsheetml/2009/9/main";

int NumberOf(std::string_view text) { return TextToInteger(text).value_or(0); }

// The highest priority number of the conditional formats: the one that is looked at last.
int LastPriority(const SheetMarkup& markup) {
  int last = 0;
  for (const MarkupElement& element : markup.elements) {
    if (element.name != "conditionalFormatting" && element.name != "extLst") continue;
    XmlScanner xml(element.text);
    while (xml.Next() != Token::kDone) {
      if (xml.token() != Token::kStart || xml.local_name() != "cfRule") continue;
      last = std::max(last, NumberOf(xml.Attribute("priority").value_or("")));
    }
  }
  return last;
}

// The children called `item` of every element called `list` within `text`, each with what is
// declared around it.
template <typename Visitor>
void ForEachItem(std::string_view text, std::string_view list, std::string_view item,
                 const Namespaces& outside, Visitor&& visit) {
  XmlScanner xml(text);
  Namespaces around = outside;
  bool inside = false;
  while (xml.Next() != Token::kDone) {
    if (xml.token() == Token::kEnd && xml.local_name() == list) inside = false;
    if (xml.token() != Token::kStart) continue;
    if (inside && xml.local_name() == item) {
      const std::size_t begin = xml.begin();
      xml.SkipElement();
      visit(text.substr(begin, xml.end() - begin), around);
      continue;
    }
    AddDeclarations(text.substr(xml.begin()), around);
    if (xml.local_name() == list && !xml.is_empty()) inside = true;
  }
}

class Transfer {
 public:
  Transfer(const SheetMarkup& source, const Area& from, SheetMarkup& target, const Area& to,
           const TransferContext& context)
      : source_(source), from_(from), target_(target), to_(to), context_(context) {
    AddDeclarations(source.start, source_namespaces_);
    AddDeclarations(target.start, target_namespaces_);
  }

  int Run(unsigned features) {
    ClearFeatures(target_, to_, features);
    if (features & kConditionalFormats) {
      last_priority_ = LastPriority(target_);
      MoveConditionalFormats();
    }
    if (features & kValidations) MoveList("dataValidations", "dataValidation", &Transfer::Feature);
    if (features & kMergedCells) MoveList("mergeCells", "mergeCell", &Transfer::MergedCell);
    if (features & kHyperlinks) MoveList("hyperlinks", "hyperlink", &Transfer::Hyperlink);
    for (const ExtensionKind& kind : kExtensionKinds) {
      if (features & kind.feature) MoveExtension(kind);
    }
    return left_out_;
  }

 private:
  // What an item becomes on the target; nullopt for one that does not come along.
  using Move = std::optional<std::string> (Transfer::*)(std::string_view item,
                                                        const Namespaces& around);

  Area Moved(Area area) const { return AreaEdit{to_, from_}.Moved(area); }

  std::vector<Area> Cut(const std::vector<Area>& areas) const {
    std::vector<Area> cut;
    for (const Area& area : areas) {
      if (auto part = Intersection(area, from_)) cut.push_back(Moved(*part));
    }
    return cut;
  }

  // A conditional format or a validation.
  std::optional<std::string> Feature(std::string_view item, const Namespaces& around) {
    const embedded::Feature feature = ReadFeature(item);
    const std::vector<Area> before = ParseAreas(feature.sqref);
    const std::vector<Area> after = Cut(before);
    if (after.empty()) return std::nullopt;
    TextPatch patch(item);
    patch.Replace(feature.sqref, ToSqref(after));
    for (const auto& formula : feature.formulas) {
      if (formula.text.empty()) continue;
      const std::string text =
          Reanchored(DecodeXml(formula.text), AnchorOf(before), AnchorOf(after));
      if (!context_.fits(text)) {
        ++left_out_;
        return std::nullopt;
      }
      patch.Replace(formula.text,
                    formula.is_attribute ? EncodeXmlAttribute(text) : EncodeXmlText(text));
    }
    PatchRules(item, patch);
    return Transplanted(patch.Apply(), around, target_namespaces_);
  }

  // The rules of a conditional format come behind those that the target has.
  void PatchRules(std::string_view item, TextPatch& patch) {
    XmlScanner xml(item);
    while (xml.Next() != Token::kDone) {
      if (xml.token() != Token::kStart || xml.local_name() != "cfRule") continue;
      if (auto format = xml.Attribute("dxfId")) {
        patch.Replace(*format, std::to_string(context_.differential_format(NumberOf(*format))));
      }
      if (auto priority = xml.Attribute("priority"); priority && last_priority_ > 0) {
        patch.Replace(*priority, std::to_string(NumberOf(*priority) + last_priority_));
      }
    }
  }

  std::optional<std::string> MergedCell(std::string_view item, const Namespaces& around) {
    return WithReference(item, around, /*whole=*/true);
  }

  std::optional<std::string> Hyperlink(std::string_view item, const Namespaces& around) {
    std::optional<std::string> moved = WithReference(item, around, /*whole=*/false);
    if (!moved) return std::nullopt;
    XmlScanner xml(*moved);
    xml.Next();
    TextPatch patch(*moved);
    for (const XmlAttribute& attribute : xml.attributes()) {
      if (LocalName(attribute.name) != "id" || attribute.name == "id") continue;
      std::optional<std::string> id = context_.relationship(DecodeXml(attribute.value));
      if (!id) return std::nullopt;
      patch.Replace(attribute.value, EncodeXmlAttribute(*id));
    }
    return patch.Apply();
  }

  // An item with one area in its attribute `ref`; `whole` for one that can't be cut.
  std::optional<std::string> WithReference(std::string_view item, const Namespaces& around,
                                           bool whole) {
    XmlScanner xml(item);
    xml.Next();
    const std::optional<std::string_view> reference = xml.Attribute("ref");
    const std::optional<Area> area = ParseA1(reference.value_or(std::string_view()));
    const std::optional<Area> part = area ? Intersection(*area, from_) : std::nullopt;
    if (!part || (whole && *part != *area)) return std::nullopt;
    TextPatch patch(item);
    patch.Replace(*reference, ToA1(Moved(*part)));
    return Transplanted(patch.Apply(), around, target_namespaces_);
  }

  void MoveConditionalFormats() {
    std::vector<std::string> moved;
    for (const MarkupElement& element : source_.elements) {
      if (element.name != "conditionalFormatting") continue;
      if (auto item = Feature(element.text, source_namespaces_)) moved.push_back(std::move(*item));
    }
    for (std::string& item : moved) AddConditionalFormat(std::move(item));
  }

  void AddConditionalFormat(std::string text) {
    target_.changed = true;
    auto is_format = [](const MarkupElement& e) { return e.name == "conditionalFormatting"; };
    auto last = std::find_if(target_.elements.rbegin(), target_.elements.rend(), is_format);
    if (last == target_.elements.rend()) {
      target_.FindOrInsert("conditionalFormatting").text = std::move(text);
    } else {
      target_.elements.insert(last.base(), {"conditionalFormatting", std::move(text)});
    }
  }

  void MoveList(std::string_view list, std::string_view item, Move move) {
    const MarkupElement* element = source_.Find(list);
    if (!element) return;
    std::string items;
    int count = 0;
    ForEachItem(element->text, list, item, source_namespaces_,
                [&](std::string_view text, const Namespaces& around) {
                  if (auto moved = (this->*move)(text, around)) {
                    items += *moved;
                    ++count;
                  }
                });
    if (count == 0) return;
    MarkupElement& there = target_.FindOrInsert(list);
    if (there.text.empty()) {
      const std::string name = target_.prefix + std::string(list);
      const bool counts = list != "hyperlinks";
      there.text = "<" + name + (counts ? " count=\"0\"" : "") + "></" + name + ">";
    }
    there.text = Appended(there.text, list, items, count);
    target_.changed = true;
  }

  // `text` with items added to its (first) element `list`, and the count put right.
  static std::string Appended(std::string_view text, std::string_view list,
                              const std::string& items, int count) {
    TextPatch patch(text);
    XmlScanner xml(text);
    while (xml.Next() != Token::kStart || xml.local_name() != list) {
    }
    if (auto old = xml.Attribute("count")) {
      patch.Replace(*old, std::to_string(NumberOf(*old) + count));
    }
    if (xml.is_empty()) {
      patch.Replace(xml.end() - 2, xml.end(), ">" + items + "</" + std::string(xml.name()) + ">");
    } else {
      const std::string_view content = xml.SkipElement();
      patch.Insert(static_cast<std::size_t>(content.data() + content.size() - text.data()), items);
    }
    return patch.Apply();
  }

  void MoveExtension(const ExtensionKind& kind) {
    const MarkupElement* extensions = source_.Find("extLst");
    if (!extensions) return;
    std::string items;
    int count = 0;
    ForEachItem(extensions->text, kind.list, kind.item, source_namespaces_,
                [&](std::string_view text, const Namespaces& around) {
                  if (auto moved = Feature(text, around)) {
                    items += *moved;
                    ++count;
                  }
                });
    if (count == 0) return;
    MarkupElement& there = target_.FindOrInsert("extLst");
    target_.changed = true;
    const std::string& prefix = target_.prefix;
    if (there.text.empty()) there.text = "<" + prefix + "extLst></" + prefix + "extLst>";
    if (there.text.find(kind.list) == std::string::npos) {
      const std::string list = "x14:" + std::string(kind.list);
      const bool counts = kind.feature == kValidations;
      there.text =
          Appended(there.text, "extLst",
                   "<" + prefix + "ext uri=\"" + std::string(kind.uri) + "\" xmlns:x14=\"" +
                       std::string(kExtensionNamespace) + "\"><" + list +
                       (counts ? " count=\"0\"" : "") + "></" + list + "></" + prefix + "ext>",
                   0);
    }
    there.text = Appended(there.text, kind.list, items, count);
  }

  const SheetMarkup& source_;
  Area from_;
  SheetMarkup& target_;
  Area to_;
  const TransferContext& context_;
  Namespaces source_namespaces_;
  Namespaces target_namespaces_;
  int last_priority_ = 0;
  int left_out_ = 0;
};

}  // namespace

int TransferFeatures(const SheetMarkup& source, const Area& from, SheetMarkup& target,
                     const Area& to, unsigned features, const TransferContext& context) {
  return Transfer(source, from, target, to, context).Run(features);
}

}  // namespace vantora::embedded
