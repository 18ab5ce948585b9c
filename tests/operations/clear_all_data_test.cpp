// Emptying a model of all entered data.
#include <gmock/gmock.h>

#include "operations/client.h"
#include "operations/test_model.h"
#include "support/fake_services.h"

namespace vantora {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::TestModel;

class ClearAllData : public ::testing::Test {
 protected:
  ClearAllData() {
    model.Put("Data!A1", {"SZ"});
    model.Put("Data!J1", {"flag"});
    model.Put("Data!I3", {"name", 10, "=J3+1"});
    model.Put("Data!Y3", {25, 26});
  }
  void Run(const std::vector<std::string>& answers) {
    fake = std::make_unique<testing::FakeServices>(answers);
    testing::ClearAllDataClient object(fake->services, model.application());
    model.RecordChanges();
    object.ClearAllData();
  }

  TestModel model{{"Cover", "Data", "Keys"}};
  std::unique_ptr<testing::FakeServices> fake;
};

TEST_F(ClearAllData, EmptiesCellsWithoutFillInJToY) {
  model.Fill("Data!L3");
  model.Put("Data!L3", {"=K3*2"});
  model.Put("Data!M4", {"=1/0"});
  model.Put("Cover!J3", {1});
  model.Hide("Data");  // no sheet is activated
  Run({"OK", "OK"});
  EXPECT_THAT(model.Changes(), ElementsAre("Data!J3: 10 -> ", "Data!K3: =J3+1 -> ",
                                           "Data!Y3: 25 -> ", "Data!M4: =1/0 -> "));
  EXPECT_EQ(model.Get("Data!L3"), Value(0));
  EXPECT_EQ(model.ActiveSheet(), "Cover");
  EXPECT_TRUE(model.application()->ScreenUpdating());
}

TEST_F(ClearAllData, WarnsTwice) {
  struct Case {
    std::vector<std::string> answers;
    bool clears;
  } const cases[] = {{{"Cancel"}, false}, {{"OK", "Cancel"}, false}, {{"OK", "OK"}, true}};
  for (const Case& c : cases) {
    Run(c.answers);
    EXPECT_EQ(model.Changes().empty(), !c.clears);
  }
  const auto& boxes = fake->user_interface.message_boxes();
  EXPECT_EQ(boxes.at(0).text,
            "This macro will clear out all entered data in your model!!!\nPlease make sure "
            "you've saved the model first\nThen if you really want to continue, hit OK, else "
            "Cancel");
  EXPECT_EQ(boxes.at(0).style, 49);
  EXPECT_EQ(boxes.at(1).text, "Last chance: Are you sure you want to clear all entered data?");
  EXPECT_EQ(boxes.at(1).style, 273);
  EXPECT_EQ(boxes.at(0).title + boxes.at(1).title, "Orvanemcro1Orvanemcro1");
}

TEST_F(ClearAllData, StartsBelowTheHeadingOfAKeyList) {
  for (int row = 2; row <= 7; ++row) model.Put("Keys!J" + std::to_string(row), {row});
  model.Put("Keys!I4", {"planning KEY"});
  struct Case {
    const char* a1;
    Value i3;
    Value i6;
    int first_cleared;
  } const cases[] = {
      {"Z", Value(), Value(), 2},    // no key list
      {"LZ", Value(), "key", 6},     // empty cells and the heading are passed over
      {"LZ", "Caption", "key", 3},   // any other text is taken for a key
      {"LZ", "=\"\"", "=1/0", 6},    // shows nothing; shows something
      {"LZ", Value(), Value(), 99},  // without a key nothing goes
  };
  for (const Case& c : cases) {
    for (int row = 2; row <= 7; ++row) model.Put("Keys!J" + std::to_string(row), {row});
    model.Put("Keys!A1", {c.a1});
    model.Put("Keys!I3", {c.i3});
    model.Put("Keys!I6", {c.i6});
    Run({"OK", "OK"});
    for (int row = 2; row <= 7; ++row) {
      EXPECT_EQ(model.Get("Keys!J" + std::to_string(row)).IsEmpty(), row >= c.first_cleared)
          << c.a1 << ", row " << row << ", from " << c.first_cleared;
    }
  }
}

// The last row is the used range's last one, wherever that begins.
TEST_F(ClearAllData, ReachesTheLastUsedRow) {
  model.Put("Keys!C5", {"first used"});
  model.Put("Keys!J9", {9});
  model.Put("Keys!A1", {"z"});
  Run({"OK", "OK"});
  EXPECT_EQ(model.Get("Keys!J9"), Value());
}

TEST_F(ClearAllData, EndsAtAProtectedSheet) {
  model.Put("Keys!A1", {"Z"});
  model.Put("Keys!J2", {2});
  model.Protect("Keys");
  EXPECT_THROW(Run({"OK", "OK"}), HostError);
  EXPECT_EQ(model.Get("Data!J3"), Value());
  EXPECT_EQ(model.Get("Keys!J2"), Value(2));
  EXPECT_FALSE(model.application()->ScreenUpdating());
}

TEST_F(ClearAllData, NotInitialisedDoesNothing) {
  testing::FakeServices silent;  // any question would throw
  testing::ClearAllDataClient(silent.services, nullptr).ClearAllData();
}

}  // namespace
}  // namespace vantora
