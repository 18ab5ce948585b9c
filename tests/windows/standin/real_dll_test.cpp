// The DLL itself over the stand-in for Excel, with its own message boxes and progress dialog on the
// screen. (The other tests here have the same objects linked into the program.)
#include <gmock/gmock.h>

#include "Orvanemcro1.h"
#include "operations/year_end_fixture.h"
#include "server/loaded_dll.h"
#include "server/message_boxes.h"
#include "standin_excel.h"
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

}  // namespace
}  // namespace vantora::com
