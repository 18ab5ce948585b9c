// Texts between the engine (UTF-8, lines ended by "\n") and the platform's windows (UTF-16).
#pragma once

#include <string>
#include <string_view>

#include "ui/windows/win32.h"

namespace vantora::ui {

// Bytes that are no UTF-8 and halves of characters become U+FFFD.
std::wstring ToUtf16(std::string_view text);
std::string ToUtf8(std::wstring_view text);

// In the code page of the platform's functions for 8-bit texts.
std::string ToAnsi(std::string_view text);

// A text box separates its lines by "\r\n".
std::wstring ToEditText(std::string_view text);
std::string FromEditText(std::wstring_view text);

std::wstring TextOf(HWND window);

// The platform's words for its error number, such as "Access is denied. (error 5)".
std::string ErrorText(DWORD error);

}  // namespace vantora::ui
