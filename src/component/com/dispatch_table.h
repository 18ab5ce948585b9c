// A dual interface as late-bound clients call it: by member identifier, with arguments of any kind.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "component/com/automation.h"

namespace vantora::com {

// Made once for an interface and shared by its objects; immutable. The interface's members may take
// and return Booleans, numbers, texts, objects (IDispatch, IUnknown) and VARIANTs, by value or
// through one pointer.
class DispatchTable {
 public:
  // `interface_info` describes the dual interface; it must derive from IDispatch itself. Throws
  // std::runtime_error when the description can't be read.
  explicit DispatchTable(ITypeInfo* interface_info);

  // Calls the member on `instance`, which points to the interface. Arguments are converted to the
  // parameters' types as the client's locale has it, references to VARIANTs included; optional ones
  // may be left out; what the member changed in a parameter passed by reference goes back to the
  // client's variable. Results are those of IDispatch::Invoke: a failed call of the member is
  // DISP_E_EXCEPTION, and `exception` (if not null) tells what the member reported.
  HRESULT Invoke(IUnknown* instance, DISPID member, LCID locale, WORD flags,
                 const DISPPARAMS& arguments, VARIANT* result, EXCEPINFO* exception,
                 UINT* argument_error) const;

  struct Parameter {
    VARTYPE type;  // of what it points to, when passed by reference
    bool by_reference;
    bool is_changed;  // [out] or [in, out]
    bool is_optional;
    // Null unless the parameter has a default; the type description owns it.
    const VARIANT* default_value;
  };
  struct Function {
    MEMBERID id;
    INVOKEKIND kind;
    std::size_t vtable_offset;          // in bytes
    std::vector<Parameter> parameters;  // without the one that returns the result
    VARTYPE result;                     // VT_EMPTY when there is none
  };

 private:
  struct ReleaseFunction {
    ITypeInfo* type;
    void operator()(FUNCDESC* function) const { type->ReleaseFuncDesc(function); }
  };

  const Function* Find(DISPID member, WORD flags) const;

  // Keeps the default values alive, with descriptions_.
  ComPtr<ITypeInfo> vtable_info_;
  std::vector<std::unique_ptr<FUNCDESC, ReleaseFunction>> descriptions_;
  std::vector<Function> functions_;
};

}  // namespace vantora::com
