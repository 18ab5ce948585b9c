// How clsGlobals recognises a genuine clsMenuManagement: by an interface of the server's own.
#pragma once

#include "component/com/automation.h"

namespace vantora {
class clsMenuManagement;
}

namespace vantora::com {

// {dd5f082d-dd01-400d-9835-ce304287fe53}; in no type library, and never marshalled.
inline constexpr IID kMenusAccessId = {
    0xdd5f082d, 0xdd01, 0x400d, {0x98, 0x35, 0xce, 0x30, 0x42, 0x87, 0xfe, 0x53}};

struct MenusAccess : public IUnknown {
  // The engine's object, which lives as long as this one.
  virtual clsMenuManagement& Menus() = 0;
};

}  // namespace vantora::com
