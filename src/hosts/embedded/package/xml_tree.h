// Small parts as document trees, read whatever prefix their namespace has.
#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>

#include "package/opc_package.h"

namespace vantora::embedded {

// Parses a part. Throws FileError (kMalformedXml, kTooLarge).
pugi::xml_document ParseTree(const OpcPackage& package, std::string_view part);

// The first child of that local name; an empty node when there is none.
pugi::xml_node Child(pugi::xml_node node, std::string_view local_name);

// The attribute of that local name ("id" finds "r:id").
pugi::xml_attribute LocalAttribute(pugi::xml_node node, std::string_view local_name);

// Calls visit for each child of that local name ("" for all elements).
template <typename Visitor>
void ForEachChild(pugi::xml_node node, std::string_view local_name, Visitor&& visit);

std::string_view LocalNameOf(pugi::xml_node node);

template <typename Visitor>
void ForEachChild(pugi::xml_node node, std::string_view local_name, Visitor&& visit) {
  for (pugi::xml_node child : node.children()) {
    if (child.type() != pugi::node_element) continue;
    if (local_name.empty() || LocalNameOf(child) == local_name) visit(child);
  }
}

}  // namespace vantora::embedded
