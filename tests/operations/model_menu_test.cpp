#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "operations/client.h"
#include "operations/test_model.h"
#include "support/fake_services.h"
#include "support/faulty_host.h"

namespace vantora {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::EndsWith;
using testing::ErrorOf;
using testing::FakeServices;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using testing::TestModel;

// A row of the menu table; the columns between hold the model's own notes.
struct TableRow {
  Value item;
  Value sub_item;
  Value macro;
  Value face;
};

class ModelMenu : public ::testing::Test {
 protected:
  // Puts the menu table below its flag in column F; lists begin in row 14.
  void Table(const std::vector<TableRow>& rows) {
    model.Put("Reference!A1", {"X", "n", "k", "c", "s", "m"});
    int row = 14;
    for (const TableRow& entry : rows) {
      model.Put("Reference!F" + std::to_string(row++),
                {entry.item, entry.sub_item, "note", entry.macro, "note", entry.face});
    }
    // The used range goes on below the list.
    model.Put("Reference!A40", {"end"});
  }
  testing::MenuManagementClient& Menus() {
    menus = std::make_unique<testing::MenuManagementClient>(fake.services, model.application());
    return *menus;
  }
  std::vector<std::string> MenuBarWith(const std::vector<std::string>& added) {
    std::vector<std::string> captions = {"&File",   "&Edit",  "&View", "&Insert",
                                         "F&ormat", "&Tools", "&Data"};
    captions.insert(captions.end(), added.begin(), added.end());
    captions.insert(captions.end(), {"&Window", "&Help"});
    return captions;
  }

  TestModel model{{"Cover", "Sales", "Costs", "Plan", "Reference"}};
  FakeServices fake{{"OK"}};
  std::unique_ptr<testing::MenuManagementClient> menus;
};

TEST_F(ModelMenu, ListsSheetsByGroupThenTheTable) {
  model.Put("Cover!A1", {"M2 I5001"});  // a face beyond 5000 is none
  model.Put("Sales!A1", {"S M1 I23"});
  model.Put("Costs!A1", {"m9"});
  model.Put("Plan!A1", {"M1 I5000"});
  model.Hide("Plan");  // hidden sheets are listed too
  Table({{"Year end", "", "", 5},
         {"", "Save", "VA_Save", 3},
         {"", "Shift", "VA_Shift", ""},
         {"Check", "ignored", "VA_Check", "17"},
         {"Tools", "ignored", "", ""},
         {"", "Clear", "VA_Clear", -1}});
  Menus().CreateVAMenuBar();
  EXPECT_THAT(fake.user_interface.message_boxes(), IsEmpty());
  EXPECT_THAT(model.MenuBar(), ElementsAreArray(MenuBarWith({"&Vantora"})));
  EXPECT_THAT(model.Menu("Vantora"),
              ElementsAre("-", "Sales = VA_SelSheet #23", "Plan = VA_SelSheet #5000",  // group 1
                          "-", "Cover = VA_SelSheet",                                  // group 2
                          "-", "Costs = VA_SelSheet",                                  // group 9
                          "-", "Year end:", "  Save = VA_Save #3", "  Shift = VA_Shift",
                          "Check = VA_Check #17", "Tools:", "  Clear = VA_Clear"));
}

TEST_F(ModelMenu, SheetsOutsideGroups1To9AreLeftOut) {
  model.Put("Cover!A1", {"M"});
  model.Put("Sales!A1", {"M0"});
  model.Put("Costs!A1", {"M10"});
  model.Put("Plan!A1", {"SM x"});
  model.Put("Reference!A1", {"X"});
  FakeServices told({"OK"});  // that lists are missing
  testing::MenuManagementClient(told.services, model.application()).CreateVAMenuBar();
  EXPECT_THAT(model.MenuBar(), ElementsAreArray(MenuBarWith({"&Vantora"})));
  EXPECT_THAT(model.Menu("Vantora"), IsEmpty());
}

TEST_F(ModelMenu, OnlyTheFirstRowOfTheTableMayBeginAGroup) {
  struct Case {
    std::vector<TableRow> rows;
    std::vector<std::string> menu;
  } const cases[] = {
      {{{"A", "", "M", ""}, {"B", "", "M", ""}}, {"-", "A = M", "B = M"}},
      // Texts are trimmed.
      {{{" A ", "", "  ", ""}, {"  ", " b ", " M ", ""}}, {"-", "A:", "  b = M"}},
      // A first row that adds nothing uses the group line up.
      {{{"", "a", "", ""}, {"B", "", "M", ""}}, {"B = M"}},
      // An empty row ends the table, whatever macro it names and whatever follows.
      {{{"", "", "M", ""}, {"B", "", "M", ""}}, {}},
      {{{"A", "", "M", ""}, {"", "", "", ""}, {"B", "", "M", ""}}, {"-", "A = M"}},
  };
  for (const Case& c : cases) {
    model.Put("Reference!F14", {"", "", "", "", "", ""});
    model.Put("Reference!F15", {"", "", "", "", "", ""});
    Table(c.rows);
    FakeServices told({"OK"});
    testing::MenuManagementClient client(told.services, model.application());
    client.CreateVAMenuBar();
    EXPECT_THAT(model.Menu("Vantora"), ElementsAreArray(c.menu));
    client.RemoveVAMenuBar();
  }
}

TEST_F(ModelMenu, SubItemWithoutMacroIsReportedAndSkipped) {
  Table({{"Tools", "", "", ""}, {"", "Broken", "", 4}, {"", "Whole", "VA_Whole", ""}});
  Menus().CreateVAMenuBar();
  const auto& boxes = fake.user_interface.message_boxes();
  ASSERT_THAT(boxes, SizeIs(1));
  EXPECT_EQ(boxes[0].style, kOkOnly | kCritical);
  EXPECT_THAT(boxes[0].text,
              EndsWith("details \n\nModule: clsMenuManagement\n\nMenu table entry on Reference "
                       "sheet for Broken has no macro.  This is invalid.\n\n"));
  EXPECT_THAT(model.Menu("Vantora"), ElementsAre("-", "Tools:", "  Whole = VA_Whole"));
}

TEST_F(ModelMenu, SubItemsWithoutAPopupFailAndLeaveWhatWasBuilt) {
  struct Case {
    std::vector<TableRow> rows;
    int error;
    std::vector<std::string> menu;
  } const cases[] = {
      {{{"", "a", "M", ""}}, 91, {}},
      // A button is no popup, and does not let the sub-item fall to the popup before it.
      {{{"A", "", "", ""}, {"B", "", "M", ""}, {"", "b", "M", ""}}, 438, {"-", "A:", "B = M"}},
      // A face that is no number, or none of 16 bits, also in a row that needs none.
      {{{"A", "", "M", ""}, {"B", "", "", "red"}}, 13, {"-", "A = M"}},
      {{{"A", "", "M", 32768}}, 6, {}},
  };
  for (const Case& c : cases) {
    TestModel fresh({"Cover", "Reference"});
    std::swap(model, fresh);
    Table(c.rows);
    EXPECT_EQ(ErrorOf([&] { Menus().CreateVAMenuBar(); }), c.error);
    EXPECT_THAT(model.Menu("Vantora"), ElementsAreArray(c.menu)) << c.error;
  }
}

TEST_F(ModelMenu, AGroupHoldsFifteenSheets) {
  std::vector<std::string> names;
  for (int i = 1; i <= 17; ++i) names.push_back("Sheet" + std::to_string(i));
  model = TestModel(names);
  for (int i = 1; i <= 15; ++i) model.Put(names[i - 1] + "!A1", {"M3"});
  model.Put("Sheet16!A1", {"M4"});
  model.Put("Sheet17!A1", {"X", "n", "k", "c", "s"});
  Menus().CreateVAMenuBar();
  EXPECT_THAT(model.Menu("Vantora"), SizeIs(15 + 1 + 2));
  menus->RemoveVAMenuBar();
  model.Put("Sheet16!A1", {"M3"});
  EXPECT_EQ(ErrorOf([&] { menus->CreateVAMenuBar(); }), 9);
  EXPECT_THAT(model.MenuBar(), ElementsAreArray(MenuBarWith({})));
}

TEST_F(ModelMenu, StandsBeforeTheFirstControlThatNamesWindowInThatSpelling) {
  Table({});
  const auto controls = [&] { return model.application()->ActiveMenuBar()->Controls(); };
  const auto items = controls()->Items();
  items[1]->SetCaption("window");
  items[2]->SetCaption("W&indow");  // the accelerator within the word
  items[4]->SetCaption("All &Windows");
  Menus().CreateVAMenuBar();
  EXPECT_THAT(model.MenuBar(), ElementsAre("&File", "window", "W&indow", "&Insert", "&Vantora",
                                           "All &Windows", "&Tools", "&Data", "&Window", "&Help"));
  menus->RemoveVAMenuBar();
  items[4]->Delete();
  items[7]->Delete();
  menus->CreateVAMenuBar();
  EXPECT_EQ(model.MenuBar().back(), "&Vantora");
}

TEST_F(ModelMenu, RemovingTakesEveryMenuWhoeverMadeIt) {
  Table({{"A", "", "M", ""}});
  Menus().CreateVAMenuBar();
  menus->CreateVAMenuBar();
  EXPECT_THAT(model.MenuBar(), ElementsAreArray(MenuBarWith({"&Vantora", "&Vantora"})));
  EXPECT_THAT(model.Menu("Vantora", 1), ElementsAre("-", "A = M"));
  Menus().RemoveVAMenuBar();  // another object
  EXPECT_THAT(model.MenuBar(), ElementsAreArray(MenuBarWith({})));
  menus->RemoveVAMenuBar();
  EXPECT_THAT(model.MenuBar(), ElementsAreArray(MenuBarWith({})));
}

TEST_F(ModelMenu, WithoutInitNothingHappens) {
  Table({{"A", "", "M", ""}});
  Menus().CreateVAMenuBar();
  testing::MenuManagementClient silent(fake.services, nullptr);
  silent.CreateVAMenuBar();
  silent.RemoveVAMenuBar();
  silent.CreateDashboardMenuBar();
  silent.RemoveDashboardMenuBar();
  silent.SetDashboardMenuPanes();
  silent.ExposeDashMenu(true);
  silent.SelectConfig(0);
  EXPECT_THAT(model.MenuBar(), ElementsAreArray(MenuBarWith({"&Vantora"})));
  EXPECT_THAT(fake.user_interface.message_boxes(), IsEmpty());
}

// Whatever host call fails, the caller gets its error, what was built stays, and one removal takes
// it away.
TEST_F(ModelMenu, FailingHostCallsEndTheMethodAndReachTheCaller) {
  model.Put("Sales!A1", {"M1 I2"});
  Table({{"Year end", "", "", ""}, {"", "Save", "VA_Save", 3}, {"Check", "", "VA_Check", ""}});
  auto plan = std::make_shared<testing::FaultPlan>();
  testing::MenuManagementClient faulty(
      fake.services, std::make_shared<testing::FaultyApplication>(model.application(), plan));
  plan->calls = 0;
  faulty.CreateVAMenuBar();
  const std::vector<std::string> whole = model.Menu("Vantora");
  const int creating_calls = plan->calls;
  plan->calls = 0;
  faulty.RemoveVAMenuBar();
  const int removing_calls = plan->calls;
  ASSERT_GT(creating_calls, 60);
  std::size_t built_before = 0;
  for (int failing = 1; failing <= creating_calls; ++failing) {
    SCOPED_TRACE(failing);
    *plan = {.calls = 0, .failing_call = failing};
    EXPECT_EQ(ErrorOf([&] { faulty.CreateVAMenuBar(); }), testing::FaultPlan::kNumber);
    EXPECT_EQ(plan->calls, failing);
    const std::size_t built = model.application()->ActiveMenuBar()->Controls()->Items().size();
    EXPECT_GE(built, built_before);
    built_before = built;
    // A popup that failed before it got its tag is not found again.
    while (model.MenuBar().size() > 9) {
      auto items = model.application()->ActiveMenuBar()->Controls()->Items();
      items[7]->Delete();
    }
  }
  EXPECT_EQ(built_before, 10u);
  for (int failing = 1; failing <= removing_calls; ++failing) {
    *plan = {};
    faulty.CreateVAMenuBar();
    *plan = {.calls = 0, .failing_call = failing};
    EXPECT_EQ(ErrorOf([&] { faulty.RemoveVAMenuBar(); }), testing::FaultPlan::kNumber);
    *plan = {};
    faulty.RemoveVAMenuBar();
    EXPECT_THAT(model.MenuBar(), ElementsAreArray(MenuBarWith({})));
  }
  faulty.CreateVAMenuBar();
  EXPECT_EQ(model.Menu("Vantora"), whole);
}

}  // namespace
}  // namespace vantora
