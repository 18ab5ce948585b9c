#include "scripted_object.h"

#include <algorithm>
#include <charconv>
#include <memory>
#include <utility>

#include "core/value.h"
#include "hosts/excel/text.h"

namespace vantora::excel::testing {

namespace {

// What Excel answers to a caller that uses a locale it has no type library for.
constexpr HRESULT kOldTypeLibrary = static_cast<HRESULT>(0x80028018);

std::string TextOf(const VARIANT& argument) {
  if (argument.vt & VT_ARRAY) return "array";
  if (argument.vt == VT_DISPATCH) return argument.pdispVal ? "object" : "Nothing";
  if (argument.vt == VT_ERROR && argument.scode == DISP_E_PARAMNOTFOUND) return "missing";
  Variant copy;
  VariantCopy(copy.Receive(), const_cast<VARIANT*>(&argument));
  Value value = copy.ToValue().value();
  if (value.IsEmpty()) return "Empty";
  if (value.IsBoolean()) return value.AsBoolean() ? "True" : "False";
  if (value.IsError()) return "Error " + std::to_string(static_cast<int>(value.AsError()));
  if (value.IsText()) return "\"" + value.AsText() + "\"";
  char digits[32];
  return std::string(digits, std::to_chars(digits, digits + 32, value.AsNumber()).ptr);
}

class ScriptedEnumeration : public IEnumVARIANT {
 public:
  ScriptedEnumeration(Journal& journal, std::vector<ComPtr<ScriptedObject>> items)
      : journal_(journal), items_(std::move(items)) {
    ++journal_.living_objects;
  }

  STDMETHOD(QueryInterface)(REFIID iid, void** object) override {
    *object = nullptr;
    if (iid != IID_IUnknown && iid != __uuidof(IEnumVARIANT)) return E_NOINTERFACE;
    AddRef();
    *object = static_cast<IEnumVARIANT*>(this);
    return S_OK;
  }
  STDMETHOD_(ULONG, AddRef)() override { return ++references_; }
  STDMETHOD_(ULONG, Release)() override {
    ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  STDMETHOD(Next)(ULONG count, VARIANT* items, ULONG* fetched) override {
    ULONG given = 0;
    for (; given < count && next_ < items_.size(); ++given) {
      items[given].vt = VT_DISPATCH;
      items[given].pdispVal = items_[next_++].get();
      items[given].pdispVal->AddRef();
    }
    if (fetched) *fetched = given;
    return given == count ? S_OK : S_FALSE;
  }
  STDMETHOD(Skip)(ULONG) override { return E_NOTIMPL; }
  STDMETHOD(Reset)() override { return E_NOTIMPL; }
  STDMETHOD(Clone)(IEnumVARIANT**) override { return E_NOTIMPL; }

 private:
  virtual ~ScriptedEnumeration() { --journal_.living_objects; }

  Journal& journal_;
  std::vector<ComPtr<ScriptedObject>> items_;
  std::size_t next_ = 0;
  ULONG references_ = 1;
};

bool MayBeCalled(MemberKind kind, WORD flags, const DISPPARAMS& parameters, VARIANT* result) {
  if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
    return kind == MemberKind::kReadWrite && !result && parameters.cNamedArgs == 1 &&
           parameters.rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
  }
  if (kind == MemberKind::kMethod) return (flags & DISPATCH_METHOD) != 0;
  return (flags & DISPATCH_PROPERTYGET) != 0 && result;
}

}  // namespace

std::string Journal::Take() {
  std::string lines;
  for (const std::string& call : calls) lines += call + "\n";
  calls.clear();
  return lines;
}

Reply Gives(Variant value) {
  auto shared = std::make_shared<Variant>(std::move(value));
  return [shared](VARIANT* result, EXCEPINFO*) {
    return result ? VariantCopy(result, const_cast<VARIANT*>(&shared->get())) : S_OK;
  };
}

Reply Raises(SCODE scode, WORD code, const char* source, const char* description) {
  std::string source_text = source;
  std::string description_text = description;
  return [=](VARIANT*, EXCEPINFO* info) {
    info->scode = scode;
    info->wCode = code;
    if (!source_text.empty()) info->bstrSource = MakeBstr(source_text);
    if (!description_text.empty()) info->bstrDescription = MakeBstr(description_text);
    return DISP_E_EXCEPTION;
  };
}

Reply FailsWith(HRESULT result) {
  return [result](VARIANT*, EXCEPINFO*) { return result; };
}

ScriptedObject::ScriptedObject(Journal& journal, std::string kind)
    : journal_(journal), kind_(std::move(kind)) {
  ++journal_.living_objects;
}

ScriptedObject::~ScriptedObject() { --journal_.living_objects; }

ComPtr<ScriptedObject> ScriptedObject::Make(Journal& journal, const std::string& kind) {
  return ComPtr<ScriptedObject>::Adopt(new ScriptedObject(journal, kind));
}

void ScriptedObject::Has(const std::string& member, MemberKind kind, Reply reply,
                         std::vector<std::string> arguments) {
  DISPID next = 100 + static_cast<DISPID>(journal_.ids.size());
  DISPID id = journal_.ids.emplace(kind_ + "." + member, next).first->second;
  members_[id] = {
      member, kind, reply ? std::move(reply) : FailsWith(S_OK), std::move(arguments), {}};
}

void ScriptedObject::TakesPut(const std::string& member,
                              std::function<void(const VARIANT& value)> take) {
  Has(member, MemberKind::kReadWrite);
  members_.at(journal_.ids.at(kind_ + "." + member)).take = std::move(take);
}

STDMETHODIMP ScriptedObject::QueryInterface(REFIID iid, void** object) {
  *object = nullptr;
  if (iid != IID_IUnknown && iid != IID_IDispatch) return E_NOINTERFACE;
  AddRef();
  *object = static_cast<IDispatch*>(this);
  return S_OK;
}

STDMETHODIMP_(ULONG) ScriptedObject::AddRef() { return ++references_; }

STDMETHODIMP_(ULONG) ScriptedObject::Release() {
  ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

STDMETHODIMP ScriptedObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID locale,
                                           DISPID* ids) {
  if (locale != 1033) return kOldTypeLibrary;
  if (busy_times_ > 0 && busy_times_--) return busy_reply_(nullptr, nullptr);
  std::string name = ToUtf8(std::wstring_view(names[0]));
  ++journal_.look_ups[kind_ + "." + name];
  for (const auto& [id, member] : members_) {
    if (member.name != name) continue;
    ids[0] = id;
    for (UINT i = 1; i < count; ++i) {
      auto found = std::find(member.arguments.begin(), member.arguments.end(),
                             ToUtf8(std::wstring_view(names[i])));
      if (found == member.arguments.end()) return DISP_E_UNKNOWNNAME;
      ids[i] = static_cast<DISPID>(found - member.arguments.begin());
    }
    return S_OK;
  }
  return DISP_E_UNKNOWNNAME;
}

STDMETHODIMP ScriptedObject::Invoke(DISPID id, REFIID, LCID locale, WORD flags,
                                    DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* info,
                                    UINT*) {
  if (locale != 1033) return kOldTypeLibrary;
  if (busy_times_ > 0 && busy_times_--) return busy_reply_(result, info);
  if (id == DISPID_NEWENUM) return Enumerate(result);
  auto found = members_.find(id);
  if (found == members_.end()) return DISP_E_MEMBERNOTFOUND;
  const ScriptedMember& member = found->second;
  if (!MayBeCalled(member.kind, flags, *parameters, result)) return DISP_E_MEMBERNOTFOUND;
  Record(member, flags, *parameters);
  if (member.take && (flags & DISPATCH_PROPERTYPUT)) member.take(parameters->rgvarg[0]);
  return member.reply(result, info);
}

HRESULT ScriptedObject::Enumerate(VARIANT* result) {
  result->vt = VT_UNKNOWN;
  result->punkVal = new ScriptedEnumeration(journal_, items_);
  return S_OK;
}

void ScriptedObject::Record(const ScriptedMember& member, WORD flags,
                            const DISPPARAMS& parameters) {
  std::string call = kind_ + "." + member.name;
  if (flags & DISPATCH_PROPERTYPUT) {
    call += " put(";
  } else if (flags & DISPATCH_PROPERTYPUTREF) {
    call += " putref(";
  } else {
    call += member.kind == MemberKind::kMethod ? " call(" : " get(";
  }
  const char* separator = "";
  // The positional arguments lie behind the named ones, the last one first.
  for (UINT i = parameters.cArgs; i-- > 0;) {
    call += separator;
    separator = ", ";
    if (i < parameters.cNamedArgs && parameters.rgdispidNamedArgs[i] != DISPID_PROPERTYPUT) {
      call += member.arguments.at(parameters.rgdispidNamedArgs[i]) + ":=";
    }
    call += TextOf(parameters.rgvarg[i]);
  }
  journal_.calls.push_back(call + ")");
}

}  // namespace vantora::excel::testing
