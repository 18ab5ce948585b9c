#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "operations/client.h"
#include "operations/test_model.h"
#include "support/fake_services.h"
#include "support/faulty_host.h"

namespace vantora {
namespace {

using host::XlSheetVisibility;
using ::testing::AllOf;
using ::testing::ElementsAre;
using testing::FakeServices;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using testing::TestModel;

constexpr const char* kInstruction = "You must enable Excel macros to run Vantora";

std::vector<XlSheetVisibility> Visibilities(const host::ApplicationPtr& application) {
  std::vector<XlSheetVisibility> all;
  for (const auto& sheet : application->ActiveWorkbook()->Worksheets()) {
    all.push_back(sheet->Visible());
  }
  return all;
}

// Planning is active and protected, Notes is hidden.
class Hider : public ::testing::Test {
 protected:
  Hider() {
    model.Put("Title!A1", {"T"});
    model.Put("Planning!A1", {"P"});
    model.Sheet("Planning")->Protect();
    model.Sheet("Notes")->SetVisible(XlSheetVisibility::kHidden);
    model.Activate("Planning");
  }
  void ExpectAsBefore() {
    EXPECT_THAT(Visibilities(model.application()),
                ElementsAre(XlSheetVisibility::kVisible, XlSheetVisibility::kVisible,
                            XlSheetVisibility::kHidden));
    EXPECT_EQ(model.ActiveSheet(), "Planning");
    EXPECT_TRUE(model.Sheet("Planning")->ProtectContents());
    EXPECT_FALSE(model.Sheet("Title")->ProtectContents());
    EXPECT_TRUE(model.application()->ScreenUpdating());
  }
  const std::vector<ui::ShownMessageBox>& Boxes() { return fake.user_interface.message_boxes(); }

  TestModel model{{"Title", "Planning", "Notes"}};
  FakeServices fake{{"OK"}};
  testing::HiderClient hider{fake.services, model.application()};
};

TEST_F(Hider, SavesOnlyTheTitleSheetVisibleAndPutsAllBack) {
  hider.BeforeSave(false);
  EXPECT_THAT(Boxes(), IsEmpty());
  EXPECT_THAT(model.save_requests(), ElementsAre("Save .xlsx"));
  ExpectAsBefore();
  EXPECT_EQ(model.Get("Title!C34"), Value());
  EXPECT_EQ(model.Get("Title!AN1"), Value("Planning"));

  auto saved = model.Saved();
  EXPECT_THAT(Visibilities(saved->application()),
              ElementsAre(XlSheetVisibility::kVisible, XlSheetVisibility::kVeryHidden,
                          XlSheetVisibility::kVeryHidden));
  EXPECT_EQ(saved->Range("Title!C34")->Value(), Value(kInstruction));
  EXPECT_EQ(saved->application()->ActiveSheet()->Name(), "Title");

  testing::HiderClient(fake.services, saved->application()).AtOpen();
  EXPECT_THAT(Visibilities(saved->application()), ::testing::Each(XlSheetVisibility::kVisible));
  // Although the name of the active sheet has an "L" in it, it is no flag.
  EXPECT_EQ(saved->Range("Title!C34")->Value(), Value());
  EXPECT_EQ(saved->application()->ActiveSheet()->Name(), "Planning");
  EXPECT_FALSE(saved->Worksheet("Planning")->ProtectContents()) << "not in normal mode";
}

TEST_F(Hider, TheTitleSheetsFlagPlacesTheInstruction) {
  const struct {
    const char* flag;
    const char* cell;
  } cases[] = {
      {"L12", "Title!E12"}, {"L0", "Title!E34"}, {"xl 6000", "Title!E34"}, {"l7", "Title!E7"}};
  for (const auto& one : cases) {
    SCOPED_TRACE(one.flag);
    model.Put("Title!E1", {one.flag});
    hider.BeforeSave(false);
    EXPECT_EQ(model.Saved()->Range(one.cell)->Value(), Value(kInstruction));
    EXPECT_EQ(model.Get(one.cell), Value());
  }
}

TEST_F(Hider, AsksForTheFileAndItsFormatByTheHostsVersion) {
  hider.BeforeSave(true);  // cancelled
  EXPECT_FALSE(model.WasSaved());
  ExpectAsBefore();
  EXPECT_EQ(model.Get("Title!AN1"), Value());

  model.user().answers = {"Plan.v2.xlsm"};
  hider.BeforeSave(true);
  EXPECT_THAT(model.save_requests(), ElementsAre("SaveAs Plan.v2.xlsm .xlsm"));
  ExpectAsBefore();
  hider.BeforeSave(true);
  EXPECT_THAT(model.user().asked,
              ElementsAre("Vantora SaveAs|Book1|Excel 2007 (*.xlsm), *.xlsm, Excel 2003 (*.xls), "
                          "*.xls",
                          HasSubstr("|Book1|"), HasSubstr("|Plan.v2|")));
  model.SetVersion("11.0");
  hider.BeforeSave(true);
  EXPECT_THAT(model.user().asked.back(), HasSubstr("|Excel 2003 (*.xls), *.xls"));
  EXPECT_THAT(model.user().asked.back(), ::testing::Not(HasSubstr("2007")));
}

TEST_F(Hider, AFailedSaveIsReportedAndAllPutBack) {
  model.RefuseSaves();
  hider.BeforeSave(false);
  ASSERT_THAT(Boxes(), SizeIs(1));
  EXPECT_THAT(Boxes()[0].text, AllOf(HasSubstr("Module: clsHider\n\n"),
                                     HasSubstr("error 1004 during workbook save operation\n\n")));
  EXPECT_EQ(model.Get("Title!C34"), Value());
  ExpectAsBefore();
}

TEST_F(Hider, WithoutATitleSheetNothingIsSavedAndAllIsShown) {
  model.Put("Title!A1", {""});
  hider.BeforeSave(false);
  ASSERT_THAT(Boxes(), SizeIs(1));
  EXPECT_THAT(Boxes()[0].text, HasSubstr("Module: clsHider\n\nNo sheet flagged as Title Sheet"));
  EXPECT_FALSE(model.WasSaved());
  EXPECT_THAT(Visibilities(model.application()), ::testing::Each(XlSheetVisibility::kVisible));
  EXPECT_TRUE(model.application()->ScreenUpdating());
}

TEST_F(Hider, OpeningInNormalModeProtectsTheFlaggedSheets) {
  model.Sheet("Planning")->Unprotect();
  model.Put("Title!AN1", {"planning"});
  model.Sheet("Planning")->Range(1, 1, 1, 1)->SetRowsHidden(true);
  model.Sheet("Title")->Protect();
  model.Activate("Title");
  hider.AtOpen();
  EXPECT_EQ(model.ActiveSheet(), "Planning");
  EXPECT_TRUE(model.Sheet("Planning")->ProtectContents());
  EXPECT_TRUE(model.Sheet("Title")->ProtectContents());
  EXPECT_FALSE(model.Sheet("Notes")->ProtectContents());
}

// Whatever call fails, the save is made, or the user or the macro learns that it was not, and the
// next opening brings everything back.
TEST_F(Hider, RemembersAChartSheetAndLeavesItActive) {
  model.Sheet("Notes")->SetVisible(XlSheetVisibility::kVisible);
  model.Activate("Notes");
  model.TurnIntoChartSheet("Notes");
  hider.BeforeSave(false);
  EXPECT_EQ(model.Get("Title!AN1"), Value("Notes"));
  EXPECT_EQ(model.ActiveSheet(), "Notes");
}

TEST_F(Hider, WithoutAWorkbookTheCallerGetsTheError) {
  model.CloseWindow();
  EXPECT_THROW(hider.AtOpen(), HostError);
  EXPECT_THROW(hider.BeforeSave(true), HostError);
  EXPECT_THROW(hider.BeforeSave(false), HostError);
}

TEST(HiderFaults, HideNoSheetForGood) {
  int calls = 1;
  for (int failing = 0; failing <= calls; ++failing) {
    SCOPED_TRACE(failing);
    TestModel model({"Title", "Planning", "Notes"});
    model.Put("Title!A1", {"T"});
    model.Activate("Planning");
    auto plan = std::make_shared<testing::FaultPlan>();
    FakeServices fake({"OK"});
    testing::HiderClient hider(
        fake.services, std::make_shared<testing::FaultyApplication>(model.application(), plan));
    plan->calls = 0;
    plan->failing_call = failing;
    bool is_told = false;
    try {
      hider.BeforeSave(false);
    } catch (const HostError& error) {
      EXPECT_EQ(error.number(), testing::FaultPlan::kNumber);
      is_told = true;
    }
    if (failing == 0) calls = plan->calls;
    is_told = is_told || !fake.user_interface.message_boxes().empty();
    EXPECT_TRUE(model.WasSaved() || is_told);
    if (failing == 0) {
      EXPECT_FALSE(is_told);
    }
    hider.AtOpen();
    EXPECT_THAT(Visibilities(model.application()), ::testing::Each(XlSheetVisibility::kVisible));
    EXPECT_EQ(model.Get("Title!C34"), Value());
  }
  EXPECT_GE(calls, 30);
}

}  // namespace
}  // namespace vantora
