// Markup that moves from one part to another: the namespaces of its prefixes must come along.
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace vantora::embedded {

// Uris by prefix, "" for the default namespace.
using Namespaces = std::map<std::string, std::string, std::less<>>;

// Adds what the first start tag in `markup` declares. Throws XmlError.
void AddDeclarations(std::string_view markup, Namespaces& namespaces);

// The element `markup`, which stands where `from` is declared, for a place where `to` is: what it
// uses and the place lacks is declared on it. Unique identifiers (uid) are left out: a copy is not
// the same object. Throws XmlError.
std::string Transplanted(std::string_view markup, const Namespaces& from, const Namespaces& to);

}  // namespace vantora::embedded
