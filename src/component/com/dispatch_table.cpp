#include "component/com/dispatch_table.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "component/com/dispatch_call.h"

namespace vantora::com {
namespace {

void Check(HRESULT result, const char* what) {
  if (FAILED(result)) {
    throw std::runtime_error(std::string("the component's type description has no ") + what);
  }
}

struct ReleaseAttributes {
  ITypeInfo* type;
  void operator()(TYPEATTR* attributes) const { type->ReleaseTypeAttr(attributes); }
};

// A dual interface has two descriptions; this is the one with the functions of the vtable.
ComPtr<ITypeInfo> VtableInfo(ITypeInfo* info) {
  TYPEATTR* attributes = nullptr;
  Check(info->GetTypeAttr(&attributes), "attributes");
  std::unique_ptr<TYPEATTR, ReleaseAttributes> owner(attributes, {info});
  if (attributes->typekind == TKIND_INTERFACE) return ComPtr<ITypeInfo>::Share(info);
  constexpr int kOtherHalf = -1;
  HREFTYPE reference = 0;
  Check(info->GetRefTypeOfImplType(kOtherHalf, &reference), "dual interface");
  ComPtr<ITypeInfo> vtable_info;
  Check(info->GetRefTypeInfo(reference, vtable_info.Receive()), "dual interface");
  return vtable_info;
}

DispatchTable::Parameter ParameterOf(const ELEMDESC& element) {
  const PARAMDESC& description = element.paramdesc;
  bool by_reference = element.tdesc.vt == VT_PTR;
  VARTYPE type = by_reference ? element.tdesc.lptdesc->vt : element.tdesc.vt;
  return {.type = type,
          .by_reference = by_reference,
          .is_changed = (description.wParamFlags & PARAMFLAG_FOUT) != 0,
          .is_optional = (description.wParamFlags & PARAMFLAG_FOPT) != 0,
          .default_value = description.wParamFlags & PARAMFLAG_FHASDEFAULT
                               ? &description.pparamdescex->varDefaultValue
                               : nullptr};
}

DispatchTable::Function FunctionOf(const FUNCDESC& description) {
  DispatchTable::Function function{.id = description.memid,
                                   .kind = description.invkind,
                                   .vtable_offset = static_cast<std::size_t>(description.oVft),
                                   .parameters = {},
                                   .result = VT_EMPTY};
  for (int i = 0; i < description.cParams; ++i) {
    const ELEMDESC& element = description.lprgelemdescParam[i];
    DispatchTable::Parameter parameter = ParameterOf(element);
    if (element.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) {
      function.result = parameter.type;
    } else {
      function.parameters.push_back(parameter);
    }
  }
  return function;
}

}  // namespace

DispatchTable::DispatchTable(ITypeInfo* interface_info) : vtable_info_(VtableInfo(interface_info)) {
  TYPEATTR* attributes = nullptr;
  Check(vtable_info_->GetTypeAttr(&attributes), "attributes");
  std::unique_ptr<TYPEATTR, ReleaseAttributes> owner(attributes, {vtable_info_.get()});
  for (UINT i = 0; i < attributes->cFuncs; ++i) {
    FUNCDESC* function = nullptr;
    Check(vtable_info_->GetFuncDesc(i, &function), "functions");
    descriptions_.emplace_back(function, ReleaseFunction{vtable_info_.get()});
    functions_.push_back(FunctionOf(*function));
  }
}

const DispatchTable::Function* DispatchTable::Find(DISPID member, WORD flags) const {
  auto found = std::find_if(functions_.begin(), functions_.end(), [&](const Function& function) {
    return function.id == member && (function.kind & flags) != 0;
  });
  return found == functions_.end() ? nullptr : &*found;
}

HRESULT DispatchTable::Invoke(IUnknown* instance, DISPID member, LCID locale, WORD flags,
                              const DISPPARAMS& arguments, VARIANT* result, EXCEPINFO* exception,
                              UINT* argument_error) const {
  const Function* function = Find(member, flags);
  if (!function) return DISP_E_MEMBERNOTFOUND;
  DispatchCall call(*function, locale);
  HRESULT outcome = call.TakeArguments(arguments, argument_error);
  if (FAILED(outcome)) return outcome;
  return call.Run(instance, result, exception);
}

}  // namespace vantora::com
