#include "standin_object.h"

#include <algorithm>

#include "core/convert.h"
#include "hosts/excel/text.h"

namespace vantora::standin {
namespace {

constexpr int kTypeMismatch = 13;
// What Excel answers to a caller that uses a locale it has no type library for.
constexpr HRESULT kOldTypeLibrary = static_cast<HRESULT>(0x80028018);

constexpr DISPID kFirstRoutineId = 1000000;

// Members by which a caller tells what an object is: asking for them is no fault, though the object
// has none.
bool TellsTheKind(std::string_view kind, std::string_view name) {
  return (kind == "Chart" && name == "UsedRange") ||
         (kind == "CommandBarPopup" && name == "FaceId") ||
         (kind == "CommandBarButton" && name == "Controls");
}

SCODE ScodeOf(int number) {
  return number < 0 ? number : MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, number);
}

template <typename T>
T Converted(const std::optional<T>& value) {
  if (!value) throw HostError(kTypeMismatch, "Type mismatch");
  return *value;
}

int OneOf(int number, std::initializer_list<int> values) {
  if (std::find(values.begin(), values.end(), number) != values.end()) return number;
  throw HostError(HostError::kApplicationDefined,
                  "There is no such value: " + std::to_string(number));
}

bool IsMissing(const VARIANT& argument) {
  return argument.vt == VT_ERROR && argument.scode == DISP_E_PARAMNOTFOUND;
}

// The argument itself, also where a reference to it was passed.
Variant Copy(const VARIANT& argument) {
  Variant copy;
  VariantCopyInd(copy.Receive(), const_cast<VARIANT*>(&argument));
  return copy;
}

bool IsAllowed(Access access, WORD flags, const VARIANT* result) {
  if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
    // No property here holds an object.
    return access == Access::kReadWrite && !(flags & DISPATCH_PROPERTYPUTREF) && !result;
  }
  if (access == Access::kMethod) return (flags & DISPATCH_METHOD) != 0;
  return (flags & DISPATCH_PROPERTYGET) != 0 && result;
}

class Enumeration final : public IEnumVARIANT {
 public:
  Enumeration(ExcelPtr excel, std::vector<Variant> items)
      : excel_(std::move(excel)), items_(std::move(items)) {
    ++excel_->living_objects;
  }

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    if (iid != IID_IUnknown && iid != __uuidof(IEnumVARIANT)) return E_NOINTERFACE;
    AddRef();
    *object = static_cast<IEnumVARIANT*>(this);
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override {
    ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  STDMETHODIMP Next(ULONG count, VARIANT* items, ULONG* fetched) override {
    ULONG given = 0;
    for (; given < count && next_ < items_.size(); ++given) {
      VariantInit(&items[given]);
      VariantCopy(&items[given], const_cast<VARIANT*>(&items_[next_++].get()));
    }
    if (fetched) *fetched = given;
    return given == count ? S_OK : S_FALSE;
  }
  STDMETHODIMP Skip(ULONG) override { return E_NOTIMPL; }
  STDMETHODIMP Reset() override { return E_NOTIMPL; }
  STDMETHODIMP Clone(IEnumVARIANT**) override { return E_NOTIMPL; }

 private:
  ~Enumeration() { --excel_->living_objects; }

  ExcelPtr excel_;
  std::vector<Variant> items_;
  std::size_t next_ = 0;
  ULONG references_ = 1;
};

}  // namespace

const Variant& Call::At(std::size_t place) const {
  const auto& argument = arguments_.at(place);
  if (!argument) {
    throw NotServed{"a call without the argument " + std::string(member_.arguments[place])};
  }
  return *argument;
}

int Call::Int(std::size_t place) const { return Converted(At(place).ToInt()); }

bool Call::Bool(std::size_t place) const { return Converted(At(place).ToBool()); }

int Call::Enumerated(std::size_t place, std::initializer_list<int> values) const {
  return OneOf(Int(place), values);
}

int Call::PutInt() const { return Converted(put_value_.ToInt()); }

int Call::PutEnumerated(std::initializer_list<int> values) const { return OneOf(PutInt(), values); }

double Call::PutDouble() const { return Converted(put_value_.ToDouble()); }

bool Call::PutBool() const { return Converted(put_value_.ToBool()); }

std::string Call::PutText() const { return Converted(put_value_.ToText()); }

std::string Call::Text(std::size_t place) const {
  if (At(place).type() == VT_BSTR) return *At(place).ToText();
  throw HostError(kTypeMismatch, "Type mismatch");
}

IDispatch* Call::Object(std::size_t place) const {
  return At(place).type() == VT_DISPATCH ? At(place).get().pdispVal : nullptr;
}

void Call::RefuseFrom(std::size_t place) const {
  for (; place < arguments_.size(); ++place) {
    if (Has(place)) throw NotServed{"the argument " + std::string(member_.arguments[place])};
  }
}

StandInObject::StandInObject(ExcelPtr excel, std::string_view kind)
    : excel_(std::move(excel)), kind_(kind) {
  ++excel_->living_objects;
}

STDMETHODIMP StandInObject::QueryInterface(REFIID iid, void** object) {
  *object = nullptr;
  if (iid != IID_IUnknown && iid != IID_IDispatch) return E_NOINTERFACE;
  AddRef();
  *object = static_cast<IDispatch*>(this);
  return S_OK;
}

STDMETHODIMP_(ULONG) StandInObject::Release() {
  ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT StandInObject::Fail(HRESULT result, std::string_view member, std::string_view what) {
  excel_->failures.push_back(std::string(kind_) + "." + std::string(member) + ": " +
                             std::string(what));
  return result;
}

STDMETHODIMP StandInObject::GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) {
  std::string name = excel::ToUtf8(std::wstring_view(names[0]));
  if (iid != IID_NULL) return Fail(DISP_E_UNKNOWNINTERFACE, name, "the interface is not IID_NULL");
  if (locale != excel::kMacroLocale) return Fail(kOldTypeLibrary, name, "a foreign locale");
  for (UINT i = 0; i < count; ++i) ids[i] = DISPID_UNKNOWN;
  int place = FindMember(kind_, name);
  if (place < 0 && count == 1 && HasRoutine(name)) {
    ids[0] = IdOfRoutine(name);
    return S_OK;
  }
  if (place < 0 && TellsTheKind(kind_, name)) return DISP_E_UNKNOWNNAME;
  if (place < 0) return Fail(DISP_E_UNKNOWNNAME, name, "there is no such member");
  ids[0] = static_cast<DISPID>(kFirstId + place);
  const DocumentedMember& member = ObjectModel()[place];
  for (UINT i = 1; i < count; ++i) {
    std::string argument = excel::ToUtf8(std::wstring_view(names[i]));
    for (std::size_t k = 0; k < member.arguments.size() && member.access != Access::kIndexed; ++k) {
      if (EqualsIgnoreCase(member.arguments[k], argument)) ids[i] = static_cast<DISPID>(k);
    }
    if (ids[i] == DISPID_UNKNOWN) {
      return Fail(DISP_E_UNKNOWNNAME, name, "there is no argument " + argument);
    }
  }
  return S_OK;
}

DISPID StandInObject::IdOfRoutine(const std::string& name) {
  auto& routines = excel_->routines;
  auto known = std::find(routines.begin(), routines.end(), name);
  if (known == routines.end()) known = routines.insert(routines.end(), name);
  return kFirstRoutineId + static_cast<DISPID>(known - routines.begin());
}

// Puts each argument at its place.
HRESULT StandInObject::Bind(Call& call, const DISPPARAMS& parameters) {
  std::string_view name = call.member().name;
  UINT named = parameters.cNamedArgs;
  if (call.is_put()) {
    if (named != 1 || parameters.cArgs < 1 ||
        parameters.rgdispidNamedArgs[0] != DISPID_PROPERTYPUT) {
      return Fail(DISP_E_PARAMNOTOPTIONAL, name, "a put without its value");
    }
    call.put_value_ = Copy(parameters.rgvarg[0]);
  } else {
    for (UINT i = 0; i < named; ++i) {
      DISPID place = parameters.rgdispidNamedArgs[i];
      if (place < 0 || place >= static_cast<DISPID>(call.arguments_.size())) {
        return Fail(DISP_E_PARAMNOTFOUND, name, "an argument of an unknown name");
      }
      if (!IsMissing(parameters.rgvarg[i])) call.arguments_[place] = Copy(parameters.rgvarg[i]);
    }
  }
  UINT positional = parameters.cArgs - named;
  if (positional > call.arguments_.size()) {
    return Fail(DISP_E_BADPARAMCOUNT, name, "too many arguments");
  }
  for (UINT i = 0; i < positional; ++i) {
    const VARIANT& argument = parameters.rgvarg[parameters.cArgs - 1 - i];
    if (!IsMissing(argument)) call.arguments_[i] = Copy(argument);
  }
  for (std::size_t i = 0; i < call.member().required; ++i) {
    if (!call.Has(i)) return Fail(DISP_E_PARAMNOTOPTIONAL, name, "a required argument is missing");
  }
  return S_OK;
}

HRESULT StandInObject::Run(const std::string& member, EXCEPINFO* info, VARIANT* result,
                           const std::function<Variant()>& body) {
  try {
    Variant answer = body();
    if (result) VariantCopy(result, const_cast<VARIANT*>(&answer.get()));
    return S_OK;
  } catch (const HostError& error) {
    if (info) {
      *info = {};
      info->scode = ScodeOf(error.number());
      info->bstrSource = excel::MakeBstr(error.source());
      info->bstrDescription = excel::MakeBstr(error.description());
    }
    return DISP_E_EXCEPTION;
  } catch (const NotServed& gap) {
    return Fail(E_NOTIMPL, member, "the stand-in does not serve " + gap.what);
  } catch (const std::exception& error) {
    return Fail(E_FAIL, member, error.what());
  }
}

STDMETHODIMP StandInObject::Invoke(DISPID id, REFIID iid, LCID locale, WORD flags,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* info,
                                   UINT*) {
  auto alive = ComPtr<IDispatch>::Share(this);
  if (iid != IID_NULL) return Fail(DISP_E_UNKNOWNINTERFACE, "", "the interface is not IID_NULL");
  if (locale != excel::kMacroLocale) return Fail(kOldTypeLibrary, "", "a foreign locale");
  if (id == DISPID_NEWENUM) {
    ++excel_->calls[std::string(kind_) + "._NewEnum"];
    return Run("_NewEnum", info, result, [&] {
      auto objects = ComPtr<IUnknown>::Adopt(new Enumeration(excel_, Items()));
      Variant enumeration;
      VARIANT* place = enumeration.Receive();
      place->vt = VT_UNKNOWN;
      place->punkVal = objects.get();
      place->punkVal->AddRef();
      return enumeration;
    });
  }
  if (id >= kFirstRoutineId) {
    const std::string routine = excel_->routines.at(id - kFirstRoutineId);
    ++excel_->calls[std::string(kind_) + " routine " + routine];
    return Run(routine, info, result, [&] {
      CallRoutine(routine);
      return Variant();
    });
  }
  const auto& model = ObjectModel();
  std::size_t place = static_cast<std::size_t>(id - kFirstId);
  if (id < kFirstId || place >= model.size() || !IsMemberOf(model[place], kind_)) {
    return Fail(DISP_E_MEMBERNOTFOUND, std::to_string(id), "the identifier is of no member");
  }
  const DocumentedMember& member = model[place];
  if (!IsAllowed(member.access, flags, result)) {
    return Fail(DISP_E_MEMBERNOTFOUND, member.name,
                "can't be used in this way (" + std::to_string(flags) + ")");
  }
  Call call(member, (flags & DISPATCH_PROPERTYPUT) != 0);
  ++excel_->calls[std::string(kind_) + "." + std::string(member.name) + (call.is_put() ? "=" : "")];
  HRESULT bound = Bind(call, *parameters);
  if (FAILED(bound)) return bound;
  return Run(std::string(member.name), info, result, [&] { return Answer(call); });
}

}  // namespace vantora::standin
