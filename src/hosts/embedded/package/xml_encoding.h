// The encoding of XML parts.
#pragma once

#include <string>
#include <string_view>

namespace vantora::embedded {

// XML in UTF-16 as UTF-8, its declaration changed accordingly; UTF-8 as it is. Throws FileError
// (kMalformedXml) for bytes that are neither, and for characters that XML can't hold. The legacy
// drawings (.vml) that other programs write are taken as they come.
std::string XmlAsUtf8(std::string bytes, std::string_view part);

// Where the first byte stands that is no UTF-8 or begins a character that XML can't hold (a control
// character other than tab and line ends, U+FFFE, U+FFFF); npos when there is none.
std::size_t FirstInvalidCharacter(std::string_view text);

}  // namespace vantora::embedded
