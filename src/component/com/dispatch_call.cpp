#include "component/com/dispatch_call.h"

#include <cstring>
#include <utility>

namespace vantora::com {
namespace {

bool IsOmitted(const VARIANT* given) {
  return !given || (given->vt == VT_ERROR && given->scode == DISP_E_PARAMNOTFOUND);
}

// The variable behind a reference to a VARIANT, else the argument itself.
VARIANT* Variable(VARIANT* given) {
  return given->vt == (VT_BYREF | VT_VARIANT) ? given->pvarVal : given;
}

// A reference to the value that `holder`, of the type, holds.
VARIANT ReferenceTo(OwnedVariant& holder, VARTYPE type) {
  VARIANT reference;
  VariantInit(&reference);
  reference.vt = VT_BYREF | type;
  reference.byref = type == VT_VARIANT ? static_cast<void*>(&holder) : &holder.byref;
  return reference;
}

// An empty value of the type.
void SetZero(OwnedVariant& holder, VARTYPE type) {
  VariantClear(&holder);
  std::memset(static_cast<VARIANT*>(&holder), 0, sizeof(VARIANT));
  holder.vt = type == VT_VARIANT ? VARTYPE{VT_EMPTY} : type;
}

void SetOmitted(VARIANT& value) {
  value.vt = VT_ERROR;
  value.scode = DISP_E_PARAMNOTFOUND;
}

// Writes the value, converted to its type, into the client's typed variable.
HRESULT Store(OwnedVariant& value, LCID locale, const VARIANT& variable) {
  VARTYPE type = variable.vt & ~VT_BYREF;
  OwnedVariant converted;
  HRESULT outcome = VariantChangeTypeEx(&converted, &value, locale, VARIANT_ALPHABOOL, type);
  if (FAILED(outcome)) return outcome;
  switch (type) {
    case VT_UI1:
      *variable.pbVal = converted.bVal;
      return S_OK;
    case VT_I2:
    case VT_BOOL:
      *variable.piVal = converted.iVal;
      return S_OK;
    case VT_I4:
    case VT_R4:
      *variable.plVal = converted.lVal;
      return S_OK;
    case VT_R8:
    case VT_CY:
    case VT_DATE:
      *variable.pllVal = converted.llVal;
      return S_OK;
    case VT_BSTR:
      std::swap(*variable.pbstrVal, converted.bstrVal);
      return S_OK;
    default:
      return DISP_E_TYPEMISMATCH;
  }
}

// Moves what the member reported into `exception`.
void TakeErrorInformation(HRESULT failure, EXCEPINFO* exception) {
  ComPtr<IErrorInfo> information;
  HRESULT found = GetErrorInfo(0, information.Receive());
  if (!exception) return;
  *exception = {};
  exception->scode = failure;
  if (found != S_OK) return;
  information->GetSource(&exception->bstrSource);
  information->GetDescription(&exception->bstrDescription);
  information->GetHelpFile(&exception->bstrHelpFile);
  information->GetHelpContext(&exception->dwHelpContext);
}

void SetArgumentError(UINT* argument_error, UINT position) {
  if (argument_error) *argument_error = position;
}

}  // namespace

DispatchCall::DispatchCall(const DispatchTable::Function& function, LCID locale)
    : function_(function),
      locale_(locale),
      given_(function.parameters.size()),
      passed_(function.parameters.size() + 1),
      holders_(function.parameters.size() + 1) {}

HRESULT DispatchCall::TakeArguments(const DISPPARAMS& arguments, UINT* argument_error) {
  HRESULT outcome = Place(arguments, argument_error);
  for (std::size_t i = 0; i < given_.size() && SUCCEEDED(outcome); ++i) {
    const Parameter& parameter = function_.parameters[i];
    if (IsOmitted(given_[i])) {
      outcome = TakeOmitted(parameter, passed_[i], holders_[i]);
    } else if (parameter.by_reference) {
      outcome = TakeReference(parameter, given_[i], passed_[i], holders_[i]);
    } else {
      outcome = TakeValue(parameter, given_[i], passed_[i], holders_[i]);
    }
    if (FAILED(outcome) && given_[i]) {
      SetArgumentError(argument_error, static_cast<UINT>(given_[i] - arguments.rgvarg));
    }
  }
  return outcome;
}

// Named arguments come first, in the order of their names; the others follow, the last one first.
HRESULT DispatchCall::Place(const DISPPARAMS& arguments, UINT* argument_error) {
  UINT positional = arguments.cArgs - arguments.cNamedArgs;
  if (arguments.cNamedArgs > arguments.cArgs || positional > given_.size()) {
    return DISP_E_BADPARAMCOUNT;
  }
  for (UINT i = 0; i < positional; ++i) {
    given_[i] = &arguments.rgvarg[arguments.cArgs - 1 - i];
  }
  for (UINT i = 0; i < arguments.cNamedArgs; ++i) {
    DISPID name = arguments.rgdispidNamedArgs[i];
    // The value of a property put is its last parameter.
    std::size_t position =
        name == DISPID_PROPERTYPUT ? given_.size() - 1 : static_cast<std::size_t>(name);
    if (position >= given_.size() || given_[position]) {
      SetArgumentError(argument_error, i);
      return DISP_E_PARAMNOTFOUND;
    }
    given_[position] = &arguments.rgvarg[i];
  }
  return S_OK;
}

HRESULT DispatchCall::TakeOmitted(const Parameter& parameter, VARIANT& passed,
                                  OwnedVariant& holder) {
  if (!parameter.is_optional && !parameter.default_value) return DISP_E_PARAMNOTOPTIONAL;
  SetZero(holder, parameter.type);
  if (parameter.default_value) {
    HRESULT copied = VariantCopy(&holder, const_cast<VARIANT*>(parameter.default_value));
    if (FAILED(copied)) return copied;
  } else if (parameter.type == VT_VARIANT) {
    SetOmitted(holder);
  }
  passed = parameter.by_reference ? ReferenceTo(holder, parameter.type) : holder;
  return S_OK;
}

HRESULT DispatchCall::TakeValue(const Parameter& parameter, VARIANT* given, VARIANT& passed,
                                OwnedVariant& holder) {
  if (parameter.type == VT_VARIANT) {
    passed = *Variable(given);
    return S_OK;
  }
  HRESULT converted = Convert(given, parameter.type, &holder);
  passed = holder;
  return converted;
}

HRESULT DispatchCall::TakeReference(const Parameter& parameter, VARIANT* given, VARIANT& passed,
                                    OwnedVariant& holder) {
  if (parameter.type == VT_VARIANT) {
    // The client's own variable, so that an array in it need not be copied; but not its value.
    bool is_variable = (given->vt & VT_BYREF) != 0;
    HRESULT copied = is_variable ? S_OK : VariantCopy(&holder, given);
    passed = ReferenceTo(holder, VT_VARIANT);
    if (is_variable) passed.pvarVal = Variable(given);
    return copied;
  }
  if (given->vt == (VT_BYREF | parameter.type)) {
    passed = *given;
    return S_OK;
  }
  HRESULT converted = Convert(given, parameter.type, &holder);
  passed = ReferenceTo(holder, parameter.type);
  return converted;
}

HRESULT DispatchCall::Convert(VARIANT* given, VARTYPE type, VARIANT* converted) {
  OwnedVariant value;
  HRESULT copied = VariantCopyInd(&value, given);
  if (FAILED(copied)) return copied;
  return VariantChangeTypeEx(converted, &value, locale_, VARIANT_ALPHABOOL, type);
}

HRESULT DispatchCall::Run(IUnknown* instance, VARIANT* result, EXCEPINFO* exception) {
  std::size_t count = given_.size();
  OwnedVariant& returned = holders_[count];
  if (function_.result != VT_EMPTY) {
    SetZero(returned, function_.result);
    passed_[count++] = ReferenceTo(returned, function_.result);
  }
  std::vector<VARTYPE> types(passed_.size());
  std::vector<VARIANT*> pointers(passed_.size());
  for (std::size_t i = 0; i < count; ++i) {
    bool by_value = i < given_.size() && !function_.parameters[i].by_reference;
    types[i] = by_value ? function_.parameters[i].type : passed_[i].vt;
    pointers[i] = &passed_[i];
  }
  OwnedVariant outcome;
  HRESULT called = DispCallFunc(instance, function_.vtable_offset, CC_STDCALL, VT_I4,
                                static_cast<UINT>(count), types.data(), pointers.data(), &outcome);
  if (FAILED(called)) return called;
  if (FAILED(outcome.lVal)) {
    TakeErrorInformation(outcome.lVal, exception);
    return DISP_E_EXCEPTION;
  }
  HRESULT put_back = PutBack();
  if (FAILED(put_back)) return put_back;
  if (result) {
    *result = returned;
    VariantInit(&returned);
  }
  return S_OK;
}

// What the function wrote into values that stood in for the client's variables.
HRESULT DispatchCall::PutBack() {
  for (std::size_t i = 0; i < given_.size(); ++i) {
    bool stood_in = function_.parameters[i].is_changed && !IsOmitted(given_[i]) &&
                    passed_[i].vt != VT_EMPTY && passed_[i].byref == &holders_[i].byref;
    if (!stood_in || !(given_[i]->vt & VT_BYREF)) continue;
    HRESULT stored = given_[i]->vt == (VT_BYREF | VT_VARIANT)
                         ? VariantCopy(given_[i]->pvarVal, &holders_[i])
                         : Store(holders_[i], locale_, *given_[i]);
    if (FAILED(stored)) return stored;
  }
  return S_OK;
}

}  // namespace vantora::com
