#include "package/namespaces.h"

#include <algorithm>
#include <set>
#include <utility>

#include "package/xml_scanner.h"

namespace vantora::embedded {
namespace {

using Token = XmlScanner::Token;

constexpr std::string_view kDeclaration = "xmlns";

// The strict form of the file format has uris of its own for the same names.
constexpr std::pair<std::string_view, std::string_view> kForms[] = {
    {"http://schemas.openxmlformats.org/spreadsheetml/2006/main",
     "http://purl.oclc.org/ooxml/spreadsheetml/main"},
    {"http://schemas.openxmlformats.org/officeDocument/2006/relationships",
     "http://purl.oclc.org/ooxml/officeDocument/relationships"},
};

bool MeanTheSame(std::string_view a, std::string_view b) {
  if (a == b) return true;
  return std::ranges::any_of(kForms, [&](const auto& forms) {
    return (a == forms.first && b == forms.second) || (a == forms.second && b == forms.first);
  });
}

std::string_view PrefixOf(std::string_view name) {
  const std::size_t colon = name.find(':');
  return colon == std::string_view::npos ? std::string_view() : name.substr(0, colon);
}

// The prefix that an attribute declares; false for an attribute that is no declaration.
bool Declares(std::string_view attribute, std::string_view& prefix) {
  if (attribute == kDeclaration) {
    prefix = {};
    return true;
  }
  if (PrefixOf(attribute) != kDeclaration) return false;
  prefix = LocalName(attribute);
  return true;
}

// Takes an attribute away with the blank before it.
void RemoveAttribute(std::string_view document, const XmlAttribute& attribute, TextPatch& patch) {
  const std::size_t begin = static_cast<std::size_t>(attribute.name.data() - document.data());
  const std::size_t value = static_cast<std::size_t>(attribute.value.data() - document.data());
  patch.Replace(begin - 1, value + attribute.value.size() + 1, "");
}

}  // namespace

void AddDeclarations(std::string_view markup, Namespaces& namespaces) {
  // What follows the tag may be cut off.
  XmlScanner xml(markup);
  while (xml.Next() != Token::kStart) {
  }
  for (const XmlAttribute& attribute : xml.attributes()) {
    std::string_view prefix;
    if (Declares(attribute.name, prefix)) {
      namespaces[std::string(prefix)] = DecodeXml(attribute.value);
    }
  }
}

std::string Transplanted(std::string_view markup, const Namespaces& from, const Namespaces& to) {
  XmlScanner xml(markup);
  TextPatch patch(markup);
  std::set<std::string, std::less<>> used;
  std::set<std::string, std::less<>> declared;
  std::size_t name_end = 0;
  while (xml.Next() != Token::kDone) {
    if (xml.token() != Token::kStart) continue;
    if (name_end == 0) name_end = xml.begin() + 1 + xml.name().size();
    used.emplace(PrefixOf(xml.name()));
    for (const XmlAttribute& attribute : xml.attributes()) {
      std::string_view prefix;
      if (Declares(attribute.name, prefix)) {
        declared.emplace(prefix);
      } else if (LocalName(attribute.name) == "uid" && attribute.name != "uid") {
        RemoveAttribute(markup, attribute, patch);
      } else if (!PrefixOf(attribute.name).empty()) {
        used.emplace(PrefixOf(attribute.name));
      }
    }
  }
  std::string declarations;
  for (const std::string& prefix : used) {
    auto uri = from.find(prefix);
    if (declared.contains(prefix) || uri == from.end()) continue;
    auto there = to.find(prefix);
    if (there != to.end() && MeanTheSame(there->second, uri->second)) continue;
    declarations += " xmlns" + (prefix.empty() ? "" : ":" + prefix) + "=\"" +
                    EncodeXmlAttribute(uri->second) + "\"";
  }
  patch.Insert(name_end, declarations);
  return patch.Apply();
}

}  // namespace vantora::embedded
