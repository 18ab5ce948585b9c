// The platform's header, without the macros that would rename the engine's own functions. Include
// it, not <windows.h>, and after the engine's headers.
#pragma once

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#undef MessageBox

namespace vantora::ui {

// A function of user32.dll that older systems lack; null there.
template <typename Function>
Function* FindUser32Function(const char* name) {
  const HMODULE user32 = GetModuleHandleW(L"user32.dll");
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(user32, name)));
}

}  // namespace vantora::ui
