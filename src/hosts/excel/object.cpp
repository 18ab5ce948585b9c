#include "hosts/excel/object.h"

#include <stdexcept>
#include <utility>

#include "hosts/excel/call_error.h"
#include "hosts/excel/text.h"

namespace vantora::excel {

namespace {

// Reads are called as script clients call them: Excel tells methods from properties itself.
constexpr WORD kRead = DISPATCH_METHOD | DISPATCH_PROPERTYGET;

// No member of Excel takes more arguments.
constexpr std::size_t kMostArguments = 31;

// Arguments as Invoke expects them: the last one first. Borrows the values.
class ReversedArguments {
 public:
  void Append(const Variant& value) {
    if (count_ == kMostArguments) throw std::length_error("a call with too many arguments");
    values_[kMostArguments - ++count_] = value.get();
  }
  VARIANT* begin() { return values_ + kMostArguments - count_; }
  UINT count() const { return static_cast<UINT>(count_); }

 private:
  // Left uninitialised: most calls use none or two.
  VARIANT values_[kMostArguments];
  std::size_t count_ = 0;
};

}  // namespace

Object::Object(ConnectionPtr connection, ComPtr<IDispatch> dispatch)
    : connection_(std::move(connection)), dispatch_(std::move(dispatch)) {}

Variant Object::Get(Member member, Arguments arguments, NamedArguments named) const {
  Variant result;
  InvokeWith(member, kRead, arguments, named, result.Receive());
  return result;
}

int Object::GetInt(Member member) const {
  std::optional<int> number = Get(member).ToInt();
  if (!number) throw WrongTypeError(FullNameOf(member), "a number");
  return *number;
}

double Object::GetDouble(Member member) const {
  std::optional<double> number = Get(member).ToDouble();
  if (!number) throw WrongTypeError(FullNameOf(member), "a number");
  return *number;
}

bool Object::GetBool(Member member) const {
  std::optional<bool> boolean = Get(member).ToBool();
  if (!boolean) throw WrongTypeError(FullNameOf(member), "True or False");
  return *boolean;
}

std::string Object::GetText(Member member) const {
  std::optional<std::string> text = Get(member).ToText();
  if (!text) throw WrongTypeError(FullNameOf(member), "a text");
  return *text;
}

Object Object::Child(Member member, Arguments arguments, NamedArguments named) const {
  std::optional<Object> child = FindChild(member, arguments, named);
  if (!child) throw NothingError(FullNameOf(member));
  return *std::move(child);
}

std::optional<Object> Object::FindChild(Member member, Arguments arguments,
                                        NamedArguments named) const {
  ComPtr<IDispatch> object = Get(member, arguments, named).ToObject();
  if (!object) return std::nullopt;
  return Object(connection_, std::move(object));
}

void Object::Call(Member member, Arguments arguments, NamedArguments named) const {
  InvokeWith(member, DISPATCH_METHOD, arguments, named, nullptr);
}

void Object::Put(Member member, const Variant& value) const {
  VARIANT argument = value.get();
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{&argument, &put, 1, 1};
  WORD kind = value.type() == VT_DISPATCH ? DISPATCH_PROPERTYPUTREF : DISPATCH_PROPERTYPUT;
  Invoke(member, kind, parameters, nullptr);
}

void Object::CallOwn(std::string_view method) const {
  std::wstring name = windows::ToUtf16(method);
  LPOLESTR names[] = {name.data()};
  DISPID id = DISPID_UNKNOWN;
  auto describe = [method] { return std::string(method); };
  HRESULT found = connection_->UntilNotBusy(
      [&] { return dispatch_->GetIDsOfNames(IID_NULL, names, 1, kMacroLocale, &id); }, describe);
  if (FAILED(found)) throw CallError(found, {}, describe());
  DISPPARAMS none{};
  InvokeById(id, describe, DISPATCH_METHOD, none, nullptr);
}

std::vector<Object> Object::Items(Member member, Member count, Member item) const {
  Object collection = Child(member);
  std::vector<Object> items;
  const int last = collection.GetInt(count);
  for (int i = 1; i <= last; ++i) items.push_back(collection.Child(item, {i}));
  return items;
}

std::vector<Object> Object::Items(Member member) const {
  auto describe = [member] { return FullNameOf(member); };
  Object collection = Child(member);
  DISPPARAMS none{};
  Variant result;
  collection.InvokeById(DISPID_NEWENUM, describe, kRead, none, result.Receive());
  ComPtr<IEnumVARIANT> enumerator;
  if (result.type() == VT_UNKNOWN || result.type() == VT_DISPATCH) {
    enumerator = ComPtr<IUnknown>::Share(result.get().punkVal).As<IEnumVARIANT>();
  }
  if (!enumerator) throw WrongTypeError(FullNameOf(member), "an enumeration");

  std::vector<Object> items;
  for (;;) {
    Variant item;
    VARIANT* place = item.Receive();
    HRESULT next =
        connection_->UntilNotBusy([&] { return enumerator->Next(1, place, nullptr); }, describe);
    if (FAILED(next)) throw CallError(next, {}, describe());
    if (next != S_OK) return items;
    ComPtr<IDispatch> object = item.ToObject();
    if (!object) throw WrongTypeError(FullNameOf(member), "objects only");
    items.emplace_back(connection_, std::move(object));
  }
}

bool Object::Has(const wchar_t* name) const {
  LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
  DISPID id = DISPID_UNKNOWN;
  auto describe = [] { return std::string("the look-up of a member"); };
  HRESULT result = connection_->UntilNotBusy(
      [&] { return dispatch_->GetIDsOfNames(IID_NULL, names, 1, kMacroLocale, &id); }, describe);
  if (result == DISP_E_UNKNOWNNAME || result == DISP_E_MEMBERNOTFOUND) return false;
  if (FAILED(result)) throw CallError(result, {}, describe());
  return true;
}

bool Object::IsSame(const Object& other) const {
  return dispatch_.As<IUnknown>().get() == other.dispatch_.As<IUnknown>().get();
}

void Object::InvokeWith(Member member, WORD kind, Arguments arguments, NamedArguments named,
                        VARIANT* result) const {
  // The positional arguments come last in reverse order, the named ones before them. Appending
  // from the first argument on fills the array from its end.
  ReversedArguments reversed;
  for (const Variant& argument : arguments) reversed.Append(argument);
  for (const NamedArgument* argument = named.end(); argument != named.begin();) {
    reversed.Append((--argument)->value);
  }
  std::vector<DISPID> names = IdsOfArguments(member, named);
  DISPPARAMS parameters{reversed.begin(), names.data(), reversed.count(),
                        static_cast<UINT>(names.size())};
  Invoke(member, kind, parameters, result);
}

void Object::Invoke(Member member, WORD kind, DISPPARAMS& parameters, VARIANT* result) const {
  auto describe = [member] { return FullNameOf(member); };
  InvokeById(connection_->IdOf(*dispatch_, member), describe, kind, parameters, result);
}

template <typename Describe>
void Object::InvokeById(DISPID id, const Describe& describe, WORD kind, DISPPARAMS& parameters,
                        VARIANT* result) const {
  ExceptionInfo info;
  auto attempt = [&]() -> HRESULT {
    UINT wrong_argument = 0;
    HRESULT outcome = dispatch_->Invoke(id, IID_NULL, kMacroLocale, kind, &parameters, result,
                                        info.Receive(), &wrong_argument);
    if (outcome != DISP_E_EXCEPTION) return outcome;
    info.Complete();
    // Excel also says in this way that it is busy.
    return IsBusy(info.get().scode) ? info.get().scode : outcome;
  };
  HRESULT outcome = connection_->UntilNotBusy(attempt, describe);
  if (FAILED(outcome)) throw CallError(outcome, info.get(), describe());
}

std::vector<DISPID> Object::IdsOfArguments(Member member, NamedArguments named) const {
  std::vector<DISPID> ids;
  if (named.size() == 0) return ids;
  std::vector<LPOLESTR> names{const_cast<LPOLESTR>(NameOf(member))};
  for (const NamedArgument& argument : named) names.push_back(const_cast<LPOLESTR>(argument.name));
  ids.resize(names.size());
  auto full_name = [member] { return FullNameOf(member); };
  HRESULT result = connection_->UntilNotBusy(
      [&] {
        return dispatch_->GetIDsOfNames(IID_NULL, names.data(), static_cast<UINT>(names.size()),
                                        kMacroLocale, ids.data());
      },
      full_name);
  if (FAILED(result)) throw CallError(result, {}, full_name());
  ids.erase(ids.begin());
  return ids;
}

}  // namespace vantora::excel
