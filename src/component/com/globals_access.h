// How the server's other objects recognise a genuine clsGlobals: by an interface of the server's
// own.
#pragma once

#include "component/com/automation.h"

namespace vantora {
class clsGlobals;
}

namespace vantora::com {

// {82bce158-84db-48db-9ebb-a6de3d770ec2}; in no type library. It is never marshalled: an object on
// another thread or of another process is foreign.
inline constexpr IID kGlobalsAccessId = {
    0x82bce158, 0x84db, 0x48db, {0x9e, 0xbb, 0xa6, 0xde, 0x3d, 0x77, 0x0e, 0xc2}};

struct GlobalsAccess : public IUnknown {
  // The engine's object, which lives as long as this one.
  virtual clsGlobals& Globals() = 0;
};

}  // namespace vantora::com
