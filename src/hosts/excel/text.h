// Text between the engine (UTF-8) and automation (BSTR).
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>
#include <string_view>

#include "platform/windows/text.h"

namespace vantora::excel {

using windows::ToUtf8;

// A new BSTR that the caller frees. Throws std::bad_alloc.
BSTR MakeBstr(std::string_view utf8);
// A null BSTR is the empty text.
std::string ToUtf8(BSTR text);

}  // namespace vantora::excel
