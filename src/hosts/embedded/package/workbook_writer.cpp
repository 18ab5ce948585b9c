#include "package/workbook_writer.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <utility>

#include "core/convert.h"
#include "package/area_list.h"
#include "package/cell_patch.h"
#include "package/column_width.h"
#include "package/sheet_list.h"
#include "package/sheet_reader.h"
#include "package/sheet_writer.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {
namespace {

using Token = XmlScanner::Token;

constexpr std::string_view kEmptyTable =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n"
    "<sst xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\" count=\"0\" "
    "uniqueCount=\"0\"></sst>";

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

std::string PrefixOf(std::string_view name) {
  return std::string(name.substr(0, name.size() - LocalName(name).size()));
}

// Places in the main part that the patch refers to.
struct WorkbookPlaces {
  std::string prefix;
  // End of the last element that names and, with `calculation`, calcPr come after.
  std::size_t names_after = 0;
  std::size_t calculation_after = 0;
};

bool ComesBeforeNames(std::string_view name) {
  for (std::string_view earlier : {"fileVersion", "fileSharing", "workbookPr", "workbookProtection",
                                   "bookViews", "sheets", "functionGroups", "externalReferences"}) {
    if (name == earlier) return true;
  }
  return false;
}

class WorkbookPatcher {
 public:
  WorkbookPatcher(std::string_view text, const WorkbookModel& model, const WorkbookChanges& changes)
      : xml_(text),
        patch_(text),
        model_(model),
        changes_(changes),
        sheets_(text, changes.sheet_relationships) {}

  std::optional<std::string> Run() {
    written_.resize(model_.names.size(), false);
    while (xml_.Next() != Token::kStart) {
    }
    places_.prefix = PrefixOf(xml_.name());
    while (xml_.Next() != Token::kEnd) {
      if (xml_.token() != Token::kStart) continue;
      std::string name(xml_.local_name());
      PatchChild(name);
      if (ComesBeforeNames(name)) places_.names_after = xml_.end();
      if (ComesBeforeNames(name) || name == "definedNames") places_.calculation_after = xml_.end();
    }
    AddMissing();
    if (patch_.empty()) return std::nullopt;
    return patch_.Apply();
  }

 private:
  void PatchChild(std::string_view name) {
    if (name == "definedNames") {
      PatchNames();
    } else if (name == "calcPr") {
      has_calculation_ = true;
      if (changes_.calculate_on_opening) SetAttribute("fullCalcOnLoad", "1");
      if (changes_.manual_calculation) SetCalculationMode(*changes_.manual_calculation);
      xml_.SkipElement();
    } else if (name == "bookViews") {
      PatchFirstSheets();
    } else if (name == "sheets") {
      PatchSheets();
      sheets_.Patch(model_, patch_);
    } else {
      xml_.SkipElement();
    }
  }

  // Of the start tag at which the scanner stands.
  void SetAttribute(std::string_view name, std::string_view value) {
    if (auto old = xml_.Attribute(name)) {
      if (*old != value) patch_.Replace(*old, value);
      return;
    }
    std::size_t at = xml_.end() - (xml_.is_empty() ? 2 : 1);
    patch_.Insert(at, " " + std::string(name) + "=\"" + std::string(value) + "\"");
  }

  // Of the start tag at which the scanner stands. Automatic is what no attribute means.
  void SetCalculationMode(bool manual) {
    if (manual) {
      SetAttribute("calcMode", "manual");
    } else if (auto mode = xml_.Attribute("calcMode"); mode && *mode != "auto") {
      patch_.Replace(*mode, "auto");
    }
  }

  // The first tab that each window shows; the rest of the views is up to date already.
  void PatchFirstSheets() {
    if (xml_.is_empty()) return;
    while (xml_.Next() != Token::kEnd) {
      if (xml_.token() != Token::kStart) continue;
      if (auto tab = xml_.Attribute("firstSheet")) {
        const int position = TextToInteger(*tab).value_or(0);
        const int now = sheets_.PositionNow(position, model_);
        if (now != position) patch_.Replace(*tab, std::to_string(now));
      }
      xml_.SkipElement();
    }
  }

  void PatchSheets() {
    if (xml_.is_empty()) return;
    for (int position = 0; xml_.Next() != Token::kEnd;) {
      if (xml_.token() != Token::kStart) continue;
      const int id = sheets_.IdAt(position++);
      if (id >= 0) PatchState(model_.sheets[id]->visibility);
      xml_.SkipElement();
    }
  }

  void PatchState(Visibility visibility) {
    const std::string_view was = xml_.Attribute("state").value_or("visible");
    if (VisibilityOf(was) == visibility) return;
    SetAttribute("state", visibility == Visibility::kVisible  ? "visible"
                          : visibility == Visibility::kHidden ? "hidden"
                                                              : "veryHidden");
  }

  void PatchNames() {
    const std::size_t begin = xml_.begin();
    if (!xml_.is_empty()) {
      while (xml_.Next() != Token::kEnd) {
        if (xml_.token() == Token::kStart) PatchName();
      }
      names_end_ = xml_.begin();
    }
    // Left without names the element goes: it must have one.
    if (model_.names.empty()) removed_.assign(1, {begin, xml_.end()});
    for (auto [from, to] : removed_) patch_.Replace(from, to, "");
  }

  void PatchName() {
    const std::size_t begin = xml_.begin();
    const std::string_view raw_name = xml_.Attribute("name").value_or("");
    std::string name = DecodeXml(raw_name);
    names_there_.emplace_back(CaseFolded(name), begin);
    int scope = -1;
    const std::optional<std::string_view> local = xml_.Attribute("localSheetId");
    if (local) {
      int position = -1;
      std::from_chars(local->data(), local->data() + local->size(), position);
      scope = sheets_.IdAt(position);
    }
    const bool is_empty = xml_.is_empty();
    const std::size_t tag_end = xml_.end();
    const std::string tag(xml_.name());
    std::string_view raw = xml_.SkipElement();
    std::optional<std::size_t> index = Find(name, scope);
    if (!index) {
      removed_.emplace_back(begin, xml_.end());
      return;
    }
    written_[*index] = true;
    if (model_.names[*index].name != name) {
      patch_.Replace(raw_name, EncodeXmlAttribute(model_.names[*index].name));
    }
    if (local && scope >= 0) {
      const std::string position = std::to_string(model_.PositionOf(scope));
      if (position != *local) patch_.Replace(*local, position);
    }
    const std::string& text = model_.names[*index].refers_to;
    if (text == DecodeXml(raw)) return;
    if (is_empty) {
      patch_.Replace(tag_end - 2, tag_end, ">" + EncodeXmlText(text) + "</" + tag + ">");
    } else {
      patch_.Replace(raw, EncodeXmlText(text));
    }
  }

  // The model's first name of these that no element has yet.
  std::optional<std::size_t> Find(const std::string& name, int scope) const {
    // Names that no edit made or removed stand in the same order.
    if (next_ < model_.names.size() && Matches(next_, name, scope)) return next_++;
    for (std::size_t i = 0; i < model_.names.size(); ++i) {
      if (Matches(i, name, scope)) {
        next_ = i + 1;
        return i;
      }
    }
    return std::nullopt;
  }
  bool Matches(std::size_t index, const std::string& name, int scope) const {
    const DefinedName& candidate = model_.names[index];
    return !written_[index] && candidate.scope == scope && EqualsIgnoreCase(candidate.name, name);
  }

  void AddMissing() {
    AddMissingNames();
    const bool manual = changes_.manual_calculation.value_or(false);
    if ((changes_.calculate_on_opening || manual) && !has_calculation_) {
      patch_.Insert(places_.calculation_after,
                    "<" + places_.prefix + "calcPr" + (manual ? " calcMode=\"manual\"" : "") +
                        (changes_.calculate_on_opening ? " fullCalcOnLoad=\"1\"" : "") + "/>");
    }
  }

  // By alphabet, each in front of the first name there that comes after it.
  void AddMissingNames() {
    std::map<std::pair<std::u32string, int>, const DefinedName*> missing;
    for (std::size_t i = 0; i < model_.names.size(); ++i) {
      const DefinedName& name = model_.names[i];
      if (!written_[i]) missing[{CaseFolded(name.name), name.scope}] = &name;
    }
    if (missing.empty()) return;
    std::string rest;
    auto there = names_there_.begin();
    for (const auto& [key, name] : missing) {
      while (there != names_there_.end() && there->first <= key.first) ++there;
      if (there != names_there_.end()) {
        patch_.Insert(there->second, NameElement(*name));
      } else {
        rest += NameElement(*name);
      }
    }
    if (rest.empty()) return;
    if (names_end_ > 0) {
      patch_.Insert(names_end_, rest);
      return;
    }
    const std::string open = "<" + places_.prefix + "definedNames>";
    const std::string close = "</" + places_.prefix + "definedNames>";
    patch_.Insert(places_.names_after, open + rest + close);
  }

  std::string NameElement(const DefinedName& name) const {
    std::string element =
        "<" + places_.prefix + "definedName name=\"" + EncodeXmlAttribute(name.name) + "\"";
    if (name.scope >= 0) {
      element += " localSheetId=\"" + std::to_string(model_.PositionOf(name.scope)) + "\"";
    }
    return element + ">" + EncodeXmlText(name.refers_to) + "</" + places_.prefix + "definedName>";
  }

  XmlScanner xml_;
  TextPatch patch_;
  const WorkbookModel& model_;
  const WorkbookChanges& changes_;
  SheetList sheets_;
  WorkbookPlaces places_;
  // By the model's names: an element is there.
  std::vector<bool> written_;
  mutable std::size_t next_ = 0;
  std::vector<std::pair<std::size_t, std::size_t>> removed_;
  std::size_t names_end_ = 0;
  // The names there in their order, case-folded, with the place where each begins.
  std::vector<std::pair<std::u32string, std::size_t>> names_there_;
  bool has_calculation_ = false;
};

}  // namespace

std::optional<std::string> PatchWorkbook(std::string_view text, const WorkbookModel& model,
                                         const WorkbookChanges& changes) {
  return WorkbookPatcher(text, model, changes).Run();
}

void NewSharedStrings::Add(TextId id) {
  if (id < strings_.shared_count()) return;
  auto index = static_cast<TextId>(strings_.shared_count() + added_.size());
  if (index_.emplace(id, index).second) added_.push_back(id);
}

TextId NewSharedStrings::IndexOf(TextId id) const {
  return id < strings_.shared_count() ? id : index_.at(id);
}

std::string NewSharedStrings::AppendTo(std::string_view original, std::size_t count) const {
  if (original.empty()) original = kEmptyTable;
  XmlScanner xml(original);
  TextPatch patch(original);
  while (xml.Next() != Token::kStart) {
  }
  const std::string root(xml.name());
  const std::string prefix = PrefixOf(root);
  std::string items;
  for (TextId id : added_) {
    const std::string& text = strings_[id];
    bool keep_blanks = !text.empty() && (IsBlank(text.front()) || IsBlank(text.back()));
    items += "<" + prefix + "si><" + prefix + "t" +
             (keep_blanks ? " xml:space=\"preserve\">" : ">") + EncodeSpreadsheetText(text) + "</" +
             prefix + "t></" + prefix + "si>";
  }
  if (auto old = xml.Attribute("count")) patch.Replace(*old, std::to_string(count));
  if (auto old = xml.Attribute("uniqueCount")) {
    patch.Replace(*old, std::to_string(strings_.shared_count() + added_.size()));
  }
  if (xml.is_empty()) {
    patch.Replace(xml.end() - 2, xml.end(), ">" + items + "</" + root + ">");
    return patch.Apply();
  }
  std::size_t after = xml.end();
  while (xml.Next() != Token::kEnd) {
    if (xml.token() != Token::kStart) continue;
    bool is_item = xml.local_name() == "si";
    xml.SkipElement();
    if (is_item) after = xml.end();
  }
  patch.Insert(after, items);
  return patch.Apply();
}

void WriteColumnFormats(SheetMarkup& markup, const std::vector<ColumnFormat>& formats,
                        int max_digit_width) {
  const std::string& prefix = markup.prefix;
  const std::string default_width = NumberText(DefaultColumnWidth(markup, max_digit_width));
  std::string text;
  for (const ColumnFormat& format : formats) {
    text += "<" + prefix + "col min=\"" + std::to_string(format.first) + "\" max=\"" +
            std::to_string(format.last) + "\"";
    // Excel shows a run without a width as no wider than nothing.
    if (format.attributes.find(" width=") == std::string::npos) {
      text += " width=\"" + default_width + "\"";
    }
    if (format.style != 0) text += " style=\"" + std::to_string(format.style) + "\"";
    text += format.attributes + "/>";
  }
  if (!text.empty()) text = "<" + prefix + "cols>" + text + "</" + prefix + "cols>";
  if (text.empty()) {
    markup.Remove("cols");
    return;
  }
  MarkupElement& first = markup.FindOrInsert("cols");
  if (first.text == text) return;
  markup.Remove("cols");
  markup.FindOrInsert("cols").text = std::move(text);
}

void WriteRowOutline(SheetMarkup& markup, const SheetModel& sheet) {
  int level = 0;
  for (const RowTable::Entry& entry : sheet.rows.entries()) {
    level = std::max<int>(level, entry.format.outline_level);
  }
  const MarkupElement* existing = markup.Find("sheetFormatPr");
  if (!existing && level == 0) return;
  std::string& text = markup.FindOrInsert("sheetFormatPr").text;
  if (text.empty()) {
    text = "<" + markup.prefix + "sheetFormatPr defaultRowHeight=\"" +
           NumberText(sheet.standard_row_height) + "\"/>";
  }
  XmlScanner xml(text);
  while (xml.Next() != Token::kStart) {
  }
  const auto old = xml.Attribute("outlineLevelRow");
  if (old.value_or("0") == std::to_string(level)) return;
  TextPatch patch(text);
  if (old) {
    patch.Replace(*old, std::to_string(level));
  } else {
    patch.Insert(xml.end() - (xml.is_empty() ? 2 : 1),
                 " outlineLevelRow=\"" + std::to_string(level) + "\"");
  }
  text = patch.Apply();
  markup.changed = true;
}

void WriteDimension(SheetMarkup& markup, const std::optional<Area>& area) {
  MarkupElement* element = markup.Find("dimension");
  if (!element) return;
  XmlScanner xml(element->text);
  while (xml.Next() != Token::kStart) {
  }
  std::string now = area ? ToA1(*area) : "A1";
  auto old = xml.Attribute("ref");
  if (!old || *old == now) return;
  TextPatch patch(element->text);
  patch.Replace(*old, now);
  element->text = patch.Apply();
  markup.changed = true;
}

}  // namespace vantora::embedded
