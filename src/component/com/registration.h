// The entries in the registry by which clients find the classes.
#pragma once

#include "component/com/automation.h"

namespace vantora::com {

enum class RegistrationScope {
  kMachine,  // for all users; needs administrator rights
  kUser,     // for the current user alone
};

// Registers this file's classes and type library for programs of its word size. Registering again,
// also from another folder, replaces what was there. Returns S_OK, or SELFREG_E_CLASS or
// SELFREG_E_TYPELIB when an entry can't be written; nothing is registered then.
HRESULT Register(RegistrationScope scope) noexcept;

// Removes every entry that Register makes. Entries that serve both word sizes stay while the other
// one is registered. Absent entries are no error. Returns S_OK, SELFREG_E_CLASS or
// SELFREG_E_TYPELIB.
HRESULT Unregister(RegistrationScope scope) noexcept;

}  // namespace vantora::com
