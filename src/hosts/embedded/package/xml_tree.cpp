#include "package/xml_tree.h"

#include "package/file_limits.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {

namespace {

void CheckTreePart(std::string_view part, std::string_view text) {
  if (text.size() > kLargestTree) {
    throw FileError(FileError::Code::kTooLarge,
                    "The part \"" + std::string(part) +
                        "\" of the package is larger than such a part "
                        "can be: more than " +
                        std::to_string(kLargestTree >> 20) + " megabytes.",
                    std::string(part));
  }
  // The parser of trees passes over declarations of entities and over any depth.
  try {
    XmlScanner scanner(text);
    while (scanner.Next() != XmlScanner::Token::kDone) {
    }
  } catch (const XmlError& error) {
    ThrowDamaged(part, error);
  }
}

}  // namespace

pugi::xml_document ParseTree(const OpcPackage& package, std::string_view part) {
  std::string text = package.Read(part);
  CheckTreePart(part, text);
  pugi::xml_document document;
  // Text of blanks counts: a theme's or a name's may be nothing else.
  auto result = document.load_buffer(text.data(), text.size(),
                                     pugi::parse_default | pugi::parse_ws_pcdata_single);
  if (!result) {
    ThrowDamaged(part, XmlError(result.description(), static_cast<std::size_t>(result.offset)));
  }
  return document;
}

std::string_view LocalNameOf(pugi::xml_node node) { return LocalName(node.name()); }

pugi::xml_node Child(pugi::xml_node node, std::string_view local_name) {
  for (pugi::xml_node child : node.children()) {
    if (LocalNameOf(child) == local_name) return child;
  }
  return {};
}

pugi::xml_attribute LocalAttribute(pugi::xml_node node, std::string_view local_name) {
  for (pugi::xml_attribute attribute : node.attributes()) {
    if (LocalName(attribute.name()) == local_name) return attribute;
  }
  return {};
}

}  // namespace vantora::embedded
