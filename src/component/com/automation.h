// The platform's automation headers. Include it, not them: they rename functions of the engine
// unless they come in this order.
#pragma once

#include "ui/windows/win32.h"
// After the platform's own header.
#include <oaidl.h>
#include <ocidl.h>
#include <oleauto.h>

#include "hosts/excel/com_ptr.h"

namespace vantora::com {

using excel::ComPtr;

// A VARIANT that frees what it holds.
class OwnedVariant : public VARIANT {
 public:
  OwnedVariant() { VariantInit(this); }
  ~OwnedVariant() { VariantClear(this); }
  OwnedVariant(const OwnedVariant&) = delete;
  OwnedVariant& operator=(const OwnedVariant&) = delete;
};

}  // namespace vantora::com
