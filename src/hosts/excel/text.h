// Text between the engine (UTF-8) and Windows (UTF-16).
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>
#include <string_view>

namespace vantora::excel {

// What is not valid becomes U+FFFD; a zero character is a character like any other.
std::string ToUtf8(std::wstring_view text);
// A new BSTR that the caller frees. Throws std::bad_alloc.
BSTR MakeBstr(std::string_view utf8);
// A null BSTR is the empty text.
std::string ToUtf8(BSTR text);

}  // namespace vantora::excel
