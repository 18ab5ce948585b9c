// One late-bound call on its way to a function of a vtable.
#pragma once

#include <deque>
#include <vector>

#include "component/com/automation.h"
#include "component/com/dispatch_table.h"

namespace vantora::com {

class DispatchCall {
 public:
  DispatchCall(const DispatchTable::Function& function, LCID locale);

  // Brings the client's arguments into the parameters' order and types. They must stay as they are
  // until Run is done. On failure `argument_error` (if not null) is the position in
  // `arguments.rgvarg` that was refused.
  HRESULT TakeArguments(const DISPPARAMS& arguments, UINT* argument_error);

  // Calls the function and hands back its result, what it changed, and what it reported.
  HRESULT Run(IUnknown* instance, VARIANT* result, EXCEPINFO* exception);

 private:
  using Parameter = DispatchTable::Parameter;

  HRESULT Place(const DISPPARAMS& arguments, UINT* argument_error);
  HRESULT TakeValue(const Parameter& parameter, VARIANT* given, VARIANT& passed,
                    OwnedVariant& holder);
  HRESULT TakeReference(const Parameter& parameter, VARIANT* given, VARIANT& passed,
                        OwnedVariant& holder);
  HRESULT TakeOmitted(const Parameter& parameter, VARIANT& passed, OwnedVariant& holder);
  HRESULT Convert(VARIANT* given, VARTYPE type, VARIANT* converted);
  HRESULT PutBack();

  const DispatchTable::Function& function_;
  LCID locale_;
  // The client's argument for each parameter; null where it is left out.
  std::vector<VARIANT*> given_;
  // What the function gets for each parameter, and for the result: plain copies that own nothing.
  std::vector<VARIANT> passed_;
  // Values made for the call: one for each parameter and the result; empty where the client's own
  // is passed.
  std::deque<OwnedVariant> holders_;
};

}  // namespace vantora::com
