#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "operations/client.h"
#include "operations/test_model.h"
#include "support/fake_services.h"
#include "support/faulty_host.h"

namespace vantora {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using testing::FakeServices;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using testing::TestModel;

constexpr const char* kDeleted =
    "One or more Excel names were deleted.  You should search the entire workbook for #NAME errors "
    "to make sure everything is still ok.";
constexpr const char* kInvalid =
    "One or more of your new names was invalid in format and was not created.  Check for colored "
    "text in the name column.";

// Plan is active, Costs is another normal sheet, Years has its names in column Z.
class Naming : public ::testing::Test {
 protected:
  Naming() {
    model.Put("Years!A1", {"y"});
    model.Name("Sales", "Costs!$A$7:$AB$7");
    model.Put("Costs!I7", {"Sales"});
  }
  void Define(const std::string& rows, const std::vector<std::string>& answers) {
    model.Select(rows);
    fake = std::make_unique<FakeServices>(answers);
    testing::NameManagementClient(fake->services, model.application()).NameDefinition();
    EXPECT_THAT(fake->user_interface.unused_answers(), IsEmpty());
  }
  std::vector<std::string> Boxes() {
    std::vector<std::string> texts;
    for (const auto& box : fake->user_interface.message_boxes()) texts.push_back(box.text);
    return texts;
  }

  TestModel model{{"Plan", "Costs", "Years"}};
  std::unique_ptr<FakeServices> fake;
};

TEST_F(Naming, DefinesTheNameOfEachSelectedRow) {
  model.Put("Plan!I3", {" Net Revenue "});
  model.Put("Plan!I5", {"Margin"});
  Define("A3:A4,C5", {});
  EXPECT_THAT(Boxes(), IsEmpty());
  EXPECT_EQ(model.RefersTo("Net_Revenue"), "Plan!$A$3:$AB$3");
  EXPECT_EQ(model.RefersTo("Margin"), "Plan!$A$5:$AB$5");
  EXPECT_EQ(model.Get("Plan!I3"), Value("Net_Revenue"));
  EXPECT_THAT(model.FontOf("Plan!I3"), AllOf(HasSubstr("<i/>"), HasSubstr("<sz val=\"8\"/>")));

  model.Put("Years!Z4", {"Growth"});
  model.Activate("Years");
  Define("A4", {});
  EXPECT_EQ(model.RefersTo("Growth"), "Years!$P$4:$Y$4");
}

TEST_F(Naming, WhatTheHostRefusesIsColoredAndReportedAfterEachArea) {
  model.Put("Plan!I3", {"Q1"});
  model.Put("Plan!I5", {"Good"});
  Define("A3,A5", {"OK", "OK"});
  EXPECT_THAT(Boxes(), ElementsAre(kInvalid, kInvalid));
  EXPECT_EQ(fake->user_interface.message_boxes()[0].style, kInformation);
  EXPECT_EQ(model.Get("Plan!I3"), Value("Q1"));
  EXPECT_THAT(model.FontOf("Plan!I3"), HasSubstr("<color indexed=\"16\"/>"));
  EXPECT_TRUE(model.HasName("Good"));
}

TEST_F(Naming, ANameInUseIsTakenOverOrReplacedByAnother) {
  model.Put("Plan!I3", {"Sales"});
  Define("A3", {"frmNaming01:optChoice1;butGO", "OK"});
  EXPECT_THAT(Boxes(), ElementsAre(kDeleted));
  EXPECT_EQ(model.RefersTo("Sales"), "Plan!$A$3:$AB$3");
  EXPECT_EQ(model.Get("Costs!I7"), Value());

  // A new name that is in use as well is asked about again; typing chooses the second option.
  model.Name("Wages", "Costs!$A$8:$AB$8");
  model.Put("Plan!I4", {"Sales"});
  Define("A4", {"frmNaming01:txtNewName=Wages;butGO", "frmNaming01:txtNewName=Wages4;butGO"});
  EXPECT_THAT(Boxes(), IsEmpty());
  EXPECT_EQ(model.RefersTo("Wages"), "Costs!$A$8:$AB$8");
  EXPECT_EQ(model.RefersTo("Wages4"), "Plan!$A$4:$AB$4");
  EXPECT_EQ(model.Get("Plan!I4"), Value("Wages4"));

  // A typed name is taken with its blanks, and so is none.
  model.Put("Plan!I5", {"Sales"});
  Define("A5", {"frmNaming01:txtNewName=Two Words;butGO", "OK"});
  EXPECT_THAT(Boxes(), ElementsAre(kInvalid));
  EXPECT_EQ(model.Get("Plan!I5"), Value("Two Words"));
}

TEST_F(Naming, ARowThatHasANameLosesKeepsOrSharesIt) {
  const struct {
    const char* answer;
    bool keeps_old;
    bool has_new;
    const char* shown;
  } cases[] = {{"optChoice1", false, true, "New"},
               {"optChoice2", true, false, "Old"},
               {"optChoice3", true, true, "New"}};
  for (const auto& one : cases) {
    SCOPED_TRACE(one.answer);
    TestModel fresh({"Plan"});
    fresh.Name("Old", "Plan!$J$3:$Y$3");  // the second span that is looked at
    fresh.Put("Plan!I3", {"New"});
    fresh.Select("A3");
    FakeServices services({"frmNaming02:" + std::string(one.answer) + ";butGO", "OK"});
    testing::NameManagementClient(services.services, fresh.application()).NameDefinition();
    EXPECT_EQ(fresh.HasName("Old"), one.keeps_old);
    EXPECT_EQ(fresh.HasName("New"), one.has_new);
    EXPECT_EQ(fresh.Get("Plan!I3"), Value(one.shown));
    EXPECT_THAT(services.user_interface.message_boxes(), SizeIs(one.keeps_old ? 0 : 1));
  }
}

TEST_F(Naming, ABlankNameCellTakesTheRowsNameAway) {
  model.Activate("Costs");
  model.Put("Costs!I7", {""});
  Define("A7", {"OK"});
  EXPECT_FALSE(model.HasName("Sales"));
  EXPECT_THAT(Boxes(), ElementsAre(kDeleted));
}

TEST_F(Naming, CancelKeepsWhatWasDefinedAndRewritesNothing) {
  model.Put("Plan!I3", {"First One"});
  model.Put("Plan!I4", {"Sales"});
  for (const char* leave : {"frmNaming01:butCancel", "frmNaming01:close"}) {
    Define("A3:A4", {leave});
    EXPECT_TRUE(model.HasName("First_One"));
    EXPECT_EQ(model.Get("Plan!I3"), Value("First One"));
    EXPECT_EQ(model.RefersTo("Sales"), "Costs!$A$7:$AB$7");
    EXPECT_THAT(Boxes(), IsEmpty());
  }
}

TEST_F(Naming, AnErrorValueInTheNameColumnIsReported) {
  model.Put("Plan!I3", {CellError::kNotAvailable});
  Define("A3", {"OK"});
  EXPECT_THAT(Boxes(), ElementsAre(AllOf(HasSubstr("Module: clsNameManagement"),
                                         HasSubstr("error message #: 13"),
                                         HasSubstr("Plan!I3 shows an error value"))));
}

TEST(NamingFaults, AreReportedOrTakenAsAnOutcomeAndNeverEscape) {
  int calls = 1;
  for (int failing = 0; failing <= calls; ++failing) {
    SCOPED_TRACE(failing);
    TestModel model({"Plan"});
    model.Put("Plan!I3", {"First"});
    model.Select("A3");
    auto plan = std::make_shared<testing::FaultPlan>();
    FakeServices fake({"OK"});
    testing::NameManagementClient names(
        fake.services, std::make_shared<testing::FaultyApplication>(model.application(), plan));
    plan->calls = 0;
    plan->failing_call = failing;
    names.NameDefinition();
    if (failing == 0) calls = plan->calls;
    const auto& boxes = fake.user_interface.message_boxes();
    if (failing == 0) {
      EXPECT_THAT(boxes, IsEmpty());
    }
    for (const auto& box : boxes) {
      EXPECT_THAT(box.text, ::testing::AnyOf(HasSubstr("error message #: 1004"), kInvalid));
    }
    names.NameDefinition();
    EXPECT_TRUE(model.HasName("First")) << "the object works on";
  }
  EXPECT_GE(calls, 15);
}

TEST(NameCleanup, DeletesTheFlaggedNamesThatThereAre) {
  TestModel model({"Plan", "Reference"});
  model.HaveSortButtons();
  model.Put("Reference!A1", {"X14", "n", "", "", "k", "c", "s"});
  model.Name("Broken", "Plan!#REF!");
  model.Name("Gone", "Plan!#REF!");
  model.Name("Fine", "Plan!$A$1");
  model.Activate("Reference");
  FakeServices fake({"OK", "OK", "Cancel", "OK"});
  testing::RefSheetClient(fake.services, model.application()).Call("NamesListPopulate");
  model.application()->ActiveWorkbook()->Names()->Item("Gone")->Delete();
  testing::NameManagementClient names(fake.services, model.application());
  names.NameCleanup();
  EXPECT_FALSE(model.HasName("Broken"));
  EXPECT_TRUE(model.HasName("Fine"));

  model.Name("Broken", "Plan!#REF!");
  names.NameCleanup();
  EXPECT_TRUE(model.HasName("Broken")) << "cancelled";
}

}  // namespace
}  // namespace vantora
