#include "component/com/module.h"

#include <atomic>
#include <stdexcept>

#include "component/com/automation.h"

namespace vantora::com {
namespace {

std::atomic<long> uses = 0;

// The module that contains this function, whether a DLL or a program.
HMODULE ThisModule() {
  HMODULE module = nullptr;
  GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<LPCWSTR>(&ThisModule), &module);
  return module;
}

}  // namespace

std::wstring ModulePath() {
  constexpr std::size_t kLongestPath = 32768;
  std::wstring path(MAX_PATH, L'\0');
  while (true) {
    DWORD length = GetModuleFileNameW(ThisModule(), path.data(), static_cast<DWORD>(path.size()));
    if (length == 0 || path.size() > kLongestPath) {
      throw std::runtime_error("the path of the component's file can't be found out");
    }
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(2 * path.size());
  }
}

void ModuleUse::Add() { ++uses; }
void ModuleUse::Remove() { --uses; }
bool ModuleUse::Any() { return uses != 0; }

}  // namespace vantora::com
