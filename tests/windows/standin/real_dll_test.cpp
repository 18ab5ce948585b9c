// The DLL itself over the stand-in for Excel, with its own message boxes and progress dialog on the
// screen. (The other tests here have the same objects linked into the program.)
#include <gmock/gmock.h>

#include "Orvanemcro1.h"
#include "dialogs/frm_save_comments.h"
#include "dialogs/frm_save_history_prompt.h"
#include "hosts/excel/text.h"
#include "operations/year_end_fixture.h"
#include "server/loaded_dll.h"
#include "server/message_boxes.h"
#include "standin_excel.h"
#include "support/fake_services.h"
#include "ui/dialog_driver.h"
#include "ui/windows/window_text.h"

namespace vantora::com {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RealDll : public ::testing::Test {
 protected:
  RealDll() {
    EXPECT_HRESULT_SUCCEEDED(CoInitialize(nullptr));
    excel->application = model.application();
    application = standin::MakeApplication(excel);
  }
  ~RealDll() override {
    EXPECT_EQ(dll.CanUnloadNow(), S_OK);
    application = {};
    EXPECT_EQ(excel->living_objects, 0);
    EXPECT_THAT(excel->failures, IsEmpty());
    CoUninitialize();
  }

  // Runs a method of an object that is bound to the stand-in, answering OK.
  HRESULT Run(HRESULT (STDMETHODCALLTYPE _clsYearEnd::*method)()) {
    auto globals = dll.Create<_clsGlobals>(CLSID_clsGlobals);
    auto year_end = dll.Create<_clsYearEnd>(CLSID_clsYearEnd);
    if (!globals || !year_end) return E_FAIL;
    EXPECT_HRESULT_SUCCEEDED(globals->putref_App(application.get()));
    excel::Variant argument(globals.get());
    EXPECT_HRESULT_SUCCEEDED(year_end->Init(argument.get()));
    MessageBoxes boxes(IDOK);
    HRESULT outcome = (year_end.get()->*method)();
    texts = boxes.Stop();
    return outcome;
  }

  ui::HostProgram program;
  testing::FixedClock clock;
  testing::TestModel model = testing::YearEndModel();
  standin::ExcelPtr excel = std::make_shared<standin::Excel>();
  ComPtr<IDispatch> application;
  LoadedDll dll;
  std::vector<std::wstring> texts;
};

TEST_F(RealDll, ShiftsTheHistory) {
  EXPECT_EQ(Run(&_clsYearEnd::ShiftHistory), S_OK);
  EXPECT_THAT(model.Get("Data!J3", 6),
              ElementsAre(Value(12), Value(13), Value(14), Value(15), Value(15), Value(30)));
  EXPECT_EQ(model.Get("Plant!M5"), Value(25));
  ASSERT_FALSE(texts.empty());
  EXPECT_TRUE(texts[0].starts_with(L"This will shift all five history years."));
}

TEST_F(RealDll, PassesOnTheNumberOfWhatExcelRefuses) {
  model.Protect("Plant");
  EXPECT_EQ(Run(&_clsYearEnd::CopyCurrentYear), static_cast<HRESULT>(0x800A03EC));
  EXPECT_EQ(model.Get("Data!N3"), Value(30));
  EXPECT_EQ(model.Get("Plant!N5"), Value(25));
}

TEST_F(RealDll, SavesTheCurrentYearWithTheCommentThatIsTyped) {
  const frmSaveComments twin(clock);
  ui::User user([&] {
    const HWND dialog = ui::WaitForDialog(twin.caption());
    ui::Type(ui::WindowOf(dialog, twin, "txtComments"), L"Board");
    ui::Click(ui::WindowOf(dialog, twin, "butText"));
  });
  EXPECT_EQ(Run(&_clsYearEnd::SaveCurrentYear), S_OK);
  EXPECT_EQ(model.Get("Data!R3"), Value(30));
  EXPECT_TRUE(model.Comment("Data!R2").starts_with("Board -- ")) << model.Comment("Data!R2");
  EXPECT_EQ(model.RefersTo("marker"), "Data!$S$1");
}

TEST_F(RealDll, SavesTheHistoryYearThatIsChosen) {
  const frmSaveHistoryPrompt prompt;
  const frmSaveComments comments(clock);
  ui::User user([&] {
    const HWND dialog = ui::WaitForDialog(prompt.caption());
    ui::PressKey(dialog, VK_DOWN);
    ui::PressKey(dialog, VK_DOWN);
    ui::Click(ui::WindowOf(dialog, prompt, "butGO"));
    const HWND next = ui::WaitForDialog(comments.caption());
    ui::Click(ui::WindowOf(next, comments, "butNoText"));
  });
  EXPECT_EQ(Run(&_clsYearEnd::SaveHistoryYear), S_OK);
  EXPECT_EQ(model.Get("Data!R3"), Value(13));
  EXPECT_EQ(model.Comment("Data!R2"), "none");
}

// A host object all of whose members fail with a number.
class Failing final : public standin::StandInObject {
 public:
  Failing(standin::ExcelPtr excel, int number)
      : StandInObject(std::move(excel), "Application"), number_(number) {}

 private:
  excel::Variant Answer(const standin::Call&) override {
    throw HostError(number_, "refused", "Some host");
  }

  int number_;
};

TEST_F(RealDll, ScriptsSeeTheHostsOwnNumber) {
  for (int number : {5, 9, 13, 91, 438, 1004, 32767, static_cast<int>(0x80040201)}) {
    auto host = ComPtr<IDispatch>::Adopt(new Failing(excel, number));
    auto globals = dll.Create<_clsGlobals>(CLSID_clsGlobals);
    auto ref_sheet = dll.Create<IDispatch>(CLSID_clsRefSheet);
    EXPECT_HRESULT_SUCCEEDED(globals->putref_App(host.get()));
    excel::Variant argument(globals.get());
    LPOLESTR name = const_cast<LPOLESTR>(L"Init");
    DISPID id = 0;
    ASSERT_EQ(ref_sheet->GetIDsOfNames(IID_NULL, &name, 1, excel::kMacroLocale, &id), S_OK);
    DISPPARAMS parameters{const_cast<VARIANT*>(&argument.get()), nullptr, 1, 0};
    EXCEPINFO info{};
    EXPECT_EQ(ref_sheet->Invoke(id, IID_NULL, excel::kMacroLocale, DISPATCH_METHOD, &parameters,
                                nullptr, &info, nullptr),
              DISP_E_EXCEPTION);
    EXPECT_EQ(info.scode, number < 0 ? number : static_cast<SCODE>(0x800A0000 + number));
    EXPECT_EQ(excel::ToUtf8(info.bstrSource), "Some host");
    EXPECT_EQ(excel::ToUtf8(info.bstrDescription), "refused");
    SysFreeString(info.bstrSource);
    SysFreeString(info.bstrDescription);
  }
}

TEST_F(RealDll, ListsThatAreThereTakeArraysOnly) {
  model.Put("Planning!A1", {"X14", "n", "k", "c", "s", Value(), Value(), Value(), "h"});
  auto globals = dll.Create<_clsGlobals>(CLSID_clsGlobals);
  auto ref_sheet = dll.Create<_clsRefSheet>(CLSID_clsRefSheet);
  EXPECT_HRESULT_SUCCEEDED(globals->putref_App(application.get()));
  excel::Variant argument(globals.get());
  EXPECT_HRESULT_SUCCEEDED(ref_sheet->Init(argument.get()));
  VARIANT number;
  number.vt = VT_I4;
  number.lVal = 7;
  constexpr HRESULT kTypeMismatch = static_cast<HRESULT>(0x800A000D);
  EXPECT_EQ(ref_sheet->ConfigsListPut(&number), kTypeMismatch);
  EXPECT_EQ(ref_sheet->KeysListLoadKeysCol(&number, 1), kTypeMismatch);
  EXPECT_EQ(ref_sheet->DiscrListLoadCol(&number, 1), S_OK) << "a list that is not there";
  SetErrorInfo(0, nullptr);
}

TEST_F(RealDll, MenusStayWhileTheSessionContextHoldsThem) {
  auto globals = dll.Create<_clsGlobals>(CLSID_clsGlobals);
  EXPECT_HRESULT_SUCCEEDED(globals->putref_App(application.get()));
  auto menus = dll.Create<_clsMenuManagement>(CLSID_clsMenuManagement);
  excel::Variant argument(globals.get());
  EXPECT_HRESULT_SUCCEEDED(menus->Init(argument.get()));
  EXPECT_HRESULT_SUCCEEDED(globals->putref_Menus(menus.get()));
  // Neither holds the other for good: the fixture checks that the DLL can be unloaded.
  menus = {};
  ComPtr<IDispatch> held;
  EXPECT_HRESULT_SUCCEEDED(globals->get_Menus(held.Receive()));
  EXPECT_TRUE(held);
}

}  // namespace
}  // namespace vantora::com
