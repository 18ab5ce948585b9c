#include "package/sheet_list.h"

#include <algorithm>
#include <map>

#include "core/convert.h"

namespace vantora::embedded {
namespace {

using Token = XmlScanner::Token;

}  // namespace

SheetList::SheetList(std::string_view text, const std::vector<std::string>& relationships)
    : relationships_(relationships) {
  XmlScanner xml(text);
  while (xml.Next() != Token::kDone) {
    if (xml.token() != Token::kStart) continue;
    if (xml.local_name() == "sheets") list_begin_ = xml.end();
    if (xml.local_name() != "sheet" || xml.depth() != 2) continue;
    Entry entry;
    entry.name = xml.Attribute("name").value_or("");
    tag_ = xml.name();
    for (const XmlAttribute& attribute : xml.attributes()) {
      if (attribute.name == "sheetId") {
        last_sheet_id_ = std::max(last_sheet_id_, TextToInteger(attribute.value).value_or(0));
      } else if (LocalName(attribute.name) == "id" && attribute.name != "id") {
        relationship_attribute_ = attribute.name;
        auto found =
            std::find(relationships.begin(), relationships.end(), DecodeXml(attribute.value));
        if (found != relationships.end()) {
          entry.id = static_cast<int>(found - relationships.begin());
        }
      }
    }
    xml.SkipElement();
    entry.end = xml.end();
    entries_.push_back(entry);
  }
}

int SheetList::IdAt(int position) const {
  if (position < 0 || position >= static_cast<int>(entries_.size())) return -1;
  return entries_[position].id;
}

int SheetList::PositionNow(int position, const WorkbookModel& model) const {
  const int id = IdAt(position);
  return id < 0 ? position : model.PositionOf(id);
}

void SheetList::Patch(const WorkbookModel& model, TextPatch& patch) const {
  std::map<int, const Entry*> by_id;
  for (const Entry& entry : entries_) by_id[entry.id] = &entry;
  std::size_t place = list_begin_;
  std::map<std::size_t, std::string> added;
  int sheet_id = last_sheet_id_;
  for (int id : model.tab_order) {
    auto found = by_id.find(id);
    if (found == by_id.end()) {
      added[place] += NewElement(model, id, ++sheet_id);
      continue;
    }
    const Entry& entry = *found->second;
    place = entry.end;
    if (DecodeXml(entry.name) != model.NameOf(id)) {
      patch.Replace(entry.name, EncodeXmlAttribute(model.NameOf(id)));
    }
  }
  for (const auto& [at, elements] : added) patch.Insert(at, elements);
}

std::string SheetList::NewElement(const WorkbookModel& model, int id, int sheet_id) const {
  const Visibility visibility = model.sheets[id]->visibility;
  const std::string_view state = visibility == Visibility::kVisible  ? ""
                                 : visibility == Visibility::kHidden ? " state=\"hidden\""
                                                                     : " state=\"veryHidden\"";
  return "<" + tag_ + " name=\"" + EncodeXmlAttribute(model.NameOf(id)) + "\" sheetId=\"" +
         std::to_string(sheet_id) + "\"" + std::string(state) + " " + relationship_attribute_ +
         "=\"" + EncodeXmlAttribute(relationships_[id]) + "\"/>";
}

}  // namespace vantora::embedded
