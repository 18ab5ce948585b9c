// Freezing the current results, and setting the spinner inputs back to the base case.
#include <gmock/gmock.h>

#include "operations/client.h"
#include "operations/test_model.h"
#include "support/fake_services.h"

namespace vantora {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::TestModel;

// Plan takes part and has a live row 3 with its base row 4; Notes does not take part.
class Freeze : public ::testing::Test {
 protected:
  Freeze() {
    model.Put("Plan!A1", {"the f sheet"});
    model.Put("Plan!E3", {"live", 1, "=F3+1", "text", true});
    model.Put("Plan!Y3", {25, 26});
    model.Put("Plan!E4", {"base", 0, 0, 0, 0, 0});
    model.Put("Plan!Y4", {0, 99, Value(), "my Base row"});
    model.Put("Notes!F3", {1});
    model.Put("Notes!AB4", {"B"});
  }
  testing::FreezeClient& Object(const std::vector<std::string>& answers = {}) {
    object.reset();
    fake = std::make_unique<testing::FakeServices>(answers);
    object = std::make_unique<testing::FreezeClient>(fake->services, model.application());
    model.RecordChanges();
    return *object;
  }

  TestModel model{{"Cover", "Plan", "Notes", "More"}};
  std::unique_ptr<testing::FakeServices> fake;
  std::unique_ptr<testing::FreezeClient> object;
};

TEST_F(Freeze, PutsTheLiveValuesOfFToYIntoBaseRows) {
  model.Fill("Plan!F3");
  Object({"OK"}).FreezeCurrentResults();
  EXPECT_EQ(fake->user_interface.message_boxes().at(0).text.find(
                "This will save your current results and overwrite the previous frozen case\n\n"),
            0u);
  EXPECT_THAT(model.Changes(),
              ElementsAre("Plan!F4: 0 -> 1", "Plan!G4: 0 -> 2", "Plan!H4: 0 -> text",
                          "Plan!I4: 0 -> TRUE", "Plan!J4: 0 -> ", "Plan!Y4: 0 -> 25"));
  EXPECT_FALSE(model.IsFilled("Plan!F4"));  // values only
  EXPECT_EQ(model.ActiveSheet(), "Cover");
  EXPECT_TRUE(model.application()->ScreenUpdating());
}

TEST_F(Freeze, TakesWhatTheFlagCellShows) {
  model.Put("Plan!AB4", {"=\"a\"&\"b\""});
  model.Put("Plan!F6", {6});
  model.Put("Plan!AB7", {CellError::kNotAvailable});
  model.Put("Plan!F8", {8});
  model.Put("Plan!AB9", {false});  // reads False
  Object({"OK"}).FreezeCurrentResults();
  EXPECT_EQ(model.Get("Plan!G4"), Value(2));
  EXPECT_EQ(model.Get("Plan!F7"), Value());
  EXPECT_EQ(model.Get("Plan!F9"), Value());
}

// A base row may itself be the live row of the next one: the walk goes down.
TEST_F(Freeze, WorksDownTheRowsAndTheSheets) {
  model.Put("Plan!AB5", {"b"});
  model.Put("More!A1", {"F"});
  model.Put("More!F1", {7});
  model.Put("More!AB2", {"b"});
  model.Hide("More");  // no sheet is activated
  Object({"OK"}).FreezeCurrentResults();
  EXPECT_EQ(model.Get("Plan!F5"), Value(1));
  EXPECT_EQ(model.Get("More!F2"), Value(7));
}

TEST_F(Freeze, SeesWhatFormulasHadBeforeItStarted) {
  model.Put("Plan!F3", {"=F4+1"});
  model.Put("Plan!F5", {"=F4*10"});
  model.Put("Plan!AB6", {"B"});
  Object({"OK"}).FreezeCurrentResults();
  EXPECT_EQ(model.Get("Plan!F4"), Value(1));
  EXPECT_EQ(model.Get("Plan!F3"), Value(2));
  // Calculation was manual: F5 still showed 0 when row 6 was frozen, and is calculated now.
  EXPECT_EQ(model.Get("Plan!F6"), Value(0));
  EXPECT_EQ(model.Get("Plan!F5"), Value(10));
}

TEST_F(Freeze, CancelledTouchesNothing) {
  Object({"Cancel"}).FreezeCurrentResults();
  EXPECT_THAT(model.Changes(), IsEmpty());
}

TEST_F(Freeze, ABaseFlagInRow1EndsBothOperations) {
  model.Put("More!A1", {"F"});
  model.Put("More!AB1", {"BS"});
  EXPECT_THROW(Object({"OK"}).FreezeCurrentResults(), HostError);
  EXPECT_EQ(model.Get("Plan!F4"), Value(1)) << "rows done before stay";
  EXPECT_FALSE(model.application()->ScreenUpdating());
  EXPECT_THROW(Object().SetSpinnerstoBase(), HostError);
}

class SetSpinnersToBase : public Freeze {
 protected:
  SetSpinnersToBase() {
    model.Put("Plan!E4", {"base", 11, 12, 13, 14, "=1+1"});
    model.Put("Plan!O3", {"old", "old"});
    model.Put("Plan!O4", {15, 16});
    model.Put("Plan!AB4", {"spin base"});
  }
};

TEST_F(SetSpinnersToBase, FillsTheInputsOfFToOThatHoldNoFormula) {
  Object().SetSpinnerstoBase();
  EXPECT_THAT(model.Changes(),
              ElementsAre("Plan!F3: 1 -> 11", "Plan!H3: text -> 13", "Plan!I3: TRUE -> 14",
                          "Plan!J3:  -> 2", "Plan!O3: old -> 15"));
  EXPECT_EQ(model.Formula("Plan!G3"), "F3+1");
  EXPECT_EQ(model.Formula("Plan!J3"), "");
  EXPECT_EQ(model.Get("Plan!G3"), Value(12));
  EXPECT_TRUE(fake->user_interface.message_boxes().empty());
  EXPECT_TRUE(model.application()->ScreenUpdating());
}

TEST_F(SetSpinnersToBase, NeedsBothLettersAsTheyWereEntered) {
  struct Case {
    Value flag;
    Value expected;
  } const cases[] = {
      {"B", 1},
      {"S", 1},
      {"sb", 11},
      {"base", 11},
      // Shows BS, and a freeze takes it, but nobody entered it.
      {"=CHAR(66)&CHAR(83)", 1},
  };
  for (const Case& c : cases) {
    model.Put("Plan!F3", {1});
    model.Put("Plan!AB4", {c.flag});
    Object().SetSpinnerstoBase();
    EXPECT_EQ(model.Get("Plan!F3"), c.expected) << ::testing::PrintToString(model.Get("Plan!AB4"));
  }
}

TEST_F(Freeze, NotInitialisedDoesNothing) {
  testing::FakeServices silent;  // any question would throw
  testing::FreezeClient none(silent.services, nullptr);
  none.FreezeCurrentResults();
  none.SetSpinnerstoBase();
}

}  // namespace
}  // namespace vantora
