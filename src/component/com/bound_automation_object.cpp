#include "component/com/bound_automation_object.h"

#include "component/com/globals_access.h"

namespace vantora::com {

GlobalsArgument::GlobalsArgument(const VARIANT& argument) {
  OwnedVariant value;
  if (FAILED(VariantCopyInd(&value, const_cast<VARIANT*>(&argument)))) return;
  // IDispatch is an IUnknown, and both stand at the same place of a VARIANT.
  if ((value.vt != VT_DISPATCH && value.vt != VT_UNKNOWN) || !value.punkVal) return;
  GlobalsAccess* access = nullptr;
  if (FAILED(value.punkVal->QueryInterface(kGlobalsAccessId, reinterpret_cast<void**>(&access)))) {
    return;
  }
  object_ = ComPtr<IUnknown>::Adopt(access);
  globals_ = &access->Globals();
}

}  // namespace vantora::com
