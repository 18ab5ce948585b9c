// Texts between the engine (UTF-8) and Windows (UTF-16).
#pragma once

#include <string>
#include <string_view>

namespace vantora::windows {

// Bytes that are no UTF-8 and halves of characters become U+FFFD; a zero character is a character
// like any other.
std::wstring ToUtf16(std::string_view text);
std::string ToUtf8(std::wstring_view text);

// In the code page of the platform's functions for 8-bit texts.
std::string ToAnsi(std::string_view text);

}  // namespace vantora::windows
