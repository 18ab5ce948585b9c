// Texts between the engine (UTF-8, lines ended by "\n") and the platform's windows (UTF-16).
#pragma once

#include <string>
#include <string_view>

#include "platform/windows/text.h"
#include "ui/windows/win32.h"

namespace vantora::ui {

using windows::ToAnsi;
using windows::ToUtf16;
using windows::ToUtf8;

// A text box separates its lines by "\r\n".
std::wstring ToEditText(std::string_view text);
std::string FromEditText(std::wstring_view text);

std::wstring TextOf(HWND window);

// The platform's words for its error number, such as "Access is denied. (error 5)".
std::string ErrorText(DWORD error);

}  // namespace vantora::ui
