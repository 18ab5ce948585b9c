// Clients that use the automation server's objects, late-bound as a macro does, over a stand-in for
// Excel. The server asks the test's own user interface, clock and file versions.
#include "server_client.h"

#include <gmock/gmock.h>

#include "component/com/automation.h"
#include "component/com/com_class.h"
#include "component/com/windows_services.h"
#include "hosts/excel/text.h"
#include "operations/client.h"
#include "standin_excel.h"
#include "ui/scripted/answer.h"
#include "ui/windows/window_text.h"

namespace vantora {
namespace {

using standin::ComPtr;
using standin::Variant;

// What objects of the server get that are made now.
Services* current_services = nullptr;

std::map<std::string, int> last_calls;

// What the test's own user interface threw during a call, because a test gave the wrong answer. The
// server may hand on no more than a number and a text of it.
std::exception_ptr wrong_answer;

template <typename Action>
auto NotingWrongAnswers(const Action& action) {
  try {
    return action();
  } catch (const ui::AnswerError&) {
    wrong_answer = std::current_exception();
    throw;
  }
}

// The test's user interface.
class TestUserInterface final : public UserInterface {
 public:
  explicit TestUserInterface(UserInterface& shown_by) : shown_by_(shown_by) {}

  MessageBoxResult MessageBox(std::string_view text, int style, std::string_view title) override {
    return NotingWrongAnswers([&] { return shown_by_.MessageBox(text, style, title); });
  }
  void ShowModal(Form& form) override {
    NotingWrongAnswers([&] { shown_by_.ShowModal(form); });
  }
  void ShowModeless(Form& form) override { shown_by_.ShowModeless(form); }
  void Refresh(Form& form) override { shown_by_.Refresh(form); }
  void Forget(Form& form) override { shown_by_.Forget(form); }
  void DoEvents() override { shown_by_.DoEvents(); }
  WindowSystem* windows() override { return shown_by_.windows(); }

 private:
  UserInterface& shown_by_;
};

class TestServices final : public com::ObjectServices {
 public:
  explicit TestServices(Services& services)
      : user_interface_(services.user_interface),
        services_{user_interface_, services.clock, services.file_versions} {}
  Services& services() override { return services_; }

 private:
  TestUserInterface user_interface_;
  Services services_;
};

class Apartment {
 public:
  Apartment() { CoInitialize(nullptr); }
  ~Apartment() { CoUninitialize(); }
};

ComPtr<IDispatch> Create(std::string_view class_name) {
  for (const com::ComClass& com_class : com::ComClasses()) {
    if (com_class.name != ui::ToUtf16(class_name)) continue;
    ComPtr<IClassFactory> factory;
    ComPtr<IDispatch> object;
    if (FAILED(DllGetClassObject(com_class.class_id, IID_IClassFactory,
                                 reinterpret_cast<void**>(factory.Receive()))) ||
        FAILED(factory->CreateInstance(nullptr, IID_IDispatch,
                                       reinterpret_cast<void**>(object.Receive())))) {
      break;
    }
    return object;
  }
  throw std::runtime_error("the server makes no " + std::string(class_name));
}

// What a macro gets for an error that a member ends with; for a test's own mistake, that.
[[noreturn]] void ThrowError(HRESULT result, EXCEPINFO& info) {
  std::string source = excel::ToUtf8(info.bstrSource);
  std::string description = excel::ToUtf8(info.bstrDescription);
  SysFreeString(info.bstrSource);
  SysFreeString(info.bstrDescription);
  SysFreeString(info.bstrHelpFile);
  if (wrong_answer) std::rethrow_exception(std::exchange(wrong_answer, nullptr));
  if (result == DISP_E_EXCEPTION) {
    const bool is_number = HRESULT_FACILITY(info.scode) == FACILITY_CONTROL;
    throw HostError(is_number ? HRESULT_CODE(info.scode) : info.scode, description, source);
  }
  throw std::runtime_error("the call ended with " + std::to_string(result) + ": " + description);
}

// `arguments` as macros pass them; a member of this `kind`.
Variant Invoke(IDispatch& object, std::string_view name, WORD kind,
               const std::vector<const Variant*>& arguments) {
  std::wstring wide = ui::ToUtf16(name);
  LPOLESTR names[] = {wide.data()};
  DISPID id = DISPID_UNKNOWN;
  HRESULT found = object.GetIDsOfNames(IID_NULL, names, 1, excel::kMacroLocale, &id);
  EXCEPINFO info{};
  if (FAILED(found)) ThrowError(found, info);
  std::vector<VARIANT> reversed;
  for (auto next = arguments.rbegin(); next != arguments.rend(); ++next) {
    reversed.push_back((*next)->get());
  }
  DISPID put = DISPID_PROPERTYPUT;
  const bool is_put = kind == DISPATCH_PROPERTYPUTREF;
  DISPPARAMS parameters{reversed.data(), is_put ? &put : nullptr,
                        static_cast<UINT>(reversed.size()), is_put ? 1u : 0u};
  Variant value;
  wrong_answer = nullptr;
  HRESULT result = object.Invoke(id, IID_NULL, excel::kMacroLocale, kind, &parameters,
                                 is_put ? nullptr : value.Receive(), &info, nullptr);
  if (FAILED(result)) ThrowError(result, info);
  return value;
}

// An array that a macro holds in a variable, counted from 0.
Variant ArrayOf(std::size_t size, VARTYPE type) {
  SAFEARRAYBOUND bound{static_cast<ULONG>(size), 0};
  Variant array;
  VARIANT* place = array.Receive();
  place->parray = SafeArrayCreate(type, 1, &bound);
  place->vt = VT_ARRAY | type;
  return array;
}

Variant ToVariant(const testing::Argument& argument) {
  if (const auto* value = std::get_if<Value>(&argument)) return Variant::From(*value);
  if (const auto* texts = std::get_if<std::vector<std::string>>(&argument)) {
    Variant array = ArrayOf(texts->size(), VT_BSTR);
    for (LONG i = 0; i < static_cast<LONG>(texts->size()); ++i) {
      Variant text{std::string_view((*texts)[i])};
      SafeArrayPutElement(array.get().parray, &i, text.get().bstrVal);
    }
    return array;
  }
  const auto& flags = std::get<std::vector<bool>>(argument);
  Variant array = ArrayOf(flags.size(), VT_BOOL);
  for (LONG i = 0; i < static_cast<LONG>(flags.size()); ++i) {
    VARIANT_BOOL flag = flags[i] ? VARIANT_TRUE : VARIANT_FALSE;
    SafeArrayPutElement(array.get().parray, &i, &flag);
  }
  return array;
}

// What the array holds now.
void FromVariant(const Variant& array, testing::Argument& argument) {
  if (std::holds_alternative<Value>(argument)) {
    argument = array.ToValue().value();
    return;
  }
  LONG last = -1;
  SafeArrayGetUBound(array.get().parray, 1, &last);
  if (auto* texts = std::get_if<std::vector<std::string>>(&argument)) {
    texts->clear();
    for (LONG i = 0; i <= last; ++i) {
      Variant text;
      VARIANT* place = text.Receive();
      place->vt = VT_BSTR;
      SafeArrayGetElement(array.get().parray, &i, &place->bstrVal);
      texts->push_back(text.ToText().value());
    }
    return;
  }
  auto& flags = std::get<std::vector<bool>>(argument);
  flags.clear();
  for (LONG i = 0; i <= last; ++i) {
    VARIANT_BOOL flag = VARIANT_FALSE;
    SafeArrayGetElement(array.get().parray, &i, &flag);
    flags.push_back(flag != VARIANT_FALSE);
  }
}

// A reference to a variable, as a macro passes it.
Variant ReferenceTo(const Variant& variable) {
  Variant reference;
  VARIANT* place = reference.Receive();
  place->vt = VT_BYREF | VT_VARIANT;
  place->pvarVal = const_cast<VARIANT*>(&variable.get());
  return reference;
}

}  // namespace

std::unique_ptr<com::ObjectServices> com::MakeObjectServices() {
  return std::make_unique<TestServices>(*current_services);
}

namespace testing {

struct Client::Impl {
  Apartment apartment;
  standin::ExcelPtr excel = std::make_shared<standin::Excel>();
  ComPtr<IDispatch> application;
  ComPtr<IDispatch> globals;
  ComPtr<IDispatch> object;
  // Whether the client is still there, for one that holds its object, and the other way round.
  std::shared_ptr<bool> alive = std::make_shared<bool>(true);
  std::weak_ptr<bool> holder;
  struct Held {
    standin::ExcelPtr excel;
    std::weak_ptr<bool> owner;
  };
  std::vector<Held> held;
};

Client::Client(std::string_view class_name, Services& services, host::ApplicationPtr application)
    : impl_(std::make_unique<Impl>()) {
  current_services = &services;
  impl_->globals = Create("clsGlobals");
  impl_->object = Create(class_name);
  if (!application) return;
  impl_->excel->application = std::move(application);
  impl_->application = standin::MakeApplication(impl_->excel);
  Variant app(impl_->application.get());
  Invoke(*impl_->globals, "App", DISPATCH_PROPERTYPUTREF, {&app});
  Init();
}

// Whatever a test did, the component called Excel as documented and let go of all its objects.
Client::~Client() {
  std::vector<standin::ExcelPtr> done;
  // An object that another client's context still holds is let go of with that one.
  if (impl_->holder.expired()) done.push_back(impl_->excel);
  for (const Impl::Held& held : impl_->held) {
    if (held.owner.expired()) done.push_back(held.excel);
  }
  const standin::ExcelPtr excel = impl_->excel;
  impl_.reset();
  for (const standin::ExcelPtr& each : done) {
    EXPECT_THAT(each->failures, ::testing::IsEmpty());
    EXPECT_EQ(each->living_objects, 0);
  }
  last_calls = std::move(excel->calls);
}

const std::map<std::string, int>& CallsOfLastClient() { return last_calls; }

void Client::Init() {
  Variant globals(impl_->globals.get());
  Invoke(*impl_->object, "Init", DISPATCH_METHOD, {&globals});
}

void Client::SetMenus(Client& menus) {
  Variant object(menus.impl_->object.get());
  Invoke(*impl_->globals, "Menus", DISPATCH_PROPERTYPUTREF, {&object});
  menus.impl_->holder = impl_->alive;
  impl_->held.push_back({menus.impl_->excel, menus.impl_->alive});
}

Value Client::Call(std::string_view method, std::vector<Argument> arguments) {
  return CallByReference(method, arguments);
}

// Every argument is a variable of the macro, so that each goes by reference.
Value Client::CallByReference(std::string_view method, std::vector<Argument>& arguments) {
  std::vector<Variant> variables;
  std::vector<Variant> references;
  for (const Argument& argument : arguments) variables.push_back(ToVariant(argument));
  for (const Variant& variable : variables) references.push_back(ReferenceTo(variable));
  std::vector<const Variant*> pointers;
  for (const Variant& reference : references) pointers.push_back(&reference);
  // As a script reads a member: whether it is a method or a property is the server's business.
  Variant result = Invoke(*impl_->object, method, DISPATCH_METHOD | DISPATCH_PROPERTYGET, pointers);
  for (std::size_t i = 0; i < arguments.size(); ++i) FromVariant(variables[i], arguments[i]);
  return result.ToValue().value();
}

}  // namespace testing
}  // namespace vantora
