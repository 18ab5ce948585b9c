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
#include "ui/windows/window_text.h"

namespace vantora {
namespace {

using standin::ComPtr;
using standin::Variant;

// What objects of the server get that are made now.
Services* current_services = nullptr;

std::map<std::string, int> last_calls;

class TestServices final : public com::ObjectServices {
 public:
  explicit TestServices(Services& services) : services_(services) {}
  Services& services() override { return services_; }

 private:
  Services& services_;
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

// What a macro gets for an error that a member ends with.
[[noreturn]] void ThrowError(HRESULT result, EXCEPINFO& info) {
  std::string source = excel::ToUtf8(info.bstrSource);
  std::string description = excel::ToUtf8(info.bstrDescription);
  SysFreeString(info.bstrSource);
  SysFreeString(info.bstrDescription);
  SysFreeString(info.bstrHelpFile);
  if (result == DISP_E_EXCEPTION && HRESULT_FACILITY(info.scode) == FACILITY_CONTROL) {
    throw HostError(HRESULT_CODE(info.scode), description, source);
  }
  throw std::runtime_error("the call ended with " + std::to_string(result) + ": " + description);
}

// `arguments` as macros pass them; a member of this `kind`.
void Invoke(IDispatch& object, std::string_view name, WORD kind,
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
  const bool is_put = kind != DISPATCH_METHOD;
  DISPPARAMS parameters{reversed.data(), is_put ? &put : nullptr,
                        static_cast<UINT>(reversed.size()), is_put ? 1u : 0u};
  HRESULT result =
      object.Invoke(id, IID_NULL, excel::kMacroLocale, kind, &parameters, nullptr, &info, nullptr);
  if (FAILED(result)) ThrowError(result, info);
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
  const standin::ExcelPtr excel = impl_->excel;
  impl_.reset();
  EXPECT_THAT(excel->failures, ::testing::IsEmpty());
  EXPECT_EQ(excel->living_objects, 0);
  last_calls = std::move(excel->calls);
}

const std::map<std::string, int>& CallsOfLastClient() { return last_calls; }

void Client::Init() {
  Variant globals(impl_->globals.get());
  Invoke(*impl_->object, "Init", DISPATCH_METHOD, {&globals});
}

void Client::Call(std::string_view method, const std::vector<Value>& arguments) {
  std::vector<Variant> values;
  for (const Value& argument : arguments) values.push_back(Variant::From(argument));
  std::vector<const Variant*> pointers;
  for (const Variant& value : values) pointers.push_back(&value);
  Invoke(*impl_->object, method, DISPATCH_METHOD, pointers);
}

}  // namespace testing
}  // namespace vantora
