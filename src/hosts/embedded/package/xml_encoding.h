// The encoding of XML parts.
#pragma once

#include <string>
#include <string_view>

namespace vantora::embedded {

// XML in UTF-16 as UTF-8, its declaration changed accordingly; UTF-8 as it is. Throws FileError
// (kMalformedXml) for bytes that are neither. The legacy drawings (.vml) that other programs write
// are taken as they come.
std::string XmlAsUtf8(std::string bytes, std::string_view part);

// Where the first byte stands that is not UTF-8; npos when all of them are.
std::size_t FirstInvalidUtf8(std::string_view text);

}  // namespace vantora::embedded
