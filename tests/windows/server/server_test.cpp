// The DLL as its clients use it: objects, the session, errors, lifetimes.
#include <gmock/gmock.h>

#include "Orvanemcro1.h"
#include "component/class_table.h"
#include "component/com/com_class.h"
#include "excel/scripted_excel.h"
#include "hosts/excel/text.h"
#include "server/loaded_dll.h"
#include "server/message_boxes.h"
#include "server/stand_in.h"
#include "ui/windows/window_text.h"

namespace vantora::com {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

std::string TakeText(BSTR text) {
  std::string utf8 = excel::ToUtf8(text);
  SysFreeString(text);
  return utf8;
}

VARIANT Plain(VARTYPE type) {
  VARIANT value;
  VariantInit(&value);
  value.vt = type;
  return value;
}
VARIANT Object(IDispatch* object) {
  VARIANT value = Plain(VT_DISPATCH);
  value.pdispVal = object;
  return value;
}

class ServerTest : public ::testing::Test {
 protected:
  ServerTest() {
    EXPECT_HRESULT_SUCCEEDED(CoInitialize(nullptr));
    EXPECT_TRUE(dll_.loaded());
  }
  ~ServerTest() override { CoUninitialize(); }
  // Each test lets go of all objects it made.
  void TearDown() override {
    EXPECT_EQ(dll_.CanUnloadNow(), S_OK);
    EXPECT_EQ(application_.references(), 0u);
  }

  ComPtr<_clsGlobals> NewGlobals() { return dll_.Create<_clsGlobals>(CLSID_clsGlobals); }
  ComPtr<_clsYearEnd> NewYearEnd() { return dll_.Create<_clsYearEnd>(CLSID_clsYearEnd); }
  ComPtr<_clsRefSheet> NewRefSheet() { return dll_.Create<_clsRefSheet>(CLSID_clsRefSheet); }

  LoadedDll dll_;
  RefusingApplication application_;
};

TEST_F(ServerTest, CreatesEachClassWithOneIdentity) {
  for (const ComClass& com_class : ComClasses()) {
    auto unknown = dll_.Create<IUnknown>(com_class.class_id);
    ASSERT_TRUE(unknown);
    const IID interfaces[] = {IID_IDispatch, com_class.interface_id, IID_ISupportErrorInfo,
                              IID_IProvideClassInfo};
    for (const IID& iid : interfaces) {
      ComPtr<IUnknown> other;
      ASSERT_HRESULT_SUCCEEDED(
          unknown->QueryInterface(iid, reinterpret_cast<void**>(other.Receive())));
      EXPECT_EQ(other.As<IUnknown>().get(), unknown.get());
      EXPECT_TRUE(other.As<IDispatch>());
    }
    EXPECT_FALSE(unknown.As<IPersist>());
    EXPECT_EQ(unknown.As<ISupportErrorInfo>()->InterfaceSupportsErrorInfo(com_class.interface_id),
              S_OK);
    ComPtr<ITypeInfo> info;
    ASSERT_HRESULT_SUCCEEDED(unknown.As<IProvideClassInfo>()->GetClassInfo(info.Receive()));
    BSTR name = nullptr;
    info->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr);
    EXPECT_EQ(TakeText(name), excel::ToUtf8(std::wstring_view(com_class.name)));
    EXPECT_EQ(dll_.CanUnloadNow(), S_FALSE);
  }
}

TEST_F(ServerTest, RefusesWhatItHasNot) {
  void* object = this;
  EXPECT_EQ(dll_.GetClassObject(IID_IUnknown, IID_IClassFactory, &object),
            CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(dll_.GetClassObject(CLSID_clsYearEnd, IID_IDispatch, &object), E_NOINTERFACE);
  ComPtr<IClassFactory> factory;
  ASSERT_EQ(dll_.GetClassObject(CLSID_clsYearEnd, IID_IClassFactory,
                                reinterpret_cast<void**>(factory.Receive())),
            S_OK);
  EXPECT_EQ(factory->CreateInstance(&application_, IID_IUnknown, &object), CLASS_E_NOAGGREGATION);
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IPersist, &object), E_NOINTERFACE);
  EXPECT_EQ(dll_.Install(TRUE, L"everybody"), E_INVALIDARG);
  factory->LockServer(TRUE);
  factory = {};
  EXPECT_EQ(dll_.CanUnloadNow(), S_FALSE) << "while locked";
  ASSERT_EQ(dll_.GetClassObject(CLSID_clsYearEnd, IID_IClassFactory,
                                reinterpret_cast<void**>(factory.Receive())),
            S_OK);
  factory->LockServer(FALSE);
}

// The names of the members that the type library describes, each with a help text.
std::vector<std::string> DescribedMembers(ITypeInfo& info) {
  std::vector<std::string> members;
  FUNCDESC* function = nullptr;
  for (UINT i = 0; SUCCEEDED(info.GetFuncDesc(i, &function)); ++i) {
    BSTR name = nullptr;
    BSTR help = nullptr;
    info.GetDocumentation(function->memid, &name, &help, nullptr, nullptr);
    members.push_back(TakeText(name));
    bool inherited = function->memid >= 0x60000000;
    EXPECT_TRUE(inherited || SysStringLen(help) != 0) << members.back();
    SysFreeString(help);
    info.ReleaseFuncDesc(function);
  }
  return members;
}

TEST_F(ServerTest, OffersTheClassesOfTheClassTableInItsOrder) {
  std::vector<std::string> expected;
  for (const component::PublicClass& public_class : component::PublicClasses()) {
    expected.emplace_back(public_class.name);
  }
  std::vector<std::string> offered;
  for (const ComClass& com_class : ComClasses()) {
    std::string name = excel::ToUtf8(std::wstring_view(com_class.name));
    offered.push_back(name);
    auto dispatch = dll_.Create<IDispatch>(com_class.class_id);
    ComPtr<ITypeInfo> info;
    ASSERT_HRESULT_SUCCEEDED(dispatch->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.Receive()));
    std::vector<std::string> members = DescribedMembers(*info.get());
    for (const component::Method& method : component::FindClass(name)->methods) {
      EXPECT_THAT(members, ::testing::Contains(std::string(method.name)));
    }
    EXPECT_THAT(members, ::testing::Contains(name == "clsGlobals" ? "App" : "Init"));
  }
  EXPECT_EQ(offered, expected);
}

TEST_F(ServerTest, KeepsTheApplicationAndTheMenus) {
  auto globals = NewGlobals();
  ComPtr<IDispatch> read;
  EXPECT_EQ(globals->get_App(read.Receive()), S_OK);
  EXPECT_FALSE(read);
  ASSERT_EQ(globals->putref_App(&application_), S_OK);
  EXPECT_EQ(globals->get_App(read.Receive()), S_OK);
  EXPECT_EQ(read.get(), &application_);
  EXPECT_EQ(application_.calls(), 0);

  // Nothing but the menus can be set.
  auto other = dll_.Create<IDispatch>(CLSID_clsRefSheet);
  EXPECT_EQ(globals->putref_Menus(other.get()), static_cast<HRESULT>(0x800A000D));
  auto menus = dll_.Create<IDispatch>(CLSID_clsMenuManagement);
  ASSERT_EQ(globals->putref_Menus(menus.get()), S_OK);
  ComPtr<IDispatch> read_menus;
  EXPECT_EQ(globals->get_Menus(read_menus.Receive()), S_OK);
  EXPECT_EQ(read_menus.get(), menus.get());

  read = {};
  ASSERT_EQ(globals->putref_App(nullptr), S_OK);
  EXPECT_EQ(application_.references(), 0u);
}

// What a macro may pass to Init that is no clsGlobals.
struct WrongArgument {
  const char* name;
  VARIANT (*make)(IDispatch* foreign);
};

void PrintTo(const WrongArgument& argument, std::ostream* out) { *out << argument.name; }

class WrongArgumentTest : public ServerTest, public ::testing::WithParamInterface<WrongArgument> {};

TEST_P(WrongArgumentTest, IsReportedOnceAndLeavesTheObjectSilent) {
  auto foreign = dll_.Create<IDispatch>(CLSID_clsRefSheet);
  auto year_end = NewYearEnd();
  MessageBoxes boxes(IDOK);
  EXPECT_EQ(year_end->Init(GetParam().make(foreign.get())), S_OK);
  EXPECT_EQ(year_end->ShiftHistory(), S_OK);
  EXPECT_EQ(year_end->SaveCurrentYear(), S_OK);
  EXPECT_THAT(boxes.Stop(),
              ElementsAre(AllOf(HasSubstr(L"Module: clsYearEnd"),
                                HasSubstr(L"Class initiated with invalid clsGlobals object"))));
}

INSTANTIATE_TEST_SUITE_P(
    All, WrongArgumentTest,
    ::testing::Values(WrongArgument{"Absent",
                                    [](IDispatch*) {
                                      VARIANT value = Plain(VT_ERROR);
                                      value.scode = DISP_E_PARAMNOTFOUND;
                                      return value;
                                    }},
                      WrongArgument{"Empty", [](IDispatch*) { return Plain(VT_EMPTY); }},
                      WrongArgument{"Nothing", [](IDispatch*) { return Object(nullptr); }},
                      WrongArgument{"Number", [](IDispatch*) { return Plain(VT_I4); }},
                      WrongArgument{"Text", [](IDispatch*) { return Plain(VT_BSTR); }},
                      WrongArgument{"Foreign", [](IDispatch* foreign) { return Object(foreign); }},
                      WrongArgument{"ReferenceToForeign",
                                    [](IDispatch* foreign) {
                                      static VARIANT variable;
                                      variable = Object(foreign);
                                      VARIANT value = Plain(VT_BYREF | VT_VARIANT);
                                      value.pvarVal = &variable;
                                      return value;
                                    }}),
    [](const auto& test) { return test.param.name; });

TEST_F(ServerTest, InitWithoutAnApplicationIsReported) {
  auto globals = NewGlobals();
  auto ref_sheet = NewRefSheet();
  MessageBoxes boxes(IDOK);
  EXPECT_EQ(ref_sheet->Init(Object(globals.get())), S_OK);
  EXPECT_THAT(boxes.Stop(),
              ElementsAre(AllOf(
                  HasSubstr(L"Module: clsRefSheet"),
                  HasSubstr(L"clsGlobals was not initialized with the Excel application object"))));
}

// Calls the method, late-bound, with a number for each argument: where a macro passes an array that
// is a wrong one.
HRESULT CallWithNumbers(IDispatch& object, const component::Method& method, VARIANT* result) {
  std::wstring name = ui::ToUtf16(method.name);
  LPOLESTR names[] = {name.data()};
  DISPID id = 0;
  HRESULT found = object.GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(found)) return found;
  std::vector<VARIANT> arguments(method.parameters.size(), Plain(VT_I4));
  DISPPARAMS parameters = {arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
  return object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, result,
                       nullptr, nullptr);
}

TEST_F(ServerTest, ObjectsThatWereNeverInitialisedDoNothing) {
  MessageBoxes boxes(IDOK);
  int calls = 0;
  for (std::size_t i = 1; i < component::PublicClasses().size(); ++i) {
    auto object = dll_.Create<IDispatch>(ComClasses()[i].class_id);
    for (const component::Method& method : component::PublicClasses()[i].methods) {
      SCOPED_TRACE(method.name);
      excel::Variant result;
      EXPECT_EQ(CallWithNumbers(*object, method, result.Receive()), S_OK);
      const bool is_empty = result.type() == VT_EMPTY || result.ToText() == "" ||
                            result.ToText() == "0" || result.ToBool() == false;
      EXPECT_TRUE(is_empty) << result.ToText().value_or("no text");
      ++calls;
    }
  }
  EXPECT_GT(calls, 80);
  EXPECT_THAT(boxes.Stop(), IsEmpty());
}

TEST_F(ServerTest, HostErrorsReachTheMacroUnderTheirOwnNumber) {
  auto globals = NewGlobals();
  globals->putref_App(&application_);
  auto ref_sheet = NewRefSheet();

  EXPECT_EQ(ref_sheet->Init(Object(globals.get())), static_cast<HRESULT>(0x800A03EC));
  ComPtr<IErrorInfo> information;
  ASSERT_EQ(GetErrorInfo(0, information.Receive()), S_OK);
  BSTR source = nullptr;
  BSTR text = nullptr;
  information->GetSource(&source);
  information->GetDescription(&text);
  EXPECT_EQ(TakeText(source), excel::ToUtf8(std::wstring_view(RefusingApplication::kSource)));
  EXPECT_EQ(TakeText(text), excel::ToUtf8(std::wstring_view(RefusingApplication::kText)));

  // The same, late-bound.
  VARIANT argument = Object(globals.get());
  DISPPARAMS parameters = {&argument, nullptr, 1, 0};
  wchar_t member_name[] = L"init";
  wchar_t* name = member_name;
  DISPID member = 0;
  ASSERT_EQ(ref_sheet->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &member), S_OK);
  EXCEPINFO exception = {};
  EXPECT_EQ(ref_sheet->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                              nullptr, &exception, nullptr),
            DISP_E_EXCEPTION);
  EXPECT_EQ(exception.scode, static_cast<SCODE>(0x800A03EC));
  EXPECT_EQ(TakeText(exception.bstrSource), "Microsoft Excel");
  EXPECT_THAT(TakeText(exception.bstrDescription), StartsWith("Method 'ActiveSheet'"));
}

TEST_F(ServerTest, WritesIntoTheWorkbookAndLetsGoOfAllOfIt) {
  excel::testing::Journal journal;
  {
    excel::testing::ScriptedExcel excel(journal);
    excel.range->Has("Value", excel::testing::MemberKind::kReadWrite, excel::testing::Gives("X14"));
    auto globals = NewGlobals();
    auto ref_sheet = NewRefSheet();
    globals->putref_App(excel.application.get());
    MessageBoxes boxes(IDOK);
    ASSERT_EQ(ref_sheet->Init(Object(globals.get())), S_OK);
    EXPECT_THAT(boxes.Stop(), ElementsAre(HasSubstr(L"One or more flag values are missing")));
    journal.Take();

    BSTR version = SysAllocString(L"2.0 \u00e9");
    EXPECT_EQ(ref_sheet->PutDLLVersion(version), S_OK);
    SysFreeString(version);
    EXPECT_THAT(journal.calls,
                ElementsAre("Worksheet.Cells get(6, 3)", "Range.Value put(\"2.0 \u00e9\")"));
  }
  EXPECT_EQ(journal.living_objects, 0);
}

TEST_F(ServerTest, ABoundObjectWorksWithoutItsGlobals) {
  auto globals = NewGlobals();
  globals->putref_App(&application_);
  auto year_end = NewYearEnd();
  ASSERT_EQ(year_end->Init(Object(globals.get())), S_OK);
  globals = {};
  {
    MessageBoxes boxes(IDCANCEL);
    EXPECT_EQ(year_end->ShiftHistory(), S_OK) << "cancelled";
    EXPECT_THAT(boxes.Stop(), ElementsAre(HasSubstr(L"save your model")));
    EXPECT_EQ(application_.calls(), 0);
  }
  MessageBoxes boxes(IDOK);
  EXPECT_EQ(year_end->ShiftHistory(), static_cast<HRESULT>(0x800A03EC));
  EXPECT_EQ(application_.calls(), 1);
}

TEST_F(ServerTest, VersionIsThatOfTheInstalledFile) {
  auto globals = NewGlobals();
  BSTR version = nullptr;
  ASSERT_EQ(globals->get_Version(&version), S_OK);
  EXPECT_EQ(TakeText(version), "1: No version information available for DLL");

  wchar_t programs[MAX_PATH] = L"";
  ExpandEnvironmentStringsW(L"%ProgramFiles%", programs, MAX_PATH);
  std::wstring company = std::wstring(programs) + L"\\Orvane";
  std::wstring folder = company + L"\\Vantora";
  CreateDirectoryW(company.c_str(), nullptr);
  CreateDirectoryW(folder.c_str(), nullptr);
  std::wstring file = folder + L"\\Orvanemcro1.dll";
  ASSERT_TRUE(CopyFileW(dll_.Path().c_str(), file.c_str(), FALSE));
  EXPECT_EQ(globals->get_Version(&version), S_OK);
  EXPECT_EQ(TakeText(version), "Vantora DLL version being used: " VANTORA_VERSION);
  EXPECT_TRUE(DeleteFileW(file.c_str()));
  RemoveDirectoryW(folder.c_str());
  RemoveDirectoryW(company.c_str());
}

}  // namespace
}  // namespace vantora::com
