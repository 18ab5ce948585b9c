// The loaded DLL itself: where it lies, and whether something of it is still in use.
#pragma once

#include <string>

namespace vantora::com {

// The full path of this file. Throws std::runtime_error when the system does not tell.
std::wstring ModulePath();

// Counts what keeps the DLL loaded: one for each object and each lock of a class factory.
class ModuleUse {
 public:
  ModuleUse() { Add(); }
  ~ModuleUse() { Remove(); }
  ModuleUse(const ModuleUse&) = delete;
  ModuleUse& operator=(const ModuleUse&) = delete;

  static void Add();
  static void Remove();
  static bool Any();
};

}  // namespace vantora::com
